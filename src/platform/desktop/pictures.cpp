#include "platform/desktop/pictures.h"

#include <QIconEngine>

#include <algorithm>

namespace desktop {

namespace {

/// A picture that looks the same in a selected row, where styles would tint it.
class SteadyPicture final : public QIconEngine {
  public:
    explicit SteadyPicture(QIcon icon) : m_icon(std::move(icon)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        m_icon.paint(painter, rect, Qt::AlignCenter, steady(mode), state);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return m_icon.pixmap(size, steady(mode), state);
    }
    QIconEngine* clone() const override { return new SteadyPicture(m_icon); }

  private:
    static QIcon::Mode steady(QIcon::Mode mode) { return mode == QIcon::Selected ? QIcon::Normal : mode; }

    QIcon m_icon;
};

}  // namespace

Pictures::Pictures(QList<QIcon> icons) : m_icons(std::move(icons)) {
    for (QIcon& icon : m_icons)
        icon = QIcon(new SteadyPicture(icon));
}

}  // namespace desktop
