#include "routines.h"

#include "compare/comparison.h"
#include "dbaccess/connectionpool.h"
#include "dbaccess/dbconnection.h"
#include "platform/controls/comboitems.h"
#include "platform/controls/listitems.h"
#include "platform/controls/nodes.h"
#include "platform/desktop/datacontrol.h"
#include "platform/desktop/msgbox.h"
#include "support/rowtexts.h"

#include <QRegularExpression>

extern "C" {
// The linker leads every call of Connection's constructor here: routines have no setting for their time-outs,
// and half a minute is too long where many of them run out.
void __real__ZN3ado10ConnectionC1Ev(ado::Connection* connection);
void __wrap__ZN3ado10ConnectionC1Ev(ado::Connection* connection) {
    __real__ZN3ado10ConnectionC1Ev(connection);
    connection->setConnectionTimeout(1);
    connection->setCommandTimeout(1);
}
}

namespace attack {

namespace {

using controls::ComboItems;
using controls::ListItems;
using controls::Nodes;
using tw::DBConnection;

const QString First = QStringLiteral("First");
const QString Second = QStringLiteral("Second");
const QString Box = QStringLiteral("Box");
const QString Own = QStringLiteral("Own");

void add(Outcome& outcome, const QAbstractItemModel& model, const QModelIndex& parent = {}) {
    for (int row = 0; row < model.rowCount(parent); ++row) {
        for (int column = 0; column < model.columnCount(parent); ++column) {
            const QModelIndex index = model.index(row, column, parent);
            outcome.texts += index.data().toString() + u'|' + index.data(Qt::UserRole).toString();
            add(outcome, model, index);
        }
    }
}

void add(Outcome& outcome, const ListItems& list) {
    outcome.texts += testsupport::headersOf(list) + testsupport::rowsOf(list);
}

void addRows(Outcome& outcome, ado::Recordset& rows) {
    for (; !rows.Eof(); rows.MoveNext())
        for (int i = 0; i < rows.FieldCount(); ++i) {
            const ado::Field& field = rows.Fields(i);
            const bool hasText = !field.isNull() && field.Type() != ado::FieldType::Binary;
            outcome.texts += field.Name() + (hasText ? field.text().toString() : QStringLiteral("null"));
        }
}

/// A step that reports a failure by throwing it.
template <class Step>
void throwing(Outcome& outcome, Step&& step) {
    try {
        step();
    } catch (const platform::RuntimeError& error) {
        outcome.failed = true;
        outcome.boxes += error.description();
    }
}

class Progress final : public tw::ComparisonProgress {
  public:
    explicit Progress(Outcome& outcome) : m_outcome(outcome) {}
    void begin() override {}
    void SetNumberNeed(qint32 expected) override { m_outcome.texts += QString::number(expected); }
    void InitFormLables(const QString&, const QString&) override {}
    void UpdateForm(tw::ComparedState, const QString& item) override { m_outcome.texts += item; }
    void cancel() override { m_outcome.failed = true; }

  private:
    Outcome& m_outcome;
};

/// With two readers ahead, which take turns as they come, a session is not the same each time.
void compare(const QString& connectionString, Outcome& outcome, int mostReaders) {
    const auto pool = std::make_shared<tw::ConnectionPool>();
    DBConnection first(pool);
    DBConnection second(pool);
    for (DBConnection* side : {&first, &second}) {
        side->setConnectionString(connectionString);
        side->setMostReaders(mostReaders);
        side->setDatabase(side == &first ? First : Second);
        side->setTable(QStringLiteral("(All Tables)"));
    }
    ListItems list1;
    ListItems list2;
    Progress progress(outcome);
    tw::Comparison(
        {first, list1, First}, {second, list2, Second}, {true, true, true}, progress, [] {},
        [] { return false; })
        .run();
    add(outcome, list1);
    add(outcome, list2);
}

/// A routine of a connection object that fills a model.
template <class Model, class Fill>
Routine filling(const char* name, Fill fill) {
    return {name, [fill](const QString& connectionString, Outcome& outcome) {
                DBConnection connection;
                connection.setConnectionString(connectionString);
                Model model;
                fill(connection, model, outcome);
                add(outcome, model);
            }};
}

Routine query(const char* name, const char* text) {
    return {name, [query = QString::fromLatin1(text)](const QString& connectionString, Outcome& outcome) {
                DBConnection connection;
                connection.setConnectionString(connectionString);
                auto rows = connection.ExecuteQuery(First, query);
                outcome.failed = !rows;
                if (rows) throwing(outcome, [&] { addRows(outcome, *rows); });
            }};
}

Routine dataControl(const char* name, const char* text, int mostRows) {
    return {name, [=](const QString& connectionString, Outcome& outcome) {
                desktop::DataControl control;
                control.setConnectionString(connectionString + QStringLiteral(";database=First"));
                control.setRecordSource(QString::fromLatin1(text));
                control.setMaxRecords(mostRows);
                control.setCommandTimeout(1);
                throwing(outcome, [&] { control.Refresh(); });
                add(outcome, control.rows());
            }};
}

}  // namespace

Outcome Routine::run(const QString& connectionString) const {
    Outcome outcome;
    const auto before = desktop::setMsgBoxAnswerer([&](const desktop::MsgBoxRequest& request) {
        outcome.boxes += request.text;
        return request.defaultButton;
    });
    try {
        body(connectionString, outcome);
    } catch (...) {
        outcome.escaped = true;
    }
    desktop::setMsgBoxAnswerer(before);
    static const QRegularExpression marker(QStringLiteral("^<No (Permission|Connection)>"));
    outcome.failed |= !outcome.texts.filter(marker).isEmpty();
    static const QRegularExpression port(QStringLiteral("^127\\.0\\.0\\.1,\\d+"));
    outcome.texts.replaceInStrings(port, QStringLiteral("server"));
    return outcome;
}

std::vector<Routine> allRoutines() {
    using C = DBConnection;
    using O = Outcome;
    return {
        filling<Nodes>("FillTvDB", [](C& c, Nodes& tree, O& o) { o.failed = !c.FillTvDB(tree); }),
        filling<ComboItems>("FillCbDB", [](C& c, ComboItems& box, O& o) { o.failed = !c.FillCbDB(box); }),
        filling<ComboItems>("FillCbTable",
                            [](C& c, ComboItems& box, O& o) { o.failed = !c.FillCbTable(box, First); }),
        filling<ComboItems>("FillCbColumn",
                            [](C& c, ComboItems& box, O&) { c.FillCbColumn(box, First, Box); }),
        filling<ListItems>("FillLvTblDef",
                           [](C& c, ListItems& list, O&) { c.FillLvTblDef(list, First, Box); }),
        filling<ListItems>("FillLvTblData", [](C& c, ListItems& list,
                                               O& o) { o.texts += c.FillLvTblData(list, First, Box, 200); }),
        filling<ListItems>(
            "FillLvTblData, owner",
            [](C& c, ListItems& list, O& o) { o.texts += c.FillLvTblData(list, First, Own, 0); }),
        filling<ListItems>("FillLvDBDetail",
                           [](C& c, ListItems& list, O& o) { o.texts += c.FillLvDBDetail(list, First); }),
        query("ExecuteQuery", "select * from Piece select ShelfId from Shelf"),
        dataControl("data control", "select * from Piece", 0),
        dataControl("data control, blocks", "select BoxId, Weight, Packed, Label from Box", 500),
        {"comparison", [](const QString& text, O& o) { compare(text, o, 0); }},
        {"comparison, read ahead", [](const QString& text, O& o) { compare(text, o, 1); }},
    };
}

}  // namespace attack
