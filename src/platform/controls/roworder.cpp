#include "platform/controls/roworder.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <numeric>

namespace controls {

namespace {

/// Has whole numbers of 64 bits to the letter. Nulls, and what is no number, come first.
std::vector<long double> numbersOf(const RowStore& rows, int column) {
    std::vector<long double> numbers;
    numbers.reserve(static_cast<size_t>(rows.count()));
    for (int row = 0; row < rows.count(); ++row) {
        const QByteArray text = rows.text(row, column).toLatin1();
        long double number = 0;
        const auto read = std::from_chars(text.begin(), text.end(), number);
        numbers.push_back(read.ec == std::errc() ? number : -std::numeric_limits<long double>::infinity());
    }
    return numbers;
}

/// A null is less than an empty text.
std::vector<QString> textsOf(const RowStore& rows, int column) {
    std::vector<QString> texts;
    texts.reserve(static_cast<size_t>(rows.count()));
    for (int row = 0; row < rows.count(); ++row)
        texts.push_back(rows.isNull(row, column) ? QString() : u'.' + rows.text(row, column).toCaseFolded());
    return texts;
}

template <class Keys>
void sortBy(std::vector<int>& rows, const Keys& keys, Qt::SortOrder order) {
    std::stable_sort(rows.begin(), rows.end(), [&](int one, int other) {
        const auto& first = keys[static_cast<size_t>(order == Qt::AscendingOrder ? one : other)];
        const auto& second = keys[static_cast<size_t>(order == Qt::AscendingOrder ? other : one)];
        return first < second;
    });
}

}  // namespace

std::vector<int> sortedRows(const RowStore& rows, int column, GridColumnKind kind, Qt::SortOrder order) {
    std::vector<int> numbers(static_cast<size_t>(rows.count()));
    std::iota(numbers.begin(), numbers.end(), 0);
    if (kind == GridColumnKind::Number) {
        sortBy(numbers, numbersOf(rows, column), order);
    } else if (kind == GridColumnKind::Text) {
        sortBy(numbers, textsOf(rows, column), order);
    }
    return numbers;
}

}  // namespace controls
