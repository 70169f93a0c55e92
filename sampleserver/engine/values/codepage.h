#pragma once

#include <QByteArray>
#include <QString>

namespace engine {

/// Code page 1252, the one of char, varchar and text. A character it does not have becomes '?'.
char codePageByte(char16_t unit);
QByteArray toCodePage(QStringView text);
QString fromCodePage(QByteArrayView bytes);
/// The text with every character that the code page does not have replaced by '?'.
QString inCodePage(const QString& text);

}  // namespace engine
