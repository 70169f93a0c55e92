#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace platform {

/// A failure with a number and a description, the one kind that the program reports or ends with.
class RuntimeError : public std::exception {
  public:
    RuntimeError(qint32 number, QString description)
        : m_number(number), m_description(std::move(description)), m_what(m_description.toUtf8()) {}

    /// The number that users are shown; provider failures are negative.
    qint32 number() const { return m_number; }
    const QString& description() const { return m_description; }
    const char* what() const noexcept override { return m_what.constData(); }

  private:
    qint32 m_number;
    QString m_description;
    QByteArray m_what;
};

/// Numbers of the failures that the platform itself raises.
namespace errors {
inline constexpr qint32 InvalidCall = 5;
inline constexpr qint32 Overflow = 6;
inline constexpr qint32 OutOfMemory = 7;
inline constexpr qint32 TypeMismatch = 13;
inline constexpr qint32 Internal = 51;
inline constexpr qint32 DiskFull = 61;
inline constexpr qint32 PermissionDenied = 70;
inline constexpr qint32 PathFileAccess = 75;
inline constexpr qint32 PathNotFound = 76;
inline constexpr qint32 ObjectNotSet = 91;
inline constexpr qint32 InvalidPropertyValue = 380;
inline constexpr qint32 InvalidPropertyArrayIndex = 381;
inline constexpr qint32 NoSuchMember = 438;
inline constexpr qint32 DuplicateCollectionKey = 457;
inline constexpr qint32 NoCurrentRecord = 3021;
inline constexpr qint32 ItemNotInCollection = 3265;
inline constexpr qint32 IndexOutOfBounds = 35600;
inline constexpr qint32 DuplicateNodeKey = 35602;
}  // namespace errors

/// The failures of a keyed collection: 457 for a key that is taken, 5 for one that is not there.
[[noreturn]] void throwDuplicateKey();
[[noreturn]] void throwNoSuchKey();

/// The failure that is being handled, for use in a catch clause; anything that is no RuntimeError becomes one
/// with number 7 (out of memory) or 51 (internal error, with its own words).
RuntimeError currentError();

}  // namespace platform
