#include "tds/tokens.h"

#include "engine/values/productversion.h"
#include "tds/wirebytes.h"

#include <array>

namespace tds {

namespace {

constexpr int kWorstInformation = 10;
constexpr qsizetype kLongestMessage = 4000;

/// Appends a token whose two-byte length follows its first byte.
template <typename Body>
void appendSized(QByteArray& out, Token token, Body body) {
    appendNumber(out, quint8(token));
    const qsizetype at = out.size();
    appendNumber(out, quint16(0));
    body();
    qToLittleEndian(quint16(out.size() - at - 2), out.data() + at);
}

void appendByteBytes(QByteArray& out, QByteArrayView bytes) {
    appendNumber(out, quint8(bytes.size()));
    out.append(bytes);
}

}  // namespace

void appendDone(QByteArray& out, const Done& done, TdsVersion version) {
    appendNumber(out, quint8(done.token));
    appendNumber(out, done.status);
    appendNumber(out, done.command);
    if (isWide(version))
        appendNumber(out, done.rows);
    else
        appendNumber(out, quint32(done.rows));
}

void appendMessage(QByteArray& out, const engine::SqlMessage& message, const QString& serverName,
                   TdsVersion version) {
    appendSized(out, message.severity > kWorstInformation ? Token::Error : Token::Info, [&] {
        appendNumber(out, qint32(message.number));
        appendNumber(out, quint8(message.state));
        appendNumber(out, quint8(message.severity));
        appendShortText(out, QStringView(message.text).left(kLongestMessage));
        appendByteText(out, serverName);
        appendByteText(out, {});  // the procedure
        if (isWide(version))
            appendNumber(out, qint32(message.line));
        else
            appendNumber(out, quint16(message.line));
    });
}

void appendTextChange(QByteArray& out, EnvChange what, QStringView newText, QStringView oldText) {
    appendSized(out, Token::EnvChange, [&] {
        appendNumber(out, quint8(what));
        appendByteText(out, newText);
        appendByteText(out, oldText);
    });
}

void appendBytesChange(QByteArray& out, EnvChange what, QByteArrayView newBytes, QByteArrayView oldBytes) {
    appendSized(out, Token::EnvChange, [&] {
        appendNumber(out, quint8(what));
        appendByteBytes(out, newBytes);
        appendByteBytes(out, oldBytes);
    });
}

void appendLoginAck(QByteArray& out, quint32 answer) {
    appendSized(out, Token::LoginAck, [&] {
        appendNumber(out, quint8(1));  // the language of batches is Transact-SQL
        char version[sizeof(answer)];
        qToBigEndian(answer, version);
        out.append(version, sizeof(version));
        appendByteText(out, u"Microsoft SQL Server");
        out.append(productVersion());
    });
}

void appendReturnStatus(QByteArray& out, qint32 status) {
    appendNumber(out, quint8(Token::ReturnStatus));
    appendNumber(out, status);
}

QByteArrayView productVersion() {
    using engine::ProductVersion;
    static constexpr std::array<char, 4> bytes{ProductVersion::major, ProductVersion::minor,
                                               char(ProductVersion::build >> 8), char(ProductVersion::build)};
    return {bytes.data(), qsizetype(bytes.size())};
}

}  // namespace tds
