#pragma once

#include <QDialog>

#include <functional>

class QCheckBox;
class QLineEdit;
class QTabWidget;

namespace tw {

struct AppState;

/// Lets the user change the rows to show, the mouse click option and hot tracking. The values change in
/// memory when they are applied.
class frmOption : public QDialog {
    Q_OBJECT

  public:
    /// Switches hot tracking in the tree of the frame's active child; may throw.
    using HotTracking = std::function<void(bool on)>;

    frmOption(AppState& state, HotTracking setHotTracking, QWidget* parent = nullptr);

    /// Puts the controls back to the values in force and closes the dialog.
    void reject() override;

  private:
    void makeControls();
    QWidget* makeMousePage();
    QWidget* makeRowsPage();
    QWidget* makeButtons();
    void connectHandlers();
    void showValues();
    /// Takes the values over; false when the rows to show are no number, nothing is taken then.
    bool apply();

    void cmdApply_Click();
    void cmdCancel_Click();
    void cmdOK_Click();
    void txtNumShow_Change();

    AppState& m_state;
    HotTracking m_setHotTracking;
    QTabWidget* tsOptions;
    QCheckBox* chkMouseHotTracking;
    QCheckBox* chkMouseSelectSingle;
    QLineEdit* txtNumShow;
};

}  // namespace tw
