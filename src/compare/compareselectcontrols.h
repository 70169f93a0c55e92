#pragma once

#include "platform/controls/comboitems.h"

#include <QString>

class QCheckBox;
class QComboBox;
class QDialog;
class QGroupBox;
class QPushButton;
class QWidget;

namespace tw {

/// The controls of the comparison selection. Each has its name here as object name.
struct CompareSelectControls {
    QComboBox* cbServer1 = nullptr;
    QComboBox* cbDatabase1 = nullptr;
    QComboBox* cbTable1 = nullptr;
    QComboBox* cbServer2 = nullptr;
    QComboBox* cbDatabase2 = nullptr;
    QComboBox* cbTable2 = nullptr;
    QCheckBox* chkConstraint = nullptr;
    QCheckBox* chkIndex = nullptr;
    QCheckBox* chkForeignKey = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;
    controls::ComboItems cbConnectionString;  ///< never shown; one for each entry of the server lists

  protected:
    /// Makes the controls as children of the dialog and lays them out.
    void setupControls(QDialog& dialog);

  private:
    QGroupBox* makeSystem1(QDialog& dialog);
    QGroupBox* makeSystem2(QDialog& dialog);
    QGroupBox* makeOptions(QDialog& dialog);
    QWidget* makeButtons(QDialog& dialog);
};

}  // namespace tw
