#include "table.h"

#include <algorithm>

namespace bench {

namespace {

QString textLine(const Table& table, const QStringList& cells, const QList<qsizetype>& widths) {
    QStringList padded;
    for (int i = 0; i < cells.size(); ++i) {
        padded +=
            i < table.textColumns ? cells[i].leftJustified(widths[i]) : cells[i].rightJustified(widths[i]);
    }
    return padded.join(QStringLiteral("  ")).trimmed() + u'\n';
}

QString markdownLine(const QStringList& cells) {
    return QStringLiteral("| ") + cells.join(QStringLiteral(" | ")) + QStringLiteral(" |\n");
}

}  // namespace

QString toText(const Table& table) {
    QList<qsizetype> widths;
    for (int i = 0; i < table.heading.size(); ++i) {
        qsizetype width = table.heading[i].size();
        for (const QStringList& row : table.rows)
            width = std::max(width, row[i].size());
        widths += width;
    }
    QString text = textLine(table, table.heading, widths);
    for (const QStringList& row : table.rows)
        text += textLine(table, row, widths);
    return text;
}

QString toMarkdown(const Table& table) {
    QStringList rule;
    for (int i = 0; i < table.heading.size(); ++i)
        rule += i < table.textColumns ? QStringLiteral("---") : QStringLiteral("---:");
    QString text = markdownLine(table.heading) + markdownLine(rule);
    for (const QStringList& row : table.rows)
        text += markdownLine(row);
    return text;
}

}  // namespace bench
