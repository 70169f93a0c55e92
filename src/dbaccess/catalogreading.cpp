#include "dbaccess/catalogreading.h"

#include "dbaccess/connectionpool.h"

#include <utility>

namespace tw {

CatalogReading::CatalogReading(ConnectionPool* pool, QString connectionString, QString statement,
                               const QStringList& fields)
    : m_pool(pool), m_connectionString(std::move(connectionString)), m_statement(std::move(statement)) {
    m_connection.setConnectionString(m_connectionString);
    m_rows.setFields(fields);
}

void CatalogReading::open() {
    if (m_pool && openKept()) return;
    try {
        m_connection.Open();
    } catch (const ado::Error& error) {
        m_failure = std::make_exception_ptr(OpeningError(error));
        std::rethrow_exception(m_failure);
    }
    if (m_pool) m_pool->keep(m_connectionString, m_connection);
}

bool CatalogReading::openKept() {
    const std::optional<ado::Connection> kept = m_pool->take(m_connectionString);
    if (!kept) return false;
    try {
        m_rows.Open(m_statement, *kept);
    } catch (const ado::Error& error) {
        if (error.number() != ado::numbers::TimeOut) return false;
        m_failure = std::current_exception();
    }
    m_connection = *kept;
    return true;
}

ado::Recordset& CatalogReading::rows() {
    if (m_failure) std::rethrow_exception(m_failure);
    if (!m_rows.isOpen()) m_rows.Open(m_statement, m_connection);
    return m_rows;
}

}  // namespace tw
