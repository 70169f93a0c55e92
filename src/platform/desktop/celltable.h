#pragma once

#include <QTableView>

namespace desktop {

/// What lists and grids share: rows of one line each, columns that fit their first rows and can be resized,
/// the selection copied as text with tabs between the columns. Copying and selecting are actions of the
/// table, for a context menu to show.
class CellTable : public QTableView {
    Q_OBJECT

  public:
    /// The selection as it is copied: tabs between columns, each line ended; tabs and line ends inside a text
    /// become blanks. Empty as well when it holds more than the limit.
    virtual QString selectedText() const = 0;
    /// Most characters to copy, 256 million at first. Of a larger selection nothing is copied, which a
    /// message tells.
    void setCopyLimit(qsizetype characters) { m_copyLimit = characters; }
    /// Puts the selection, if there is any, on the clipboard.
    void copySelection();
    /// Adds the command that saves rows, last of the actions so far. What it does is up to whoever owns the
    /// rows.
    QAction* addSaveCommand();

  protected:
    /// How many rows the columns' widths are taken from.
    static constexpr int RowsLookedAt = 100;

    explicit CellTable(QWidget* parent);

    /// Makes each column as wide as its header and its first rows want, within limits.
    void fitColumns();

    qsizetype copyLimit() const { return m_copyLimit; }
    /// Adds a cell's text to a line of such texts.
    static void appendCell(QString& line, const QString& cell);

    bool event(QEvent* event) override;
    /// Ctrl+C copies; Alt+Left and Alt+Right make the current column narrower and wider.
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    QAction* addCommand(const QString& text, QKeySequence::StandardKey key);
    void addCommands();
    int wantedWidth(int column) const;
    void fitRowHeight();

    qsizetype m_copyLimit = 256'000'000;
};

}  // namespace desktop
