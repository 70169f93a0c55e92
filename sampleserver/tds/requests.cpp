#include "tds/requests.h"

#include "tds/columnformat.h"
#include "tds/wirebytes.h"

namespace tds {

namespace {

constexpr quint16 kProcedureById = 0xFFFF;
constexpr quint16 kExecuteSqlId = 10;
constexpr quint16 kPartlyLengthPrefixed = 0xFFFF;
constexpr quint16 kNullLength = 0xFFFF;
constexpr qsizetype kSmallestHeader = 6;

// ALL_HEADERS: the sum of the lengths, then headers that each begin with their own (MS-TDS 2.2.5.3).
void skipHeaders(WireReader& reader, TdsVersion version) {
    if (!isWide(version)) return;
    const auto total = reader.number<quint32>();
    if (total < sizeof(total)) throw ProtocolError("length of all headers");
    WireReader headers(reader.take(qsizetype(total) - qsizetype(sizeof(total))));
    while (!headers.atEnd()) {
        const auto length = headers.number<quint32>();
        if (length < kSmallestHeader) throw ProtocolError("length of a header");
        headers.take(qsizetype(length) - qsizetype(sizeof(length)));
    }
}

engine::SqlMessage refusal(int number, const QString& text) {
    return {.number = number, .text = text};
}

QString procedureName(quint16 id) {
    static constexpr const char* names[]{"",
                                         "sp_cursor",
                                         "sp_cursoropen",
                                         "sp_cursorprepare",
                                         "sp_cursorexecute",
                                         "sp_cursorprepexec",
                                         "sp_cursorunprepare",
                                         "sp_cursorfetch",
                                         "sp_cursoroption",
                                         "sp_cursorclose",
                                         "sp_executesql",
                                         "sp_prepare",
                                         "sp_execute",
                                         "sp_prepexec",
                                         "sp_prepexecrpc",
                                         "sp_unprepare"};
    return QString::fromLatin1(id < std::size(names) ? names[id] : "");
}

// A value in chunks, each after its length, until one of no bytes.
QString readChunks(WireReader& reader) {
    constexpr quint64 nullLength = ~quint64(0);
    if (reader.number<quint64>() == nullLength) return {};
    QByteArray bytes;
    while (const auto length = reader.number<quint32>())
        bytes.append(reader.take(length));
    return utf16Text(bytes);
}

QString readShortText(WireReader& reader, TdsVersion version) {
    const auto most = reader.number<quint16>();
    if (hasCollations(version)) reader.take(collationBytes().size());
    if (most == kPartlyLengthPrefixed) return readChunks(reader);
    const auto length = reader.number<quint16>();
    return length == kNullLength ? QString() : utf16Text(reader.take(length));
}

QString readLongText(WireReader& reader, TdsVersion version) {
    reader.take(sizeof(quint32));
    if (hasCollations(version)) reader.take(collationBytes().size());
    const auto length = reader.number<qint32>();
    return length < 0 ? QString() : utf16Text(reader.take(length));
}

}  // namespace

QString parseBatch(QByteArrayView message, TdsVersion version) {
    WireReader reader(message);
    skipHeaders(reader, version);
    return utf16Text(reader.take(reader.remaining()));
}

std::variant<QString, engine::SqlMessage> parseRpc(QByteArrayView message, TdsVersion version) {
    WireReader reader(message);
    skipHeaders(reader, version);
    const auto nameLength = reader.number<quint16>();
    const QString name =
        nameLength == kProcedureById ? procedureName(reader.number<quint16>()) : reader.text(nameLength);
    reader.number<quint16>();  // options
    if (name.compare(procedureName(kExecuteSqlId), Qt::CaseInsensitive) != 0)
        return refusal(2812, QStringLiteral("Could not find stored procedure '%1'.").arg(name));

    const auto wrongStatement = refusal(
        214, QStringLiteral("Procedure expects parameter '@statement' of type 'ntext/nchar/nvarchar'."));
    if (reader.atEnd()) return wrongStatement;
    reader.text(reader.number<quint8>());  // the parameter's name
    reader.number<quint8>();               // its status
    QString statement;
    switch (WireType(reader.number<quint8>())) {
        case WireType::NVarChar:
        case WireType::NChar:
            statement = readShortText(reader, version);
            break;
        case WireType::NText:
            statement = readLongText(reader, version);
            break;
        default:
            return wrongStatement;
    }
    if (!reader.atEnd())
        return refusal(
            8144, QStringLiteral("Procedure or function sp_executesql has too many arguments specified."));
    return statement;
}

TransactionRequest parseTransactionRequest(QByteArrayView message, TdsVersion version) {
    using Kind = TransactionRequest::Kind;
    constexpr quint8 beginsAnother = 0x01;
    WireReader reader(message);
    skipHeaders(reader, version);
    const auto number = reader.number<quint16>();
    if (number == 5) return {.kind = Kind::Begin};
    if (number == 9) return {.kind = Kind::Save};
    if (number != 7 && number != 8) return {};
    reader.take(reader.number<quint8>());  // the transaction's name
    const bool again = !reader.atEnd() && (reader.number<quint8>() & beginsAnother);
    return {.kind = number == 7 ? Kind::Commit : Kind::Rollback, .beginsAnother = again};
}

}  // namespace tds
