#include "dbaccess/catalog.h"
#include "dbaccess/dbconnection.h"
#include "platform/ado/error.h"
#include "platform/controls/listitems.h"

#include <utility>

namespace tw {

namespace {

constexpr int ChecksAt = 0;
constexpr int IndexesAt = 3;
constexpr int ForeignKeysAt = 6;

void addHeaders(controls::ListItems& list) {
    for (const char* header : {"Constraint Table", "Constraint Name", "Constraint Check", "Indexed Table",
                               "Index Name", "Index Column", "Foreign Key Name", "Foreign Table",
                               "Foreign Column", "Reference Table", "Reference Column"}) {
        list.addHeader(QString::fromLatin1(header));
    }
}

QString valueOf(const ado::Field& field) {
    return field.isNull() ? QString() : field.text().toString();
}

/// One of the three statements, walked beside the others.
class Walk {
  public:
    explicit Walk(CatalogReading& reading) : m_rows(std::move(reading.rows())) {}

    bool atEnd() const { return m_rows.Eof(); }

    /// The texts of the current row, left to right; moves on. Empty texts behind the last row.
    QStringList next() {
        QStringList texts;
        if (atEnd()) return texts;
        for (int i = 0; i < m_rows.FieldCount(); ++i)
            texts.append(valueOf(m_rows.Fields(i)));
        m_rows.MoveNext();
        return texts;
    }

  private:
    ado::Recordset m_rows;
};

/// Leaves out the table and the name of an index that the row before told already.
class IndexGroups {
  public:
    QStringList shown(QStringList texts) {
        for (qsizetype i = 0; i < texts.size() - 1; ++i) {
            if (const QString last = std::exchange(m_last[i], texts[i]); last == texts[i]) texts[i].clear();
        }
        return texts;
    }

  private:
    QString m_last[2];
};

void setTexts(controls::ListItems& list, int item, int first, const QStringList& texts) {
    for (qsizetype i = 0; i < texts.size(); ++i) {
        if (!texts[i].isEmpty()) list.setSubItem(item, first + static_cast<int>(i), texts[i]);
    }
}

void addRows(controls::ListItems& list, Walk& checks, Walk& indexes, Walk& foreignKeys) {
    IndexGroups groups;
    while (!checks.atEnd() || !indexes.atEnd() || !foreignKeys.atEnd()) {
        const QStringList check = checks.next();
        const int item = list.addItem(check.value(0));
        setTexts(list, item, ChecksAt + 1, check.mid(1));
        setTexts(list, item, IndexesAt, groups.shown(indexes.next()));
        setTexts(list, item, ForeignKeysAt, foreignKeys.next());
    }
}

}  // namespace

QString DBConnection::FillLvDBDetail(controls::ListItems& list, const QString& database) {
    QString heading;
    runRoutine(QStringLiteral("FillLvDBDetail"), [&] {
        list.clearHeaders();
        list.clearItems();
        if (catalog::isMarker(database, {})) return;
        heading = QStringLiteral("Constraints, Indexes and Foreign keys definitions in ") + database +
                  QStringLiteral(" database");
        CatalogReading first = reading(database, catalog::checkConstraints());
        if (!openUnlessRefused(first)) {
            list.addItem(u"<No Permission>");
            return;
        }
        Walk checks(first);
        CatalogReading second = reading(database, catalog::indexColumns());
        second.open();
        Walk indexes(second);
        CatalogReading third = reading(database, catalog::foreignKeys());
        third.open();
        Walk foreignKeys(third);
        addHeaders(list);
        addRows(list, checks, indexes, foreignKeys);
    });
    return heading;
}

/// A refusal is not reported; every other failure to open shows again when the rows are asked for.
bool DBConnection::openUnlessRefused(CatalogReading& reading) {
    try {
        reading.open();
    } catch (const OpeningError& error) {
        if (error.number() != ado::numbers::Unspecified) return true;
        m_connectionLost = true;
        m_untoldLoss = std::current_exception();
        return false;
    }
    return true;
}

}  // namespace tw
