#include "viewtimes.h"

#include "figures.h"
#include "platform/desktop/celltable.h"

#include <QCoreApplication>

namespace bench {

std::vector<Figure> viewTimes(desktop::CellTable& view, const std::function<void()>& attach) {
    std::vector<Figure> figures;
    const auto add = [&](const char* name, const std::function<void()>& work) {
        figures.push_back({QString::fromLatin1(name), secondsOf(work) * 1000, QStringLiteral("ms")});
    };
    view.resize(1000, 700);
    add("first paint", [&] {
        attach();
        view.show();
        QCoreApplication::processEvents();
        view.grab();
    });
    add("going to the end", [&] {
        view.scrollToBottom();
        view.grab();
    });
    add("selecting all", [&] {
        view.selectAll();
        view.grab();
    });
    add("making the text to copy", [&] { view.selectedText(); });
    return figures;
}

}  // namespace bench
