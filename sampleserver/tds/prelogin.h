#pragma once

#include <QByteArray>

namespace tds {

/// Answers a PRELOGIN (MS-TDS 2.2.6.5): the product's version, encryption not supported, no multiple active
/// result sets. Throws ProtocolError for an option that points outside the message.
QByteArray answerPreLogin(QByteArrayView request);

}  // namespace tds
