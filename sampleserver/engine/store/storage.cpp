#include "engine/store/storage.h"

#include "engine/store/storefunctions.h"
#include "engine/values/decimal.h"
#include "engine/values/sqlerror.h"
#include "engine/values/textorder.h"
#include "engine/values/typeinfo.h"

#include <sqlite3.h>

#include <iterator>

namespace engine {

namespace {

/// The plain notation of a narrow decimal; rows by the million take this road.
QString wholeAsDecimal(qint64 unscaled, int scale) {
    char16_t buffer[24];
    char16_t* const end = std::end(buffer);
    char16_t* at = end;
    auto rest = unscaled < 0 ? 0 - static_cast<quint64>(unscaled) : static_cast<quint64>(unscaled);
    for (int digits = 0; rest > 0 || digits <= scale; ++digits, rest /= 10) {
        if (digits == scale && scale > 0) *--at = u'.';
        *--at = static_cast<char16_t>(u'0' + rest % 10);
    }
    if (unscaled < 0) *--at = u'-';
    return QString::fromUtf16(at, end - at);
}

int compareDecimalTexts(void*, int sizeA, const void* a, int sizeB, const void* b) {
    const auto read = [](const void* data, int size) {
        return Decimal::parse(QString::fromLatin1(static_cast<const char*>(data), size)).value_or(Decimal());
    };
    const auto order = Decimal::compare(read(a, sizeA), read(b, sizeB));
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

}  // namespace

QString storageDeclaration(const SqlType& type) {
    if (isText(type.id)) return QStringLiteral("TEXT COLLATE tsql");
    if (isFloat(type.id)) return QStringLiteral("REAL");
    if (isBinary(type.id) || type.id == TypeId::UniqueIdentifier) return QStringLiteral("BLOB");
    if (isDecimal(type.id) && !isNarrowDecimal(type)) return QStringLiteral("TEXT COLLATE tsqldecimal");
    return QStringLiteral("INTEGER");
}

QString storageColumn(int index) {
    return u'c' + QString::number(index);
}

void bindStored(sqlite3_stmt* statement, int parameter, const Value& value, const SqlType& type) {
    if (std::holds_alternative<std::monostate>(value)) {
        sqlite3_bind_null(statement, parameter);
    } else if (isNarrowDecimal(type)) {
        const auto number = Decimal::parse(std::get<QString>(value));
        sqlite3_bind_int64(statement, parameter,
                           number.value_or(Decimal()).rescaled(type.scale).unscaled().value_or(0));
    } else if (const auto* whole = std::get_if<qint64>(&value)) {
        sqlite3_bind_int64(statement, parameter, *whole);
    } else if (const auto* real = std::get_if<double>(&value)) {
        sqlite3_bind_double(statement, parameter, *real);
    } else if (const auto* text = std::get_if<QString>(&value)) {
        const QByteArray utf8 = text->toUtf8();
        sqlite3_bind_text(statement, parameter, utf8.constData(), static_cast<int>(utf8.size()),
                          SQLITE_TRANSIENT);
    } else {
        const auto& bytes = std::get<QByteArray>(value);
        sqlite3_bind_blob(statement, parameter, bytes.constData(), static_cast<int>(bytes.size()),
                          SQLITE_TRANSIENT);
    }
}

Value readStored(sqlite3_stmt* statement, int column, const SqlType& type) {
    if (sqlite3_column_type(statement, column) == SQLITE_NULL) return {};
    if (isText(type.id) || (isDecimal(type.id) && !isNarrowDecimal(type))) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        return QString::fromUtf8(text, sqlite3_column_bytes(statement, column));
    }
    if (isNarrowDecimal(type)) return wholeAsDecimal(sqlite3_column_int64(statement, column), type.scale);
    if (isFloat(type.id)) return sqlite3_column_double(statement, column);
    if (isBinary(type.id) || type.id == TypeId::UniqueIdentifier) {
        const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
        return QByteArray(bytes, sqlite3_column_bytes(statement, column));
    }
    return qint64(sqlite3_column_int64(statement, column));
}

sqlite3* openStore(const QString& uri) {
    sqlite3* store = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX;
    if (sqlite3_open_v2(uri.toUtf8().constData(), &store, flags, nullptr) != SQLITE_OK) {
        const QString reason = QString::fromUtf8(sqlite3_errmsg(store));
        sqlite3_close(store);
        throw SqlError(9002, 19, QStringLiteral("The store of a database cannot be opened: %1.").arg(reason));
    }
    sqlite3_create_collation_v2(store, "tsql", SQLITE_UTF8, nullptr, compareStoredTexts, nullptr);
    sqlite3_create_collation_v2(store, "tsqldecimal", SQLITE_UTF8, nullptr, compareDecimalTexts, nullptr);
    registerStoreFunctions(store);
    return store;
}

}  // namespace engine
