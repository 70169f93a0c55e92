#include "tds/tokensink.h"

#include "tds/wirebytes.h"

namespace tds {

namespace {

constexpr quint16 kSelectCommand = 0xC1;
constexpr int kWorstInformation = 10;

}  // namespace

TokenSink::TokenSink(PacketStream& stream, TdsVersion version, const QString& serverName, Request request)
    : m_stream(stream), m_version(version), m_serverName(serverName), m_request(request) {}

void TokenSink::releaseDone() {
    if (!m_done) return;
    m_done->status |= DoneMore;
    appendDone(m_stream.response(), *m_done, m_version);
    m_done.reset();
}

void TokenSink::columns(const std::vector<engine::ResultColumn>& columns) {
    if (m_broken) return;
    releaseDone();
    m_encoder = RowEncoder(columns);
    appendColumns(m_stream.response(), columns, m_version);
    m_stream.passOn();
}

void TokenSink::row(std::span<const engine::Value> values) {
    if (m_broken) return;
    if (!m_encoder.append(m_stream.response(), values)) {
        message({.number = 8115,
                 .text = QStringLiteral("Arithmetic overflow error converting expression to the data type "
                                        "of its column.")});
        m_broken = true;
    }
    m_stream.passOn();
}

void TokenSink::statementDone(qint64 rows, bool hadColumns) {
    releaseDone();
    Done done{.token = m_request == Request::Rpc ? Token::DoneInProc : Token::Done};
    if (hadColumns) done.command = kSelectCommand;
    if (m_failed) done.status |= DoneError;
    if (rows >= 0) {
        done.status |= DoneCount;
        done.rows = quint64(rows);
    }
    m_failed = false;
    m_done = done;
}

void TokenSink::message(const engine::SqlMessage& message) {
    if (m_broken) return;
    releaseDone();
    m_failed = m_failed || message.severity > kWorstInformation;
    appendMessage(m_stream.response(), message, m_serverName, m_version);
    m_stream.passOn();
}

void TokenSink::databaseChanged(const QString& oldName, const QString& newName) {
    releaseDone();
    appendTextChange(m_stream.response(), EnvChange::Database, newName, oldName);
}

bool TokenSink::cancelled() {
    return m_broken || m_stream.interrupted();
}

void TokenSink::returnValue(int position, const engine::Parameter& value) {
    constexpr quint8 outputParameter = 0x01;
    const ColumnFormat format = formatOf(value.type);
    QByteArray& out = m_returnValues;
    appendNumber(out, quint8(Token::ReturnValue));
    appendNumber(out, quint16(position));
    appendByteText(out, value.name);
    appendNumber(out, outputParameter);
    out.append(isWide(m_version) ? 4 : 2, '\0');  // no type of a user's making
    appendNumber(out, quint16(0));
    appendTypeInfo(out, format, m_version);
    const qsizetype start = out.size();
    if (appendValue(out, value.value, format)) return;
    out.resize(start);
    appendValue(out, {}, format);
}

bool TokenSink::finish(bool more) {
    QByteArray& out = m_stream.response();
    const quint16 last = more ? DoneMore : DoneFinal;
    if (m_stream.attentionSeen()) {
        // What was cancelled ends first: clients wait for the acknowledgement as a message of its own.
        releaseDone();
        appendDone(out, {.status = DoneFinal}, m_version);
        m_stream.endResponse();
        appendDone(out, {.status = DoneAttention}, m_version);
        more = false;
    } else if (m_request == Request::Rpc) {
        const bool failed = m_failed || (m_done && (m_done->status & DoneError));
        releaseDone();
        appendReturnStatus(out, failed ? 1 : 0);
        out.append(m_returnValues);
        appendDone(out, {.token = Token::DoneProc, .status = quint16(last | (m_failed ? DoneError : 0))},
                   m_version);
    } else if (m_done && !m_failed) {
        appendDone(out, *m_done, m_version);
    } else {
        releaseDone();
        appendDone(out, {.status = quint16(m_failed ? DoneError : DoneFinal)}, m_version);
    }
    if (!more) m_stream.endResponse();
    return more;
}

}  // namespace tds
