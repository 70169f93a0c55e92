#include "support/answers.h"

#include <QTest>

#include <optional>

namespace testsupport {
namespace {

template <typename Value>
std::optional<Value> takeFirst(std::deque<Value>& values) {
    if (values.empty()) return std::nullopt;
    const Value first = values.front();
    values.pop_front();
    return first;
}

void fail(const QString& message) {
    QTest::qFail(qUtf8Printable(message), __FILE__, __LINE__);
}

}  // namespace

Answers::Answers()
    : m_previousBoxes(desktop::setMsgBoxAnswerer([this](const auto& request) { return answer(request); })),
      m_previousSaveFiles(
          desktop::setSaveFileAnswerer([this](const auto& request) { return answer(request); })) {}

Answers::~Answers() {
    desktop::setMsgBoxAnswerer(std::move(m_previousBoxes));
    desktop::setSaveFileAnswerer(std::move(m_previousSaveFiles));
    if (m_leftoversAllowed) return;
    for (const auto& box : m_boxes) {
        fail(QStringLiteral("unexpected message box \"%1\": %2").arg(box.title, box.text));
    }
    for (const auto& request : m_saveFiles) {
        fail(QStringLiteral("unexpected save dialog \"%1\"").arg(request.title));
    }
    const size_t unused = m_buttons.size() + m_fileNames.size();
    if (unused > 0) fail(QStringLiteral("%1 prepared answers were not asked for").arg(unused));
}

desktop::MsgBoxRequest Answers::takeBox() {
    if (m_boxes.empty()) fail(QStringLiteral("no message box was shown"));
    return takeFirst(m_boxes).value_or(desktop::MsgBoxRequest());
}

desktop::SaveFileRequest Answers::takeSaveFile() {
    if (m_saveFiles.empty()) fail(QStringLiteral("no save dialog was shown"));
    return takeFirst(m_saveFiles).value_or(desktop::SaveFileRequest());
}

desktop::MsgBoxResult Answers::answer(const desktop::MsgBoxRequest& request) {
    m_boxes.push_back(request);
    if (m_whileOpen) m_whileOpen(request);
    return takeFirst(m_buttons).value_or(request.defaultButton);
}

std::optional<QString> Answers::answer(const desktop::SaveFileRequest& request) {
    m_saveFiles.push_back(request);
    return takeFirst(m_fileNames);
}

}  // namespace testsupport
