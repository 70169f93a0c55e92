#include "fakesession.h"

#include "engine/values/convert.h"
#include "engine/values/typeinfo.h"

#include <QThread>

using engine::ResultColumn;
using engine::TypeId;
using engine::Value;

namespace {

void tellText(engine::ResultSink& sink, const QString& text) {
    sink.columns({ResultColumn{QStringLiteral("said"), {TypeId::NText}}});
    const Value row[]{text};
    sink.row(row);
    sink.statementDone(1, true);
}

void tellRowsUntilCancelled(engine::ResultSink& sink) {
    sink.columns({ResultColumn{QStringLiteral("n"), {TypeId::Int}}});
    qint64 count = 0;
    for (; !sink.cancelled(); ++count) {
        const Value row[]{count};
        sink.row(row);
    }
    sink.statementDone(count, true);
}

}  // namespace

void FakeSession::execute(const QString& batch, engine::ResultSink& sink) {
    const QString echo = QStringLiteral("echo ");
    if (batch == QStringLiteral("who")) {
        const QStringList said{m_request.user, m_request.password, m_request.clientHost,
                               m_request.application, database()};
        tellText(sink, said.join(u'|'));
    } else if (batch.startsWith(echo)) {
        tellText(sink, batch.mid(echo.size()));
    } else if (batch == QStringLiteral("rows")) {
        tellRowsUntilCancelled(sink);
    } else if (batch == QStringLiteral("wait")) {
        while (!sink.cancelled())
            QThread::msleep(1);
    } else if (m_execute) {
        m_execute(batch, sink);
    }
}

void FakeSession::call(const engine::ProcedureRequest& request, engine::ResultSink& sink) {
    if (request.name.compare(QLatin1String("sp_executesql"), Qt::CaseInsensitive) == 0)
        return execute(std::get<QString>(request.parameters.at(0).value), sink);
    QStringList said{request.name};
    int position = 0;
    for (const engine::Parameter& parameter : request.parameters) {
        const auto* bytes = std::get_if<QByteArray>(&parameter.value);
        said << parameter.name << engine::typeName(parameter.type.id)
             << (parameter.value.index() == 0 ? QStringLiteral("null")
                 : bytes                      ? QString::fromLatin1(bytes->toHex())
                                              : engine::valueText(parameter.value, parameter.type));
        if (parameter.output) sink.returnValue(position, parameter);
        ++position;
    }
    tellText(sink, said.join(u' '));
}
