#include "scriptedserver.h"

#include <QThread>

using engine::ResultColumn;
using engine::SqlType;
using engine::TypeId;
using engine::Value;

namespace {

ResultColumn column(const char* name, TypeId id, int length = 0, int precision = 0, int scale = 0) {
    return {QString::fromUtf8(name), SqlType{id, length, precision, scale}};
}

void tellRow(engine::ResultSink& sink, const std::vector<Value>& values) {
    sink.row(values);
}

void fail(engine::ResultSink& sink, int number) {
    sink.message({.number = number, .text = QStringLiteral("Error %1.").arg(number)});
    sink.statementDone(-1, false);
}

void tellTypes(engine::ResultSink& sink, bool texts) {
    struct Kind {
        ResultColumn column;
        Value first;
        Value second;
    };
    std::vector<Kind> kinds{
        {column("bit", TypeId::Bit), qint64(1), qint64(0)},
        {column("tinyint", TypeId::TinyInt), qint64(255), qint64(0)},
        {column("int", TypeId::Int), qint64(-2147483648), qint64(7)},
        {column("decimal", TypeId::Decimal, 0, 38, 10),
         QStringLiteral("-1234567890123456789012345678.0987654321"), QStringLiteral("0.0000000005")},
        {column("money", TypeId::Money), qint64(-9223372036854775807 - 1), qint64(5)},
        {column("smallmoney", TypeId::SmallMoney), qint64(-12345678), qint64(1)},
        {column("float", TypeId::Float), 0.1, 1e300},
        {column("real", TypeId::Real), double(0.1F), -2.0},
        {column("datetime", TypeId::DateTime), qint64(36524) * 25920000 + 3661 * 300 + 1, qint64(0)},
        {column("smalldatetime", TypeId::SmallDateTime), qint64(36524) * 25920000 + 61 * 60 * 300, qint64(0)},
        {column("char", TypeId::Char, 5), QStringLiteral("ab   "), QString(5, u' ')},
        {column("varchar", TypeId::VarChar, 8000), QString(8000, u'\u20AC'), QString()},
        {column("nvarchar", TypeId::NVarChar, 50), QStringLiteral("\U0001F600\u0416\u6F22"), QString()},
        {column("varbinary", TypeId::VarBinary, 8), QByteArray("\1\2"), QByteArray()},
        {column("uniqueidentifier", TypeId::UniqueIdentifier),
         QByteArray::fromHex("000102030405060708090a0b0c0d0eff"), QByteArray(16, '\0')},
    };
    if (texts) {
        kinds.push_back({column("text", TypeId::Text), QStringLiteral("long \u20AC"), QString()});
        kinds.push_back({column("ntext", TypeId::NText), QStringLiteral("long \U0001F600"), QString()});
        kinds.push_back({column("image", TypeId::Image), QByteArray("\3"), QByteArray("\3")});
    }
    std::vector<ResultColumn> columns;
    std::vector<Value> first;
    std::vector<Value> second;
    for (const Kind& kind : kinds) {
        columns.push_back(kind.column);
        first.push_back(kind.first);
        second.push_back(kind.second);
    }
    sink.columns(columns);
    tellRow(sink, first);
    tellRow(sink, second);
    tellRow(sink, std::vector<Value>(columns.size()));
    sink.statementDone(3, true);
}

void tellLong(engine::ResultSink& sink, int times) {
    sink.columns({column("before", TypeId::Int), column("wide", TypeId::NText),
                  column("narrow", TypeId::Text), column("behind", TypeId::Int)});
    tellRow(sink, {qint64(1), longPiece.repeated(times), longNarrowPiece.repeated(times), qint64(2)});
    tellRow(sink, {qint64(3), {}, {}, qint64(4)});
    sink.statementDone(2, true);
}

}  // namespace

ScriptedServer::ScriptedServer()
    : m_host([this](const QString& batch, engine::ResultSink& sink) { answer(batch, sink); }) {}

QString ScriptedServer::connectionString() const {
    return QStringLiteral("driver={SQL Server};server=127.0.0.1,%1;uid=sa;pwd=x").arg(m_host.port());
}

QStringList ScriptedServer::takeBatches() {
    const QMutexLocker lock(&m_mutex);
    return std::exchange(m_batches, {});
}

void ScriptedServer::tellCount(engine::ResultSink& sink, int rows) {
    sink.columns({column("n", TypeId::Int), column("s", TypeId::NVarChar, 50)});
    int told = 0;
    for (; told < rows && !sink.cancelled(); ++told)
        tellRow(sink, {qint64(told), told % 7 ? Value(QStringLiteral("row %1").arg(told)) : Value()});
    m_rowsTold = told;
}

void ScriptedServer::answer(const QString& batch, engine::ResultSink& sink) {
    {
        const QMutexLocker lock(&m_mutex);
        m_batches.push_back(batch);
    }
    const QStringList words = batch.split(u' ');
    const QString& verb = words.first();
    if (verb == QStringLiteral("count")) {
        tellCount(sink, words.at(1).toInt());
        sink.statementDone(m_rowsTold, true);
    } else if (verb == QStringLiteral("types")) {
        tellTypes(sink, words.size() > 1);
    } else if (verb == QStringLiteral("long")) {
        tellLong(sink, words.at(1).toInt());
    } else if (verb == QStringLiteral("named")) {
        sink.columns({column("", TypeId::Int), column("COLUMN_NAME", TypeId::Int),
                      column("\u0421\u0442\u043E\u043B\u0431\u0435\u0446 \U0001F600", TypeId::Int)});
        tellRow(sink, {qint64(1), qint64(2), qint64(3)});
        sink.statementDone(1, true);
    } else if (verb == QStringLiteral("fail")) {
        if (words.size() > 2) tellCount(sink, words.at(2).toInt());
        fail(sink, words.at(1).toInt());
    } else if (verb == QStringLiteral("counts") || verb == QStringLiteral("mixed")) {
        sink.statementDone(5, false);
        if (verb == QStringLiteral("counts")) {
            sink.statementDone(0, false);
            sink.statementDone(2, false);
            return;
        }
        tellCount(sink, 1);
        sink.statementDone(1, true);
        fail(sink, 208);
    } else {
        sink.statementDone(-1, false);
    }
}
