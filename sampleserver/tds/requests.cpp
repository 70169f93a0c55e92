#include "tds/requests.h"

#include "tds/parameters.h"
#include "tds/wirebytes.h"

namespace tds {

namespace {

constexpr quint16 kProcedureById = 0xFFFF;
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

}  // namespace

QString parseBatch(QByteArrayView message, TdsVersion version) {
    WireReader reader(message);
    skipHeaders(reader, version);
    return utf16Text(reader.take(reader.remaining()));
}

std::vector<engine::ProcedureRequest> parseRpc(QByteArrayView message, TdsVersion version) {
    // What stands between two calls begins like no parameter.
    const QByteArrayView separators = isWide(version) ? QByteArrayView("\xFF\xFE") : QByteArrayView("\x80");
    WireReader reader(message);
    skipHeaders(reader, version);
    std::vector<engine::ProcedureRequest> calls;
    do {
        engine::ProcedureRequest& call = calls.emplace_back();
        const auto nameLength = reader.number<quint16>();
        call.name =
            nameLength == kProcedureById ? procedureName(reader.number<quint16>()) : reader.text(nameLength);
        reader.number<quint16>();  // options
        while (!reader.atEnd() && !separators.contains(reader.peek()))
            call.parameters.push_back(readParameter(reader, int(call.parameters.size()) + 1, version));
        if (!reader.atEnd()) reader.take(1);
    } while (!reader.atEnd());
    return calls;
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
