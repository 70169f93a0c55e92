#include "platform/desktop/application.h"

#include "platform/desktop/contrast.h"
#include "platform/desktop/failures.h"
#include "platform/desktop/menukey.h"
#include "platform/desktop/widgetboxes.h"

#include <QProxyStyle>
#include <QStyleOption>
#include <QTableView>
#include <QWidget>

#include <algorithm>

namespace desktop {

namespace {

/// The desktop's own style, with titles of windows within the frame that can be read whatever the font and
/// colours.
class Style final : public QProxyStyle {
  public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        const int pixels = QProxyStyle::pixelMetric(metric, option, widget);
        if (standsInTable(metric, widget)) return std::max(pixels, 6);
        if (metric != PM_TitleBarHeight || widget == nullptr) return pixels;
        return std::max(pixels, widget->fontMetrics().height() + 4);
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override {
        const auto* bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option);
        if (control != CC_TitleBar || bar == nullptr || !darkButtonsOnDark(*bar)) {
            QProxyStyle::drawComplexControl(control, option, painter, widget);
            return;
        }
        QStyleOptionTitleBar light = *bar;
        light.titleBarState |= State_Active;
        light.palette.setColor(QPalette::Highlight, bar->palette.color(QPalette::Window));
        QProxyStyle::drawComplexControl(control, &light, painter, widget);
    }

  private:
    /// The room beside the texts of headers and cells: those that stand to the right would touch those
    /// beside.
    static bool standsInTable(PixelMetric metric, const QWidget* widget) {
        if (metric == PM_HeaderMargin) return true;
        return metric == PM_FocusFrameHMargin && qobject_cast<const QTableView*>(widget) != nullptr;
    }

    /// Qt's Fusion style paints the buttons of a window that is not active black, on whatever ground.
    bool darkButtonsOnDark(const QStyleOptionTitleBar& bar) const {
        const QColor ground = bar.palette.color(QPalette::Window);
        return baseStyle()->name() == QStringLiteral("fusion") && (bar.titleBarState & State_Active) == 0 &&
               ground.lightness() < 128;
    }
};

}  // namespace

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {
    setStyle(new Style);  // owned by the application
    installWidgetBoxes();
    installMenuKey(*this);
    makeLegible();
    connect(&m_endSignals, &EndSignals::received, &m_end, [this] { m_end.end(); });
}

/// Whatever the desktop's colours are, and become.
void Application::makeLegible() {
    const QPalette wanted = legible(palette());
    if (wanted != palette()) setPalette(wanted);
}

bool Application::event(QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange) makeLegible();
    return QApplication::event(event);
}

int Application::run() {
    if (m_end.isEnding()) return m_end.exitCode();
    const int code = exec();
    return m_end.isEnding() ? m_end.exitCode() : code;
}

bool Application::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        handleUnhandledFailure();
        return false;
    }
}

}  // namespace desktop
