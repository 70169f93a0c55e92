#pragma once

#include "engine/values/sqlerror.h"
#include "tds/tdsversion.h"

#include <QByteArray>
#include <QString>

namespace tds {

/// First bytes of what a response consists of (MS-TDS 2.2.7).
enum class Token : quint8 {
    ReturnStatus = 0x79,
    ColumnMetadata = 0x81,
    Error = 0xAA,
    Info = 0xAB,
    ReturnValue = 0xAC,
    LoginAck = 0xAD,
    Row = 0xD1,
    EnvChange = 0xE3,
    Done = 0xFD,
    DoneProc = 0xFE,
    DoneInProc = 0xFF
};

/// Status bits of DONE, DONEPROC and DONEINPROC (MS-TDS 2.2.7.6).
enum DoneStatus : quint16 {
    DoneFinal = 0x0000,
    DoneMore = 0x0001,
    DoneError = 0x0002,
    DoneCount = 0x0010,
    DoneAttention = 0x0020
};

/// What an ENVCHANGE tells (MS-TDS 2.2.7.9).
enum class EnvChange : quint8 {
    Database = 1,
    Language = 2,
    CharacterSet = 3,  ///< 7.0 only
    PacketSize = 4,
    Collation = 7,
    BeginTransaction = 8,
    CommitTransaction = 9,
    RollbackTransaction = 10,
    ResetAcknowledged = 18
};

struct Done {
    Token token = Token::Done;
    quint16 status = DoneFinal;
    quint16 command = 0;
    quint64 rows = 0;
};

void appendDone(QByteArray& out, const Done& done, TdsVersion version);

/// Appends ERROR, or INFO for a message of class 10 and below.
void appendMessage(QByteArray& out, const engine::SqlMessage& message, const QString& serverName,
                   TdsVersion version);

void appendTextChange(QByteArray& out, EnvChange what, QStringView newText, QStringView oldText);
void appendBytesChange(QByteArray& out, EnvChange what, QByteArrayView newBytes, QByteArrayView oldBytes);

/// Appends LOGINACK for the version word `answer` (see AgreedVersion).
void appendLoginAck(QByteArray& out, quint32 answer);

void appendReturnStatus(QByteArray& out, qint32 status);

/// The version of the product as pre-login and LOGINACK tell it: major, minor, build (high byte, low byte).
QByteArrayView productVersion();

}  // namespace tds
