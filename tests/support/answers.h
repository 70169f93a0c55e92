#pragma once

#include "platform/desktop/filedialog.h"
#include "platform/desktop/msgbox.h"

#include <deque>
#include <functional>

namespace testsupport {

/// Answers message boxes and file dialogs in place of a user, as long as it lives, and keeps what was asked.
///
/// A box that the test did not take with takeBox() fails the test at the end, as does an answer that nobody
/// asked for.
class Answers {
  public:
    Answers();
    ~Answers();
    Answers(const Answers&) = delete;
    Answers& operator=(const Answers&) = delete;

    /// Presses this button on the next box without an answer yet; without any, the default button is pressed.
    void press(desktop::MsgBoxResult button) { m_buttons.push_back(button); }
    /// Gives this file name to the next save dialog without an answer yet; without any, it is cancelled.
    void saveAs(const QString& fileName) { m_fileNames.push_back(fileName); }
    /// Runs while each box is open, before its button is pressed.
    void whileOpen(std::function<void(const desktop::MsgBoxRequest&)> action) {
        m_whileOpen = std::move(action);
    }

    /// The oldest box not yet taken; fails the test and gives an empty one when there is none.
    desktop::MsgBoxRequest takeBox();
    desktop::SaveFileRequest takeSaveFile();
    /// How many boxes wait to be taken.
    qsizetype boxes() const { return static_cast<qsizetype>(m_boxes.size()); }
    /// Boxes and answers left over at the end are all right.
    void allowLeftovers() { m_leftoversAllowed = true; }

  private:
    desktop::MsgBoxResult answer(const desktop::MsgBoxRequest& request);
    std::optional<QString> answer(const desktop::SaveFileRequest& request);

    std::deque<desktop::MsgBoxRequest> m_boxes;
    std::deque<desktop::SaveFileRequest> m_saveFiles;
    std::deque<desktop::MsgBoxResult> m_buttons;
    std::deque<QString> m_fileNames;
    std::function<void(const desktop::MsgBoxRequest&)> m_whileOpen;
    bool m_leftoversAllowed = false;
    desktop::MsgBoxAnswerer m_previousBoxes;
    desktop::SaveFileAnswerer m_previousSaveFiles;
};

}  // namespace testsupport
