#include "dbaccess/catalogreading.h"

#include "dbaccess/connectionpool.h"
#include "dbaccess/readahead.h"

#include <chrono>
#include <thread>
#include <utility>

namespace tw {

bool isLineLost(const ado::Error& error) {
    using namespace ado::numbers;
    return error.number() == Unspecified || error.number() == ConnectionNotUsable ||
           error.number() == Cancelled;
}

CatalogReading::CatalogReading(Sources sources, QString connectionString, QString statement,
                               const QStringList& fields)
    : m_sources(sources), m_connectionString(std::move(connectionString)), m_statement(std::move(statement)) {
    m_connection.setConnectionString(m_connectionString);
    m_rows.setFields(fields);
}

bool CatalogReading::await(const std::function<bool()>& goesOn) const {
    return !m_sources.ahead || m_sources.ahead->await({m_connectionString, m_statement}, goesOn);
}

void CatalogReading::open() {
    if (m_sources.ahead && openReadAhead()) return;
    if (m_sources.kept && openKept()) return;
    try {
        openFresh();
    } catch (const ado::Error& error) {
        m_failure = std::make_exception_ptr(OpeningError(error));
        std::rethrow_exception(m_failure);
    }
    if (m_sources.kept) m_sources.kept->keep(m_connectionString, m_connection);
}

/// The server may take few logins at once, and those who read ahead have them. It takes a moment to see that
/// they have gone.
void CatalogReading::openFresh() {
    try {
        m_connection.Open();
    } catch (const ado::Error& error) {
        if (error.number() != ado::numbers::Unspecified || !ReadAhead::makeRoom()) throw;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        m_connection.Open();
    }
}

bool CatalogReading::openReadAhead() {
    try {
        auto answers = m_sources.ahead->take({m_connectionString, m_statement});
        if (answers) m_connection = ado::Connection(std::move(*answers));
        return answers.has_value();
    } catch (const ado::Error&) {
        m_failure = std::current_exception();
        throw;
    }
}

bool CatalogReading::openKept() {
    const std::optional<ado::Connection> kept = m_sources.kept->take(m_connectionString);
    if (!kept) return false;
    try {
        m_rows.Open(m_statement, *kept);
    } catch (const ado::Error& error) {
        // Neither is worth waiting for twice.
        if (error.number() != ado::numbers::TimeOut && error.number() != ado::numbers::Cancelled)
            return false;
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
