#pragma once

#include "platform/ado/column.h"

#include <array>

namespace ado {

/// Room for the text of a value that is no text: a field keeps one, so that making texts allocates nothing.
using TextRoom = std::array<char16_t, 64>;

/// A value as text, either as it lies or made in `room`. Throws Error 13 for a null and for binary data.
QStringView cellText(const Column& column, const Cell& cell, TextRoom& room);

/// A value as a whole number, a fraction rounded half to even. Throws Error 13 when it is none.
qint64 cellInteger(const Column& column, const Cell& cell);

}  // namespace ado
