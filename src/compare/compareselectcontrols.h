#pragma once

#include "platform/controls/comboitems.h"

#include <QString>

class QCheckBox;
class QDialog;
class QGroupBox;
class QPushButton;
class QWidget;

namespace desktop {
class PickBox;
}

namespace tw {

/// The controls of the comparison selection. Each has its name here as object name.
struct CompareSelectControls {
    desktop::PickBox* cbServer1 = nullptr;
    desktop::PickBox* cbDatabase1 = nullptr;
    desktop::PickBox* cbTable1 = nullptr;
    desktop::PickBox* cbServer2 = nullptr;
    desktop::PickBox* cbDatabase2 = nullptr;
    desktop::PickBox* cbTable2 = nullptr;
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
    QGroupBox* makeSystem1(QWidget* page);
    QGroupBox* makeSystem2(QWidget* page);
    QGroupBox* makeOptions(QWidget* page);
    QWidget* makeButtons(QDialog& dialog);
};

}  // namespace tw
