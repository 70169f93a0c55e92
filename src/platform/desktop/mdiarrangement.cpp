#include "platform/desktop/mdiarrangement.h"

#include "platform/conversions.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace desktop {
namespace arrangement {
namespace {

// The n-th border when a length is cut into equal parts.
int border(int length, int part, int parts) {
    return static_cast<int>(static_cast<qint64>(length) * part / parts);
}

}  // namespace

std::vector<QRect> tiles(const QSize& area, int count, bool stacked) {
    std::vector<QRect> result;
    if (count <= 0) return result;
    // Lines run across the direction of tiling: columns of stacked tiles, rows of others.
    const int root = static_cast<int>(std::sqrt(static_cast<double>(count)));
    const int along = stacked ? area.height() : area.width();
    const int across = stacked ? area.width() : area.height();
    for (int line = 0; line < root; ++line) {
        // The last lines take one tile more each when the count does not divide evenly.
        const int inLine = (count + line) / root;
        const int from = border(across, line, root);
        const int to = border(across, line + 1, root);
        for (int tile = 0; tile < inLine; ++tile) {
            const int begin = border(along, tile, inLine);
            const int end = border(along, tile + 1, inLine);
            result.push_back(stacked ? QRect(from, begin, to - from, end - begin)
                                     : QRect(begin, from, end - begin, to - from));
        }
    }
    return result;
}

std::vector<QRect> cascade(const QSize& area, int count, int step) {
    const QSize size(area.width() * 3 / 4, area.height() * 3 / 4);
    const int steps =
        std::max(1, std::min(area.width() - size.width(), area.height() - size.height()) / step + 1);
    std::vector<QRect> result;
    for (int child = 0; child < count; ++child) {
        const int offset = child % steps * step;
        result.emplace_back(QPoint(offset, offset), size);
    }
    return result;
}

std::vector<QPoint> icons(const QSize& area, int count, const QSize& icon) {
    const int perRow = std::max(1, area.width() / std::max(1, icon.width()));
    std::vector<QPoint> result;
    for (int child = 0; child < count; ++child) {
        result.emplace_back(child % perRow * icon.width(),
                            area.height() - (child / perRow + 1) * icon.height());
    }
    return result;
}

}  // namespace arrangement

namespace {

struct Children {
    std::vector<QMdiSubWindow*> open;  // the active one first
    std::vector<QMdiSubWindow*> minimised;
};

Children childrenOf(const QMdiArea& area) {
    QList<QMdiSubWindow*> windows = area.subWindowList(QMdiArea::ActivationHistoryOrder);
    std::reverse(windows.begin(), windows.end());
    Children children;
    for (QMdiSubWindow* window : windows) {
        if (!window->isVisible()) continue;
        if (window->isMaximized()) window->showNormal();
        (window->isMinimized() ? children.minimised : children.open).push_back(window);
    }
    return children;
}

QSize iconSize(const std::vector<QMdiSubWindow*>& minimised) {
    QSize size;
    for (const QMdiSubWindow* window : minimised) {
        size = size.expandedTo(window->size());
    }
    return size;
}

// The area above the minimised children, or the whole one where they leave too little.
QSize roomAboveIcons(const QMdiArea& area, const std::vector<QMdiSubWindow*>& minimised) {
    // Without scroll bars, which are gone once the children stand inside.
    const QSize whole = area.maximumViewportSize();
    if (minimised.empty()) return whole;
    const auto places = arrangement::icons(whole, static_cast<int>(minimised.size()), iconSize(minimised));
    const QSize room(whole.width(), places.back().y());
    return room.height() >= whole.height() / 2 ? room : whole;
}

// A child that needs more room than its place overlaps its neighbours: cut off, it could not be used.
void placeChild(QMdiSubWindow& child, const QRect& place) {
    child.setGeometry(QRect(place.topLeft(), place.size().expandedTo(child.minimumSizeHint())));
}

void tile(QMdiArea& area, bool stacked) {
    const Children children = childrenOf(area);
    const QSize room = roomAboveIcons(area, children.minimised);
    const auto places = arrangement::tiles(room, static_cast<int>(children.open.size()), stacked);
    for (size_t child = 0; child < places.size(); ++child) {
        placeChild(*children.open[child], places[child]);
        // Of children that overlap, the title bars stay in sight.
        children.open[child]->raise();
    }
    if (!children.open.empty()) children.open.front()->raise();
    arrangeIcons(area);
}

}  // namespace

void cascade(QMdiArea& area) {
    const Children children = childrenOf(area);
    if (children.open.empty()) return;
    const QStyle* style = children.open.front()->style();
    const int step =
        style->pixelMetric(QStyle::PM_TitleBarHeight) + style->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    const QSize room = roomAboveIcons(area, children.minimised);
    const auto places = arrangement::cascade(room, static_cast<int>(children.open.size()), step);
    auto place = places.begin();
    for (auto child = children.open.rbegin(); child != children.open.rend(); ++child, ++place) {
        placeChild(**child, *place);
        (*child)->raise();
    }
    arrangeIcons(area);
}

void tileHorizontally(QMdiArea& area) {
    tile(area, true);
}

void tileVertically(QMdiArea& area) {
    tile(area, false);
}

void arrangeIcons(QMdiArea& area) {
    std::vector<QMdiSubWindow*> minimised;
    for (QMdiSubWindow* window : area.subWindowList(QMdiArea::CreationOrder)) {
        if (window->isVisible() && window->isMinimized()) minimised.push_back(window);
    }
    const auto places =
        arrangement::icons(area.viewport()->size(), static_cast<int>(minimised.size()), iconSize(minimised));
    for (size_t child = 0; child < places.size(); ++child) {
        minimised[child]->move(places[child]);
    }
}

double centredPosition(double outsideTwips, double insideTwips) {
    return platform::roundToLong(outsideTwips - insideTwips) / 2.0;
}

}  // namespace desktop
