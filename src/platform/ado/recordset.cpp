#include "platform/ado/recordset.h"

#include "platform/ado/answers.h"
#include "platform/ado/celltext.h"
#include "platform/ado/connection.h"
#include "platform/ado/packedrows.h"
#include "platform/ado/session.h"

#include <algorithm>

namespace ado {

namespace {

[[noreturn]] void throwOwn(qint32 number, const char* description) {
    throw Error(number, QString::fromLatin1(description), {}, 0);
}

[[noreturn]] void throwNoRow() {
    throwOwn(
        platform::errors::NoCurrentRecord,
        "Either BOF or EOF is True, or the current record has been deleted. Requested operation requires a "
        "current record.");
}

class CellField final : public Field {
  public:
    CellField(Column column, const Cell& cell, const bool& eof)
        : m_column(std::move(column)), m_cell(&cell), m_eof(&eof) {}

    QString Name() const override { return m_column.name; }
    FieldType Type() const override { return m_column.type; }
    bool isNull() const override { return cell().size == Cell::Null; }
    QStringView text() const override { return cellText(m_column, cell(), m_room); }
    qint64 toInteger() const override { return cellInteger(m_column, cell()); }

    bool isNamed(const QString& name) const {
        return name.size() == m_column.name.size() && m_column.name.compare(name, Qt::CaseInsensitive) == 0;
    }

  private:
    const Cell& cell() const {
        if (*m_eof) throwNoRow();
        return *m_cell;
    }

    Column m_column;
    const Cell* m_cell;
    const bool* m_eof;
    mutable TextRoom m_room;
};

}  // namespace

/// What an open record set holds.
class RecordsetImpl final : public detail::Reader {
  public:
    ~RecordsetImpl() { close(); }

    void open(std::shared_ptr<detail::Session> session, const QString& text, qint64 most);
    void close();
    void move();
    void detach();

    void readAhead() override;
    void connectionClosed() override { release(); }

    qint64 maxRecords = 0;
    QStringList wanted;  ///< names of fields; empty for all
    bool isOpen() const { return m_session != nullptr; }
    bool eof = true;
    bool moved = false;
    std::vector<CellField> fields;

  private:
    void release();

    std::shared_ptr<detail::Session> m_session;
    std::vector<Cell> m_row;
    std::unique_ptr<RowSource> m_rows;
};

void RecordsetImpl::open(std::shared_ptr<detail::Session> session, const QString& text, qint64 most) {
    detail::Session::Result result = session->run(text, most, wanted);
    m_session = std::move(session);
    m_session->add(*this);
    moved = false;
    if (!result.rows) return;
    m_row.resize(result.columns.size());
    fields.reserve(result.columns.size());
    for (size_t i = 0; i < result.columns.size(); ++i)
        fields.emplace_back(result.columns[i], m_row[i], eof);
    m_rows = std::move(result.rows);
    m_session->setWireReader(this);
    try {
        move();
    } catch (...) {
        close();
        throw;
    }
}

void RecordsetImpl::close() {
    // The rows go before the session that carries them.
    m_rows.reset();
    if (m_session) m_session->remove(*this);
    release();
}

void RecordsetImpl::release() {
    m_rows.reset();
    fields.clear();
    m_row.clear();
    eof = true;
    m_session.reset();
}

void RecordsetImpl::move() {
    try {
        eof = true;
        eof = !m_rows->next(m_row);
    } catch (...) {
        m_rows.reset();
        m_session->noteFailure();
        m_session->endWireReader(*this);
        throw;
    }
    if (!eof) return;
    m_rows.reset();
    m_session->endWireReader(*this);
}

void RecordsetImpl::readAhead() {
    auto packed = std::make_unique<PackedRows>(*m_rows, m_row);
    packed->next(m_row);
    m_rows = std::move(packed);
}

void RecordsetImpl::detach() {
    if (m_rows) {
        auto packed = std::make_unique<PackedRows>(*m_rows, m_row);
        if (packed->failure()) {
            const Error failure = *packed->failure();
            m_session->noteFailure();
            close();
            throw failure;
        }
        packed->next(m_row);
        m_rows = std::move(packed);
    }
    m_session->remove(*this);
    m_session = std::make_shared<detail::Session>();
}

Recordset::Recordset() : m_impl(std::make_unique<RecordsetImpl>()) {}
Recordset::~Recordset() = default;
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;

qint64 Recordset::MaxRecords() const {
    return m_impl->maxRecords;
}

void Recordset::setMaxRecords(qint64 rows) {
    if (isOpen()) detail::throwOpen();
    if (rows < 0) throwOwn(numbers::InvalidArgument, "Arguments are of the wrong type or out of range.");
    m_impl->maxRecords = rows;
}

void Recordset::setFields(const QStringList& names) {
    if (isOpen()) detail::throwOpen();
    m_impl->wanted = names;
}

void Recordset::Open(const QString& source, const Connection& connection, CursorType, LockType,
                     CommandType command) {
    if (isOpen()) detail::throwOpen();
    if (auto answer = connection.m_session->takeAnswer(source)) {
        if (answer->failure) std::rethrow_exception(answer->failure);
        *this = std::move(answer->rows);
        return;
    }
    const QString text = command == CommandType::Table ? QStringLiteral("select * from ") + source : source;
    m_impl->open(connection.m_session, text, m_impl->maxRecords);
}

void Recordset::Close() {
    m_impl->close();
}

bool Recordset::isOpen() const {
    return m_impl->isOpen();
}

void Recordset::detach() {
    m_impl->detach();
}

bool Recordset::Eof() const {
    if (!isOpen()) throwOwn(numbers::ObjectClosed, "Operation is not allowed when the object is closed.");
    return m_impl->eof;
}

void Recordset::MoveFirst() {
    const bool noRow = Eof();
    if (m_impl->moved) throwOwn(numbers::IllegalOperation, "Operation is not allowed in this context.");
    if (noRow) throwNoRow();
}

void Recordset::MoveNext() {
    if (Eof()) throwNoRow();
    m_impl->moved = true;
    m_impl->move();
}

int Recordset::FieldCount() const {
    return static_cast<int>(m_impl->fields.size());
}

const Field& Recordset::Fields(int index) const {
    if (index < 0 || index >= FieldCount())
        throwOwn(platform::errors::ItemNotInCollection,
                 "Item cannot be found in the collection corresponding to the requested name or ordinal.");
    return m_impl->fields[static_cast<size_t>(index)];
}

const Field& Recordset::Fields(const QString& name) const {
    if (Eof()) throwNoRow();
    const auto found =
        std::ranges::find_if(m_impl->fields, [&](const CellField& field) { return field.isNamed(name); });
    if (found == m_impl->fields.end())
        throwOwn(platform::errors::ItemNotInCollection,
                 "Item cannot be found in the collection corresponding to the requested name or ordinal.");
    return *found;
}

}  // namespace ado
