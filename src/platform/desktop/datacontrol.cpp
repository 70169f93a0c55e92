#include "platform/desktop/datacontrol.h"

#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "platform/desktop/msgbox.h"
#include "platform/runtimeerror.h"

namespace desktop {

namespace {

controls::GridColumnKind kindOf(ado::FieldType type) {
    if (ado::isNumber(type)) return controls::GridColumnKind::Number;
    return type == ado::FieldType::Binary ? controls::GridColumnKind::Binary : controls::GridColumnKind::Text;
}

void append(controls::RowStore& rows, const ado::Field& field) {
    if (field.isNull()) {
        rows.appendNull();
    } else if (field.Type() == ado::FieldType::Binary) {
        rows.appendText({});
    } else {
        rows.appendText(field.text());
    }
}

}  // namespace

void DataControl::Refresh() {
    try {
        read();
    } catch (...) {
        MsgBox(platform::currentError().description(), MsgBoxIcon::Exclamation);
        throw;
    }
}

void DataControl::read() {
    ado::Connection connection;
    connection.setConnectionString(m_connectionString);
    connection.setCommandTimeout(m_commandTimeout);
    connection.Open();
    ado::Recordset result;
    result.setMaxRecords(m_maxRecords);
    result.Open(m_recordSource, connection);

    std::vector<controls::GridColumn> columns;
    std::vector<const ado::Field*> fields;
    for (int i = 0; i < result.FieldCount(); ++i) {
        fields.push_back(&result.Fields(i));
        columns.push_back({fields.back()->Name(), kindOf(fields.back()->Type())});
    }
    controls::RowStore rows;
    for (; !result.Eof(); result.MoveNext()) {
        rows.addRow(0);
        for (const ado::Field* field : fields) {
            append(rows, *field);
        }
    }
    m_rows.reset(std::move(columns), std::move(rows));
}

}  // namespace desktop
