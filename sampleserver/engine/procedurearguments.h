#pragma once

#include "engine/procedures.h"

#include <initializer_list>
#include <optional>

namespace engine {

/// The arguments of a call by the procedure's parameters.
class ProcedureArguments {
  public:
    /// `parameters`: names with their @, in order. Throws SqlError 8145 (no such parameter),
    /// 8144 (too many), 8143 (given twice).
    ProcedureArguments(const ProcedureCall& call, std::initializer_list<const char*> parameters);

    /// The text of an argument; nothing when it was left out or null.
    std::optional<QString> text(const char* parameter) const;
    /// The same, but throws SqlError 201 when it was left out.
    QString required(const char* parameter) const;

  private:
    const ProcedureCall& m_call;
    std::vector<std::pair<QString, Value>> m_values;
};

}  // namespace engine
