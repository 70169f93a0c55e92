#include "tds/prelogin.h"

#include "tds/tokens.h"
#include "tds/wirebytes.h"

#include <utility>
#include <vector>

namespace tds {

namespace {

constexpr quint8 kTerminator = 0xFF;
constexpr int kOptionSize = 5;
constexpr char kEncryptionNotSupported = 2;

void checkOptions(QByteArrayView request) {
    WireReader reader(request);
    while (reader.number<quint8>() != kTerminator) {
        const auto offset = qFromBigEndian<quint16>(reader.take(2).data());
        const auto length = qFromBigEndian<quint16>(reader.take(2).data());
        if (length > 0 && offset + length > request.size())
            throw ProtocolError("pre-login option outside its message");
    }
}

}  // namespace

QByteArray answerPreLogin(QByteArrayView request) {
    checkOptions(request);
    const std::vector<std::pair<quint8, QByteArray>> options{
        {0, productVersion().toByteArray() + QByteArray(2, '\0')},  // version and sub-build
        {1, QByteArray(1, kEncryptionNotSupported)},
        {2, QByteArray(1, '\0')},  // the instance is the one asked for
        {3, QByteArray()},         // thread id
        {4, QByteArray(1, '\0')},  // multiple active result sets
    };
    QByteArray directory;
    QByteArray data;
    const qsizetype dataStart = qsizetype(options.size()) * kOptionSize + 1;
    for (const auto& [token, value] : options) {
        char place[4];
        qToBigEndian(quint16(dataStart + data.size()), place);
        qToBigEndian(quint16(value.size()), place + 2);
        directory.append(char(token)).append(place, sizeof(place));
        data.append(value);
    }
    return directory.append(char(kTerminator)).append(data);
}

}  // namespace tds
