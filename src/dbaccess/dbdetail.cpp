#include "dbaccess/catalog.h"
#include "dbaccess/dbconnection.h"
#include "platform/ado/error.h"
#include "platform/controls/listitems.h"

#include <utility>
#include <vector>

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

/// One of the three statements, walked beside the others.
class Walk {
  public:
    explicit Walk(CatalogReading& reading) : m_rows(std::move(reading.rows())) {
        for (int i = 0; i < m_rows.FieldCount(); ++i)
            m_fields.push_back(&m_rows.Fields(i));
    }

    bool atEnd() const { return m_rows.Eof(); }
    int count() const { return static_cast<int>(m_fields.size()); }
    /// Of the current row; empty for a null. The view holds until the walk moves on.
    QStringView text(int index) const {
        const ado::Field& field = *m_fields[static_cast<size_t>(index)];
        return field.isNull() ? QStringView() : field.text();
    }
    void moveOn() { m_rows.MoveNext(); }

  private:
    ado::Recordset m_rows;
    std::vector<const ado::Field*> m_fields;
};

/// Leaves out the table and the name of an index that the row before told already.
class IndexGroups {
  public:
    QStringView shown(int index, QStringView text) {
        if (index >= Told) return text;
        QString& last = m_last[index];
        if (last == text) return {};
        last = text.toString();
        return text;
    }

  private:
    static constexpr int Told = 2;
    QString m_last[Told];
};

/// Sets the texts from `first` on of the walk's row as sub-items, the row's first text at `column`.
void setTexts(controls::ListItems& list, int item, int column, const Walk& walk, int first) {
    for (int i = first; i < walk.count(); ++i) {
        if (const QStringView text = walk.text(i); !text.isEmpty()) list.setSubItem(item, column + i, text);
    }
}

void setIndexTexts(controls::ListItems& list, int item, const Walk& indexes, IndexGroups& groups) {
    for (int i = 0; i < indexes.count(); ++i) {
        const QStringView text = groups.shown(i, indexes.text(i));
        if (!text.isEmpty()) list.setSubItem(item, IndexesAt + i, text);
    }
}

void addRows(controls::ListItems& list, Walk& checks, Walk& indexes, Walk& foreignKeys) {
    IndexGroups groups;
    while (!checks.atEnd() || !indexes.atEnd() || !foreignKeys.atEnd()) {
        const int item = list.addItem(checks.atEnd() ? QStringView() : checks.text(0));
        if (!checks.atEnd()) {
            setTexts(list, item, ChecksAt, checks, 1);
            checks.moveOn();
        }
        if (!indexes.atEnd()) {
            setIndexTexts(list, item, indexes, groups);
            indexes.moveOn();
        }
        if (!foreignKeys.atEnd()) {
            setTexts(list, item, ForeignKeysAt, foreignKeys, 0);
            foreignKeys.moveOn();
        }
    }
}

}  // namespace

QStringList DBConnection::detailStatements() {
    return {catalog::checkConstraints(), catalog::indexColumns(), catalog::foreignKeys()};
}

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
