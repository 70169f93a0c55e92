#pragma once

#include "platform/ado/field.h"

namespace ado {

/// What the driver says about a column.
struct Column {
    QString name;
    FieldType type = FieldType::Text;
    qsizetype length = 0;  ///< of a Text, Exact or Guid value: most UTF-16 units; 0 without bound
    int ordinal = 0;       ///< in the statement's result, from 1
    bool unbounded() const { return length == 0 && (type == FieldType::Text); }
};

/// A value of the current row as the driver left it, in its column's native form:
/// UTF-16 units, qint64, double, float or a timestamp structure.
struct Cell {
    static constexpr qint64 Null = -1;

    const std::byte* data = nullptr;
    qint64 size = Null;  ///< bytes
};

}  // namespace ado
