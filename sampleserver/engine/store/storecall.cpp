#include "engine/store/storecall.h"

#include "engine/store/storefunctions.h"
#include "engine/values/decimal.h"
#include "engine/values/typeinfo.h"

#include <sqlite3.h>

namespace engine {

namespace {

void run(sqlite3_context* context, int count, sqlite3_value** arguments) {
    const auto* function = static_cast<const StoreFunction*>(sqlite3_user_data(context));
    StoreCall call(context, count, arguments);
    for (int i = 0; i < count && !function->takesNull; ++i) {
        if (call.isNull(i)) return call.resultNull();
    }
    try {
        function->run(call);
    } catch (const SqlError& error) {
        call.fail(error);
    }
}

}  // namespace

bool StoreCall::isNull(int i) const {
    return sqlite3_value_type(m_arguments[i]) == SQLITE_NULL;
}

bool StoreCall::isInteger(int i) const {
    return sqlite3_value_type(m_arguments[i]) == SQLITE_INTEGER;
}

qint64 StoreCall::integer(int i) const {
    return sqlite3_value_int64(m_arguments[i]);
}

double StoreCall::real(int i) const {
    return sqlite3_value_double(m_arguments[i]);
}

std::string_view StoreCall::utf8(int i) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(m_arguments[i]));
    return {text, static_cast<size_t>(sqlite3_value_bytes(m_arguments[i]))};
}

QString StoreCall::text(int i) const {
    const std::string_view raw = utf8(i);
    return QString::fromUtf8(raw.data(), static_cast<qsizetype>(raw.size()));
}

QByteArray StoreCall::bytes(int i) const {
    const auto* data = static_cast<const char*>(sqlite3_value_blob(m_arguments[i]));
    return {data, sqlite3_value_bytes(m_arguments[i])};
}

SqlType StoreCall::type(int i) const {
    return unpackType(integer(i));
}

Value StoreCall::value(int i, const SqlType& type) const {
    if (isNull(i)) return {};
    if (isNarrowDecimal(type)) return Decimal::fromUnscaled(integer(i), type.scale).text();
    if (isText(type.id) || isDecimal(type.id)) return text(i);
    if (isFloat(type.id)) return real(i);
    if (isBinary(type.id) || type.id == TypeId::UniqueIdentifier) return bytes(i);
    return integer(i);
}

void* StoreCall::userData() const {
    return sqlite3_user_data(m_context);
}

void StoreCall::result(qint64 number) {
    sqlite3_result_int64(m_context, number);
}

void StoreCall::result(double number) {
    sqlite3_result_double(m_context, number);
}

void StoreCall::result(std::string_view utf8) {
    sqlite3_result_text(m_context, utf8.data(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT);
}

void StoreCall::result(const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    result(std::string_view(utf8.constData(), static_cast<size_t>(utf8.size())));
}

void StoreCall::result(const QByteArray& bytes) {
    sqlite3_result_blob(m_context, bytes.constData(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT);
}

void StoreCall::result(const Value& value, const SqlType& type) {
    if (std::holds_alternative<std::monostate>(value)) {
        resultNull();
    } else if (isNarrowDecimal(type)) {
        result(Decimal::parse(std::get<QString>(value)).value_or(Decimal()).unscaled().value_or(0));
    } else if (const auto* whole = std::get_if<qint64>(&value)) {
        result(*whole);
    } else if (const auto* number = std::get_if<double>(&value)) {
        result(*number);
    } else if (const auto* text = std::get_if<QString>(&value)) {
        result(*text);
    } else {
        result(std::get<QByteArray>(value));
    }
}

void StoreCall::resultOf(int i) {
    sqlite3_result_value(m_context, m_arguments[i]);
}

void StoreCall::resultNull() {
    sqlite3_result_null(m_context);
}

void StoreCall::fail(const SqlError& error) {
    const QByteArray text = encodedError(error);
    sqlite3_result_error(m_context, text.constData(), static_cast<int>(text.size()));
}

void registerStoreFunction(sqlite3* store, const StoreFunction& function) {
    const int flags = SQLITE_UTF8 | (function.varies ? 0 : SQLITE_DETERMINISTIC);
    sqlite3_create_function_v2(store, function.name, function.arguments, flags,
                               const_cast<StoreFunction*>(&function), run, nullptr, nullptr, nullptr);
}

QByteArray encodedError(const SqlError& error) {
    const SqlMessage& message = error.message();
    return "\x01" + QByteArray::number(message.number) + '\x01' + QByteArray::number(message.severity) +
           '\x01' + message.text.toUtf8();
}

std::optional<SqlError> decodedError(const QString& text) {
    if (!text.startsWith(QChar(1))) return std::nullopt;
    return SqlError(text.section(QChar(1), 1, 1).toInt(), text.section(QChar(1), 2, 2).toInt(),
                    text.section(QChar(1), 3));
}

}  // namespace engine
