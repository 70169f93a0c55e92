#pragma once

#include "platform/controls/comboitems.h"
#include "platform/controls/listitems.h"

#include <QStringList>

namespace testsupport {

/// A row in one text: its picture's number unless that is 0, then its texts up to the last that is not empty.
inline QString rowText(int icon, QStringList texts) {
    while (!texts.isEmpty() && texts.last().isEmpty())
        texts.removeLast();
    return (icon == 0 ? QString() : QString::number(icon) + u' ') + texts.join(u'|');
}

inline QStringList rowsOf(const controls::ListItems& list) {
    QStringList rows;
    for (int row = 0; row < list.count(); ++row) {
        QStringList texts;
        for (int column = 0; column < std::max(list.headerCount(), 5); ++column)
            texts += list.subItem(row, column);
        rows += rowText(list.icon(row), texts);
    }
    return rows;
}

inline QStringList headersOf(const controls::ListItems& list) {
    QStringList headers;
    for (int column = 0; column < list.headerCount(); ++column)
        headers += list.header(column);
    return headers;
}

inline QStringList textsOf(const controls::ComboItems& combo) {
    QStringList texts;
    for (int i = 0; i < combo.count(); ++i)
        texts += combo.text(i);
    return texts;
}

}  // namespace testsupport
