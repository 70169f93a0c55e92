#include "browse/documentpanes.h"

#include "platform/desktop/named.h"
#include "platform/desktop/panelayout.h"
#include "platform/desktop/splitterhandle.h"
#include "platform/desktop/titlelabel.h"
#include "platform/desktop/twips.h"

#include <algorithm>

namespace tw {

namespace {

using desktop::named;
using desktop::SplitterHandle;
using desktop::TitleLabel;
using desktop::toPixels;
using desktop::toTwips;
using desktop::panelayout::HandleSize;
using desktop::panelayout::limit;
using desktop::panelayout::place;

}  // namespace

DocumentPanes::DocumentPanes(QWidget& window, const Views& views, const qint16& layout)
    : QObject(&window),
      m_window(window),
      m_views(views),
      m_layout(layout),
      m_picTitles(named(QStringLiteral("picTitles"), new QWidget(&window))),
      m_titles{named(QStringLiteral("lblTitle0"), new TitleLabel(QStringLiteral("Databases"), m_picTitles)),
               named(QStringLiteral("lblTitle1"),
                     new TitleLabel(QStringLiteral("Table Definition:"), m_picTitles)),
               named(QStringLiteral("lblTitle2"), new TitleLabel(QStringLiteral("Sample Data"), &window))},
      m_picSplitter(named(QStringLiteral("picSplitter"), new QWidget(&window))),
      m_picSplitter2(named(QStringLiteral("picSplitter2"), new QWidget(&window))),
      m_imgSplitter(
          named(QStringLiteral("imgSplitter"), new SplitterHandle(Qt::Horizontal, *m_picSplitter, &window))),
      m_imgSplitter2(
          named(QStringLiteral("imgSplitter2"), new SplitterHandle(Qt::Vertical, *m_picSplitter2, &window))) {
    QWidget* const titled[] = {views.tvDB, views.lvTblDef, views.lvTblData};
    for (size_t i = 0; i < m_titles.size(); ++i)
        m_titles[i]->setTitled(titled[i]);
    m_imgSplitter->setAccessibleName(QStringLiteral("Bar between the tree and the lists"));
    m_imgSplitter2->setAccessibleName(QStringLiteral("Bar above the rows"));
    connect(m_imgSplitter, &SplitterHandle::released, this, &DocumentPanes::layOutAtBars);
    connect(m_imgSplitter2, &SplitterHandle::released, this, &DocumentPanes::layOutAtBars);
}

void DocumentPanes::layOutAtBars() {
    int x = m_imgSplitter->barPosition();
    int y = m_imgSplitter2->barPosition();
    SizeControls(x);
    SizeControls2(y);
}

void DocumentPanes::SizeControls(int& x) {
    const int innerWidth = toTwips(m_window.width());
    limit(x, innerWidth);
    const int titleHeight = toTwips(m_titles[0]->sizeHint().height());
    const int treeHeight = toTwips(m_window.height()) - titleHeight;
    const int listLeft = x + 40;
    const int listWidth = innerWidth - (x + 140);

    place(*m_picTitles, 0, 0, innerWidth, titleHeight);
    place(*m_titles[0], 0, 0, x - 20, titleHeight);
    const int secondTitle = x - 20 + 80;
    place(*m_titles[1], secondTitle, 0, listLeft + listWidth - secondTitle, titleHeight);

    place(*m_views.tvDB, 0, titleHeight, x, treeHeight);
    place(*m_imgSplitter, x, titleHeight, HandleSize, treeHeight);
    place(*m_views.lvTblDef, listLeft, titleHeight, listWidth, toTwips(m_views.lvTblDef->height()));

    const int dataLeft = dataListSpansWindow() ? 0 : listLeft;
    const int dataWidth = dataListSpansWindow() ? listWidth + x + 60 : listWidth;
    const auto placeAcross = [](QWidget& part, int left, int right) {
        place(part, left, toTwips(part.y()), right - left, toTwips(part.height()));
    };
    placeAcross(*m_imgSplitter2, dataLeft, dataLeft + dataWidth);
    placeAcross(*m_views.lvTblData, dataLeft, dataLeft + dataWidth);
    // Its text stands exactly below the title above.
    placeAcross(*m_titles[2], dataListSpansWindow() ? 0 : secondTitle, dataLeft + dataWidth);
}

void DocumentPanes::SizeControls2(int& y) {
    const int innerHeight = toTwips(m_window.height());
    limit(y, innerHeight);
    const auto placeVertically = [](QWidget& widget, int top, int bottom) {
        const int pixels = toPixels(top);
        widget.setGeometry(widget.x(), pixels, widget.width(), std::max(0, toPixels(bottom) - pixels));
    };
    const int titleHeight = toTwips(m_titles[2]->sizeHint().height());
    const int top = toTwips(m_views.tvDB->y());
    const int dataTop = y + HandleSize + titleHeight;

    placeVertically(*m_views.lvTblDef, top, y);
    placeVertically(*m_imgSplitter2, y, y + HandleSize);
    placeVertically(*m_titles[2], y + HandleSize, dataTop);
    placeVertically(*m_views.lvTblData, dataTop, innerHeight);
    const int treeBottom = dataListSpansWindow() ? y : innerHeight;
    placeVertically(*m_views.tvDB, top, treeBottom);
    placeVertically(*m_imgSplitter, top, treeBottom);
}

void DocumentPanes::Form_Resize() {
    int x = toTwips(m_window.width()) / 2;
    int y = toTwips(m_window.height()) / 2;
    SizeControls(x);
    SizeControls2(y);
}

}  // namespace tw
