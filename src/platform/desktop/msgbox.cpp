#include "platform/desktop/msgbox.h"

#include "platform/showntext.h"

#include <QCoreApplication>

#include <cstdio>
#include <utility>

namespace desktop {
namespace {

MsgBoxResult writeToStandardError(const MsgBoxRequest& request) {
    // A terminal would obey what a text from outside holds.
    std::fprintf(stderr, "%s: %s\n", qUtf8Printable(request.title),
                 qUtf8Printable(platform::shownLines(request.text).trimmed()));
    return request.defaultButton;
}

MsgBoxAnswerer& currentAnswerer() {
    static MsgBoxAnswerer answerer;
    return answerer;
}

}  // namespace

MsgBoxResult MsgBox(const QString& text, MsgBoxIcon icon, const QString& title, MsgBoxButtons buttons,
                    MsgBoxResult defaultButton) {
    const MsgBoxRequest request{text, icon, title.isEmpty() ? QCoreApplication::applicationName() : title,
                                buttons, buttons == MsgBoxButtons::Ok ? MsgBoxResult::Ok : defaultButton};
    // A copy, since the answerer may be replaced while the box is open.
    const MsgBoxAnswerer answerer = currentAnswerer();
    return answerer ? answerer(request) : writeToStandardError(request);
}

MsgBoxAnswerer setMsgBoxAnswerer(MsgBoxAnswerer answerer) {
    return std::exchange(currentAnswerer(), std::move(answerer));
}

}  // namespace desktop
