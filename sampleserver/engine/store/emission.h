#pragma once

#include "engine/store/database.h"
#include "engine/values/sqltype.h"

#include <QString>

#include <vector>

namespace engine {

/// What an SQLite statement needs beside its text: its parameters and the databases it reads.
class Emission {
  public:
    /// The style by which texts without one of their own are read as dates.
    int dateStyle = 0;

    /// The text that stands for a constant; equal constants have equal texts.
    QString constant(const Value& value, const SqlType& type);
    /// The SQLite name under which a database is attached.
    QString schema(const Database& database);

    const std::vector<TypedValue>& parameters() const { return m_parameters; }
    const std::vector<const Database*>& databases() const { return m_databases; }

  private:
    std::vector<TypedValue> m_parameters;
    std::vector<const Database*> m_databases;
};

/// The SQLite name under which a database is attached.
QString schemaName(const Database& database);

}  // namespace engine
