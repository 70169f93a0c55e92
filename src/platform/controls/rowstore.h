#pragma once

#include <QString>

#include <array>
#include <limits>
#include <vector>

namespace controls {

/// Role of a bool in all models of rows: the cell's text stands for what is no text.
inline constexpr int MarkerRole = Qt::UserRole + 2;

/// Rows of texts and an icon number each, packed without an allocation per text.
///
/// Rows lie in pages of 64. A row is its icon number and then its texts one behind the other, each a length
/// and the characters: one byte for each where all are Latin-1, else UTF-16, so that every text comes back to
/// the letter. A Latin-1 text in two-byte characters is a marker, which stands for what is no text; the empty
/// one is a null. Appending to the last row is cheap; any other change moves the rest of its page.
class RowStore {
  public:
    static constexpr qsizetype AllCharacters = std::numeric_limits<qsizetype>::max();
    /// What a model gives to be shown: nobody can read on, and a text may have millions.
    static constexpr qsizetype ShownCharacters = 2000;

    /// Passes the texts of a row once, from left to right. Good until the store changes.
    class Walk {
      public:
        Walk(const RowStore& store, int row);
        /// Goes on to a column, which is not behind.
        void moveTo(int column);
        bool isNull() const;
        bool isMarker() const;
        QString text(qsizetype most = AllCharacters) const;

      private:
        const uchar* m_at;
        const uchar* m_end;
        int m_column = 0;
    };

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
    /// The same with a marker, whose characters are Latin-1.
    void setMarker(int row, int column, QStringView text);
    /// An empty text where the row has none, and for a null; at most so many characters.
    QString text(int row, int column, qsizetype most = AllCharacters) const;
    bool isNull(int row, int column) const;
    bool isMarker(int row, int column) const;
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

    void fillUpTo(int column);
    void replaceText(int row, int column, const std::vector<uchar>& text);
    static Place place(int row) { return {row / RowsPerPage, row % RowsPerPage}; }
    const uchar* rowBegin(Place place) const;
    const uchar* rowEnd(Place place) const;
    void replace(Place place, const uchar* from, const uchar* to, const std::vector<uchar>& bytes);

    std::vector<Page> m_pages;
    int m_count = 0;
    int m_lastTexts = 0;  ///< of the last row
};

}  // namespace controls
