#pragma once

#include <QObject>

#include <array>

class QWidget;

namespace desktop {
class SplitterHandle;
class TitleLabel;
}  // namespace desktop

namespace tw {

/// Arranges the two lists of a comparison's result window, their titles and the splitter between them. All
/// positions are in twips, from the window's inner left or top edge.
class ComparePanes : public QObject {
    Q_OBJECT

  public:
    struct Views {
        QWidget* lvSystem1;
        QWidget* lvSystem2;
    };

    /// Makes titles and splitters as children of the window that the views are in. `layout` is read at every
    /// arrangement: 2 stands the lists side by side, anything else one above the other.
    ComparePanes(QWidget& window, const Views& views, const qint16& layout);

    /// Titles system 1 and, in both arrangements, system 2.
    void setTitles(const QString& system1, const QString& system2);

    /// Side by side, with the splitter at `x`, which is brought inside the limits.
    void SizeControls(int& x);
    /// One above the other, with the splitter at `y`, which is brought inside the limits.
    void SizeControls2(int& y);
    /// Shows the parts of the arrangement that the layout asks for, with its splitter in the middle.
    void Form_Resize();

  private:
    bool sideBySide() const { return m_layout == 2; }

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
