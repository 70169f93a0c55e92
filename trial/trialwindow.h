#pragma once

#include <QDialog>

class QLineEdit;

namespace trial {

/// Says what to type into the connection dialog. Stays above the program's windows, in a corner of the
/// screen; closing it ends nothing.
class TrialWindow : public QDialog {
    Q_OBJECT

  public:
    TrialWindow();

    /// `server` as it is typed.
    void showServer(const QString& server);

  private:
    void placeInCorner();

    QLineEdit* txtServer = nullptr;
};

}  // namespace trial
