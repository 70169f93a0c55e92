#include "tds/wirebytes.h"

#include <limits>

namespace tds {

void appendUtf16(QByteArray& out, QStringView text) {
    if (text.isEmpty()) return;
    const qsizetype start = out.size();
    out.resize(start + 2 * text.size());
    qToLittleEndian<char16_t>(text.utf16(), text.size(), out.data() + start);
}

void appendByteText(QByteArray& out, QStringView text) {
    const QStringView part = text.left(std::numeric_limits<quint8>::max());
    appendNumber(out, quint8(part.size()));
    appendUtf16(out, part);
}

void appendShortText(QByteArray& out, QStringView text) {
    const QStringView part = text.left(std::numeric_limits<quint16>::max());
    appendNumber(out, quint16(part.size()));
    appendUtf16(out, part);
}

QString WireReader::text(qsizetype characters) {
    if (characters < 0 || characters > remaining() / 2)
        throw ProtocolError("text is longer than its message");
    return utf16Text(take(2 * characters));
}

QString utf16Text(QByteArrayView bytes) {
    if (bytes.size() % 2 != 0) throw ProtocolError("half a character");
    if (bytes.isEmpty()) return {};
    QString text(bytes.size() / 2, Qt::Uninitialized);
    qFromLittleEndian<char16_t>(bytes.data(), text.size(), text.data());
    return text;
}

}  // namespace tds
