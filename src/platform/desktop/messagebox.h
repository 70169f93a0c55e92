#pragma once

#include "platform/desktop/msgbox.h"

#include <QDialog>

class QPlainTextEdit;

namespace desktop {

/// The box that MsgBox shows on the screen. Its text is shown as texts from outside are, without the blanks
/// and lines at its end, and scrolls where the screen has no room for it. The text itself, what a screen
/// reader is given and what Ctrl+C copies while nothing is selected are the request's to the letter.
class MessageBox : public QDialog {
    Q_OBJECT

  public:
    MessageBox(const MsgBoxRequest& request, QWidget* parent);

    QString text() const { return m_request.text; }
    /// Shows the box until it is answered or gone.
    MsgBoxResult ask();

  protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void addContent();
    void addButtons();
    void fit();

    MsgBoxRequest m_request;
    QPlainTextEdit* m_text;
};

}  // namespace desktop
