#include "platform/desktop/childkeys.h"

#include <QAction>
#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QMenu>

namespace desktop {

namespace {

class ChildKeys final : public QObject {
  public:
    explicit ChildKeys(QMdiSubWindow& child) : QObject(&child), m_child(child) {
        child.installEventFilter(this);
        for (QAction* action : child.systemMenu()->actions()) {
            connect(action, &QAction::triggered, this, [this, action] { m_chosen = action->text(); });
        }
    }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::KeyPress || QWidget::mouseGrabber() != &m_child) return false;
        const auto* key = static_cast<QKeyEvent*>(event);
        const QPoint step = stepOf(*key);
        if (step.isNull()) return false;
        if (m_chosen == QMdiSubWindow::tr("&Move"))
            m_child.move(m_child.pos() + step);
        else if (m_chosen == QMdiSubWindow::tr("&Size"))
            m_child.resize(m_child.size() + QSize(step.x(), step.y()));
        else
            return false;
        return true;
    }

  private:
    static QPoint stepOf(const QKeyEvent& key) {
        const int step = key.modifiers().testFlag(Qt::ShiftModifier) ? 20 : 5;
        switch (key.key()) {
            case Qt::Key_Left:
                return {-step, 0};
            case Qt::Key_Right:
                return {step, 0};
            case Qt::Key_Up:
                return {0, -step};
            case Qt::Key_Down:
                return {0, step};
            default:
                return {};
        }
    }

    QMdiSubWindow& m_child;
    QString m_chosen;
};

}  // namespace

void addChildKeys(QMdiSubWindow& child) {
    new ChildKeys(child);  // owned by the child
}

}  // namespace desktop
