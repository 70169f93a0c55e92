#include "fakesession.h"

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
