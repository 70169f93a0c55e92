#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QtEndian>

#include <stdexcept>

namespace tds {

/// A client broke the protocol; its connection ends.
class ProtocolError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Appends a number in little-endian order, the order of everything in TDS but packet and pre-login headers.
template <typename Number>
void appendNumber(QByteArray& out, Number number) {
    char bytes[sizeof(Number)];
    qToLittleEndian(number, bytes);
    out.append(bytes, qsizetype(sizeof(Number)));
}

/// Appends the UTF-16LE bytes of a text, without a length.
void appendUtf16(QByteArray& out, QStringView text);

/// Appends a length in characters as one byte (B_VARCHAR) or two (US_VARCHAR) and the text, cut at what the
/// length can tell.
void appendByteText(QByteArray& out, QStringView text);
void appendShortText(QByteArray& out, QStringView text);

/// Reads the numbers and texts of a message one after the other.
/// Every read throws ProtocolError when the message ends before what is read.
class WireReader {
  public:
    explicit WireReader(QByteArrayView bytes) : m_bytes(bytes) {}

    template <typename Number>
    Number number() {
        return qFromLittleEndian<Number>(take(sizeof(Number)).data());
    }

    QByteArrayView take(qsizetype count) {
        if (count < 0 || count > m_bytes.size() - m_at)
            throw ProtocolError("message is shorter than it says");
        m_at += count;
        return m_bytes.sliced(m_at - count, count);
    }

    /// A text of `characters` UTF-16 units.
    QString text(qsizetype characters);

    /// The next byte, which there must be.
    char peek() const { return m_bytes[m_at]; }
    qsizetype remaining() const { return m_bytes.size() - m_at; }
    bool atEnd() const { return remaining() == 0; }

  private:
    QByteArrayView m_bytes;
    qsizetype m_at = 0;
};

/// The text of an even number of UTF-16LE bytes. Throws ProtocolError for an odd one.
QString utf16Text(QByteArrayView bytes);

}  // namespace tds
