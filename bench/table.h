#pragma once

#include <QList>
#include <QStringList>

namespace bench {

/// A heading and rows of as many cells; the first `textColumns` are words, the rest figures, set to the
/// right.
struct Table {
    QStringList heading;
    QList<QStringList> rows{};
    int textColumns = 1;
};

/// In columns of characters, for a terminal.
QString toText(const Table& table);
QString toMarkdown(const Table& table);

}  // namespace bench
