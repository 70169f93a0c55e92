#pragma once

#include <QWidget>

#include <array>

namespace desktop {
class SplitterHandle;
class TitleLabel;
}  // namespace desktop

namespace tw {

/// Arranges the three panes of a document window, their titles and the two splitters. All positions are in
/// twips, from the window's inner left or top edge.
class DocumentPanes : public QObject {
    Q_OBJECT

  public:
    struct Views {
        QWidget* tvDB;
        QWidget* lvTblDef;
        QWidget* lvTblData;
    };

    /// Makes titles and splitters as children of the window that the views are in. `layout` is read at every
    /// arrangement: 1 stretches the data list under both others, anything else stands it under the
    /// definition list.
    DocumentPanes(QWidget& window, const Views& views, const qint16& layout);

    /// The titles above the tree, the definition list and the data list.
    desktop::TitleLabel& lblTitle(int index) const { return *m_titles[static_cast<std::size_t>(index)]; }

    /// For a vertical splitter at `x`, which is brought inside the limits.
    void SizeControls(int& x);
    /// For a horizontal splitter at `y`, which is brought inside the limits.
    void SizeControls2(int& y);
    /// Puts both splitters back to the middle.
    void Form_Resize();

  private:
    void layOutAtBars();
    bool dataListSpansWindow() const { return m_layout == 1; }

    QWidget& m_window;
    Views m_views;
    const qint16& m_layout;
    QWidget* m_picTitles;
    std::array<desktop::TitleLabel*, 3> m_titles;
    QWidget* m_picSplitter;
    QWidget* m_picSplitter2;
    desktop::SplitterHandle* m_imgSplitter;
    desktop::SplitterHandle* m_imgSplitter2;
};

}  // namespace tw
