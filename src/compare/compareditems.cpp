#include "compare/compareditems.h"

#include "platform/controls/listitems.h"

namespace tw {

namespace {

using controls::ListItems;

QStringList textsOf(const ListItems& list, int row, int first, int last) {
    QStringList texts;
    texts.reserve(last - first + 1);
    for (int column = first; column <= last; ++column)
        texts.append(list.subItem(row, column));
    return texts;
}

/// The texts of the columns `first` to `last`, down to the row before the first without a text in `key`.
std::vector<QStringList> groupOf(const ListItems& details, int first, int last, int key) {
    std::vector<QStringList> group;
    for (int row = 0; row < details.count() && !details.subItem(row, key).isEmpty(); ++row)
        group.push_back(textsOf(details, row, first, last));
    return group;
}

/// `text`, or where it is blank the last one that was not.
const QString& carriedDown(const QString& text, QString& last) {
    if (!text.isEmpty()) last = text;
    return last;
}

}  // namespace

ComparedItems columnsOf(const ListItems& definitions) {
    ComparedItems items;
    items.reserve(static_cast<size_t>(definitions.count()));
    for (int row = 0; row < definitions.count(); ++row) {
        const QStringList texts = textsOf(definitions, row, 0, 3);
        items.push_back({texts, texts});
    }
    return items;
}

ComparedItems constraintsOf(const ListItems& details) {
    ComparedItems items;
    for (const QStringList& texts : groupOf(details, 0, 2, 0))
        items.push_back({texts, {texts[1], texts[0], texts[2]}});
    return items;
}

ComparedItems indexesOf(const ListItems& details) {
    ComparedItems items;
    QString table;
    QString name;
    for (const QStringList& texts : groupOf(details, 3, 5, 5)) {
        carriedDown(texts[0], table);
        items.push_back({{table, texts[1], texts[2]}, {carriedDown(texts[1], name), table, texts[2]}});
    }
    return items;
}

ComparedItems foreignKeysOf(const ListItems& details) {
    ComparedItems items;
    for (const QStringList& texts : groupOf(details, 6, 10, 6))
        items.push_back({texts, texts});
    return items;
}

}  // namespace tw
