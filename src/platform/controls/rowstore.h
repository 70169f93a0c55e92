#pragma once

#include <QString>

#include <array>
#include <vector>

namespace controls {

/// Rows of texts and an icon number each, packed without an allocation per text.
///
/// Rows lie in pages of 64. A row is its icon number and then its texts one behind the other, each a length
/// and the characters: one byte for each where all are Latin-1, else UTF-16, so that every text comes back to
/// the letter. An empty text of two-byte characters stands for a null. Appending to the last row is cheap;
/// any other change moves the rest of its page.
class RowStore {
  public:
    int count() const { return m_count; }
    /// Adds a row of one text.
    void addRow(QStringView text, int icon);
    /// Adds a row without texts.
    void addRow(int icon);
    /// Adds a text or a null behind those of the last row, which must be there.
    void appendText(QStringView text);
    void appendNull();
    /// Replaces a text, filling up with empty ones before it.
    void setText(int row, int column, QStringView text);
    /// An empty text where the row has none, and for a null.
    QString text(int row, int column) const;
    bool isNull(int row, int column) const;
    int icon(int row) const;
    void setIcon(int row, int icon);
    void clear();

  private:
    static constexpr int RowsPerPage = 64;

    struct Page {
        std::vector<uchar> bytes;
        std::array<size_t, RowsPerPage> starts{};
        int rows = 0;
    };
    struct Place {
        int page;
        int row;
    };

    static Place place(int row) { return {row / RowsPerPage, row % RowsPerPage}; }
    const uchar* rowBegin(Place place) const;
    const uchar* rowEnd(Place place) const;
    /// Where the text of a column begins; the row's end when it has none there.
    const uchar* textBegin(Place place, int column) const;
    void replace(Place place, const uchar* from, const uchar* to, const std::vector<uchar>& bytes);

    std::vector<Page> m_pages;
    int m_count = 0;
    int m_lastTexts = 0;  ///< of the last row
};

}  // namespace controls
