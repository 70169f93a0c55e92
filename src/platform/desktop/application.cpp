#include "platform/desktop/application.h"

#include "platform/desktop/failures.h"
#include "platform/desktop/widgetboxes.h"

#include <QProxyStyle>
#include <QWidget>

#include <algorithm>

namespace desktop {

namespace {

/// The desktop's own style, with room for the titles of windows within the frame whatever the font.
class Style final : public QProxyStyle {
  public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        const int pixels = QProxyStyle::pixelMetric(metric, option, widget);
        if (metric != PM_TitleBarHeight || widget == nullptr) return pixels;
        return std::max(pixels, widget->fontMetrics().height() + 4);
    }
};

}  // namespace

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {
    setStyle(new Style);  // owned by the application
    installWidgetBoxes();
    connect(&m_endSignals, &EndSignals::received, &m_end, [this] { m_end.end(); });
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
