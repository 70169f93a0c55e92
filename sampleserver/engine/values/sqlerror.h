#pragma once

#include <QString>

namespace engine {

/// A message to the client, with SQL Server's own number and severity. Class 10 and below is information.
struct SqlMessage {
    int number = 0;
    int severity = 16;
    int state = 1;
    int line = 1;
    QString text;
};

/// Ends the statement (or, while a script is read, the script) with SQL Server's error number.
class SqlError {
  public:
    explicit SqlError(SqlMessage message) : m_message(std::move(message)) {}
    SqlError(int number, int severity, QString text)
        : m_message{.number = number, .severity = severity, .text = std::move(text)} {}

    const SqlMessage& message() const { return m_message; }
    SqlMessage& message() { return m_message; }

  private:
    SqlMessage m_message;
};

inline SqlError insufficientMemory() {
    return {701, 17, QStringLiteral("There is insufficient system memory to run this query.")};
}

}  // namespace engine
