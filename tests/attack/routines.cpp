#include "routines.h"

#include "compare/comparison.h"
#include "dbaccess/connectionpool.h"
#include "dbaccess/dbconnection.h"
#include "platform/controls/comboitems.h"
#include "platform/controls/listitems.h"
#include "platform/controls/nodes.h"
#include "platform/desktop/datacontrol.h"
#include "platform/desktop/msgbox.h"

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

const QString First = QStringLiteral("First");
const QString Second = QStringLiteral("Second");
const QString Box = QStringLiteral("Box");
const QString Piece = QStringLiteral("Piece");
const QString Own = QStringLiteral("Own");

void add(Outcome& outcome, const QString& text, int picture) {
    outcome.texts += text + u'|' + QString::number(picture);
    outcome.failed |= text == QStringLiteral("<No Permission>") || text == QStringLiteral("<No Connection>");
}

void add(Outcome& outcome, const QAbstractItemModel& model, const QModelIndex& parent = {}) {
    for (int row = 0; row < model.rowCount(parent); ++row) {
        for (int column = 0; column < model.columnCount(parent); ++column) {
            const QModelIndex index = model.index(row, column, parent);
            add(outcome, index.data(Qt::DisplayRole).toString(), index.data(Qt::UserRole).toInt());
            add(outcome, model, index);
        }
    }
}

void addList(Outcome& outcome, controls::ListItems& list) {
    for (int column = 0; column < list.headerCount(); ++column)
        outcome.texts += list.header(column);
    for (int item = 0; item < list.count(); ++item) {
        add(outcome, list.text(item), list.icon(item));
        for (int column = 1; column < list.headerCount(); ++column)
            outcome.texts += list.subItem(item, column);
    }
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

void compare(Outcome& outcome, const QString& connectionString) {
    const auto pool = std::make_shared<tw::ConnectionPool>();
    tw::DBConnection first(pool);
    tw::DBConnection second(pool);
    for (tw::DBConnection* side : {&first, &second}) {
        side->setConnectionString(connectionString);
        side->setDatabase(side == &first ? First : Second);
        side->setTable(QStringLiteral("(All Tables)"));
    }
    controls::ListItems list1;
    controls::ListItems list2;
    Progress progress(outcome);
    tw::Comparison(
        {first, list1, First}, {second, list2, Second}, {true, true, true}, progress, [] {},
        [] { return false; })
        .run();
    addList(outcome, list1);
    addList(outcome, list2);
}

/// A routine of a connection object that fills a model.
template <class Model, class Fill>
Routine filling(const char* name, Fill fill) {
    return {name, [fill](const QString& connectionString, Outcome& outcome) {
                tw::DBConnection connection;
                connection.setConnectionString(connectionString);
                Model model;
                if constexpr (std::is_same_v<decltype(fill(connection, model)), bool>)
                    outcome.failed = !fill(connection, model);
                else if constexpr (std::is_same_v<decltype(fill(connection, model)), QString>)
                    outcome.texts += fill(connection, model);
                else
                    fill(connection, model);
                if constexpr (std::is_same_v<Model, controls::ListItems>)
                    addList(outcome, model);
                else
                    add(outcome, model);
            }};
}

Routine query(const char* name, const char* text) {
    return {name, [query = QString::fromLatin1(text)](const QString& connectionString, Outcome& outcome) {
                tw::DBConnection connection;
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
    return outcome;
}

Routine refusedQuery() {
    return query("refused", "select * from Nowhere");
}

std::vector<Routine> allRoutines() {
    using controls::ComboItems;
    using controls::ListItems;
    using tw::DBConnection;
    return {
        filling<controls::Nodes>("FillTvDB", [](DBConnection& c, auto& tree) { return c.FillTvDB(tree); }),
        filling<ComboItems>("FillCbDB", [](DBConnection& c, auto& combo) { return c.FillCbDB(combo); }),
        filling<ComboItems>("FillCbTable",
                            [](DBConnection& c, auto& combo) { return c.FillCbTable(combo, First); }),
        filling<ComboItems>("FillCbColumn",
                            [](DBConnection& c, auto& combo) { c.FillCbColumn(combo, First, Box); }),
        filling<ListItems>("FillLvTblDef",
                           [](DBConnection& c, auto& list) { c.FillLvTblDef(list, First, Box); }),
        filling<ListItems>(
            "FillLvTblData",
            [](DBConnection& c, auto& list) { return c.FillLvTblData(list, First, Box, 200); }),
        filling<ListItems>("FillLvTblData, owner",
                           [](DBConnection& c, auto& list) { return c.FillLvTblData(list, First, Own, 0); }),
        filling<ListItems>("FillLvDBDetail",
                           [](DBConnection& c, auto& list) { return c.FillLvDBDetail(list, First); }),
        query("ExecuteQuery", "select * from Piece select ShelfId from Shelf"),
        dataControl("data control", "select * from Piece", 0),
        dataControl("data control, blocks", "select BoxId, Weight, Packed, Label from Box", 500),
        {"comparison",
         [](const QString& connectionString, Outcome& outcome) { compare(outcome, connectionString); }},
    };
}

}  // namespace attack
