#pragma once

#include "engine/values/sqlerror.h"
#include "engine/values/sqltype.h"

#include <QString>

#include <optional>
#include <string_view>

struct sqlite3;
struct sqlite3_context;
struct sqlite3_value;

namespace engine {

/// A call of a store function from a running statement: its arguments and its result.
class StoreCall {
  public:
    StoreCall(sqlite3_context* context, int count, sqlite3_value** arguments)
        : m_context(context), m_count(count), m_arguments(arguments) {}

    int count() const { return m_count; }
    bool isNull(int i) const;
    bool isInteger(int i) const;
    qint64 integer(int i) const;
    double real(int i) const;
    std::string_view utf8(int i) const;
    QString text(int i) const;
    QByteArray bytes(int i) const;
    SqlType type(int i) const;
    /// Argument `i` as a value of `type`.
    Value value(int i, const SqlType& type) const;
    void* userData() const;

    void result(qint64 number);
    void result(double number);
    void result(const QString& text);
    void result(std::string_view utf8);
    void result(const QByteArray& bytes);
    void result(const Value& value, const SqlType& type);
    /// Argument `i` as it came.
    void resultOf(int i);
    void resultNull();
    void fail(const SqlError& error);

  private:
    sqlite3_context* m_context;
    int m_count;
    sqlite3_value** m_arguments;
};

/// A store function. Null for a null argument unless `takesNull`; the same arguments give the same result
/// unless `varies`.
struct StoreFunction {
    const char* name;
    int arguments;
    void (*run)(StoreCall& call);
    bool takesNull = false;
    bool varies = false;
};

/// `function` must outlive the store.
void registerStoreFunction(sqlite3* store, const StoreFunction& function);

/// What StoreCall::fail put into an SQLite error text, or nothing.
std::optional<SqlError> decodedError(const QString& text);
QByteArray encodedError(const SqlError& error);

}  // namespace engine
