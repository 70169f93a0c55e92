#pragma once

#include "platform/runtimeerror.h"

namespace ado {

/// Numbers that the data provider's failures carry; the positive ones are the layer's own.
namespace numbers {
inline constexpr qint32 LoginFailed = -2147217843;
inline constexpr qint32 Unspecified = -2147467259;  ///< no such database, server or driver; link lost
inline constexpr qint32 StatementError = -2147217900;
inline constexpr qint32 ObjectNotFound = -2147217865;
inline constexpr qint32 ObjectPermission = -2147217911;
inline constexpr qint32 TimeOut = -2147217871;

inline constexpr qint32 InvalidArgument = 3001;
inline constexpr qint32 IllegalOperation = 3219;     ///< not in this state
inline constexpr qint32 ObjectClosed = 3704;         ///< the record set is closed
inline constexpr qint32 ObjectOpen = 3705;           ///< the connection or record set is open already
inline constexpr qint32 ConnectionNotUsable = 3709;  ///< the connection is closed
inline constexpr qint32 Cancelled = 3712;            ///< broken off by the user
}  // namespace numbers

/// A failure of the data provider, with what the driver said.
class Error : public platform::RuntimeError {
  public:
    Error(qint32 number, QString description, QString sqlState, qint32 nativeError)
        : RuntimeError(number, std::move(description)),
          m_sqlState(std::move(sqlState)),
          m_nativeError(nativeError) {}

    /// Five characters, empty for a failure of this layer's own.
    const QString& sqlState() const { return m_sqlState; }
    /// The server's error number, or the driver's.
    qint32 nativeError() const { return m_nativeError; }

  private:
    QString m_sqlState;
    qint32 m_nativeError;
};

/// What was waited for has been broken off.
inline Error cancelled() {
    return {numbers::Cancelled, QStringLiteral("Operation has been cancelled by the user."),
            QStringLiteral("HY008"), 0};
}

}  // namespace ado
