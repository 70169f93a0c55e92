#include "compare/comparepanes.h"

#include "platform/desktop/named.h"
#include "platform/desktop/panelayout.h"
#include "platform/desktop/splitterhandle.h"
#include "platform/desktop/titlelabel.h"
#include "platform/desktop/twips.h"

namespace tw {

using desktop::named;
using desktop::SplitterHandle;
using desktop::TitleLabel;
using desktop::toTwips;
using desktop::panelayout::HandleSize;
using desktop::panelayout::limit;
using desktop::panelayout::place;

ComparePanes::ComparePanes(QWidget& window, const Views& views, const qint16& layout)
    : QObject(&window),
      m_window(window),
      m_views(views),
      m_layout(layout),
      m_picTitles(named(QStringLiteral("picTitles"), new QWidget(&window))),
      m_titles{named(QStringLiteral("lblTitle0"), new TitleLabel(QStringLiteral("System 1"), m_picTitles)),
               named(QStringLiteral("lblTitle1"), new TitleLabel(QStringLiteral("System 2"), m_picTitles)),
               named(QStringLiteral("lblTitle2"), new TitleLabel(QStringLiteral("System 2"), &window))},
      m_picSplitter(named(QStringLiteral("picSplitter"), new QWidget(&window))),
      m_picSplitter2(named(QStringLiteral("picSplitter2"), new QWidget(&window))),
      m_imgSplitter(
          named(QStringLiteral("imgSplitter"), new SplitterHandle(Qt::Horizontal, *m_picSplitter, &window))),
      m_imgSplitter2(
          named(QStringLiteral("imgSplitter2"), new SplitterHandle(Qt::Vertical, *m_picSplitter2, &window))) {
    m_titles[0]->setTitled(views.lvSystem1);
    m_titles[1]->setTitled(views.lvSystem2);
    for (SplitterHandle* handle : {m_imgSplitter, m_imgSplitter2})
        handle->setAccessibleName(QStringLiteral("Bar between the two systems"));
    connect(m_imgSplitter, &SplitterHandle::released, this, [this] {
        int x = m_imgSplitter->barPosition();
        SizeControls(x);
    });
    connect(m_imgSplitter2, &SplitterHandle::released, this, [this] {
        int y = m_imgSplitter2->barPosition();
        SizeControls2(y);
    });
}

void ComparePanes::setTitles(const QString& system1, const QString& system2) {
    m_titles[0]->setText(system1);
    m_titles[1]->setText(system2);
    m_titles[2]->setText(m_titles[1]->text());
}

void ComparePanes::SizeControls(int& x) {
    const int innerWidth = toTwips(m_window.width());
    limit(x, innerWidth);
    const int titleHeight = toTwips(m_titles[0]->sizeHint().height());
    const int listHeight = toTwips(m_window.height()) - titleHeight;
    const int secondLeft = x + 40;
    const int secondWidth = innerWidth - (x + 140);

    place(*m_picTitles, 0, 0, innerWidth, titleHeight);
    place(*m_titles[0], 0, 0, x - 30, titleHeight);
    place(*m_titles[1], secondLeft + 20, 0, secondWidth + 100, titleHeight);
    place(*m_views.lvSystem1, 0, titleHeight, x, listHeight);
    place(*m_imgSplitter, x, titleHeight, HandleSize, listHeight);
    place(*m_views.lvSystem2, secondLeft, titleHeight, secondWidth, listHeight);
}

void ComparePanes::SizeControls2(int& y) {
    const int innerWidth = toTwips(m_window.width());
    const int innerHeight = toTwips(m_window.height());
    limit(y, innerHeight);
    const int titleHeight = toTwips(m_titles[0]->sizeHint().height());
    const int secondTop = y + HandleSize + titleHeight;

    place(*m_picTitles, 0, 0, innerWidth, titleHeight);
    place(*m_titles[0], 0, 0, innerWidth, titleHeight);
    place(*m_views.lvSystem1, 0, titleHeight, innerWidth, y - titleHeight);
    place(*m_imgSplitter2, 0, y, innerWidth, HandleSize);
    place(*m_titles[2], 0, y + HandleSize, innerWidth, titleHeight);
    place(*m_views.lvSystem2, 0, secondTop, innerWidth, innerHeight - secondTop);
}

void ComparePanes::Form_Resize() {
    m_imgSplitter->setVisible(sideBySide());
    m_titles[1]->setVisible(sideBySide());
    m_imgSplitter2->setVisible(!sideBySide());
    m_titles[2]->setVisible(!sideBySide());
    if (sideBySide()) {
        int x = toTwips(m_window.width()) / 2;
        SizeControls(x);
    } else {
        int y = toTwips(m_window.height()) / 2;
        SizeControls2(y);
    }
}

}  // namespace tw
