#pragma once

#include <QString>

#include <string_view>

namespace engine {

/// Orders two texts as a default SQL Server does: without regard to case, trailing blanks without weight.
/// Returns less than, equal to or greater than 0. UTF-8.
int compareTexts(std::string_view a, std::string_view b);

/// compareTexts as an SQLite collation.
int compareStoredTexts(void*, int sizeA, const void* a, int sizeB, const void* b);

/// A text with its case folded, for searching; the same number of characters as the text.
QString foldedCase(QStringView text);

/// LIKE: % any run, _ any one character, [a-z] and [^a-z] sets, `escape` (0: none) before a literal
/// character.
bool matchesPattern(QStringView text, QStringView pattern, QChar escape);

}  // namespace engine
