#include "platform/desktop/findbar.h"

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

#include <algorithm>

namespace desktop {

namespace {

QToolButton* makeButton(const QString& text, const QString& tip, QWidget* bar) {
    auto* button = new QToolButton(bar);
    button->setText(text);
    button->setToolTip(tip);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

}  // namespace

FindBar::FindBar(QAbstractScrollArea* view)
    : QFrame(view), m_view(view), m_entry(new QLineEdit(this)), m_told(new QLabel(this)) {
    setObjectName(QStringLiteral("findBar"));
    setFrameStyle(QFrame::Panel | QFrame::Raised);
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    m_entry->setObjectName(QStringLiteral("txtFind"));
    m_entry->setMinimumWidth(m_entry->fontMetrics().averageCharWidth() * 12);
    m_told->setTextFormat(Qt::PlainText);
    auto* label = new QLabel(QStringLiteral("Find:"), this);
    label->setBuddy(m_entry);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(6, 3, 6, 3);
    row->addWidget(label);
    row->addWidget(m_entry, 1);
    row->addWidget(m_told);
    const auto add = [&](const QString& text, const QString& tip) {
        QToolButton* button = makeButton(text, tip, this);
        row->addWidget(button);
        return button;
    };
    connect(add(QStringLiteral("Next"), QStringLiteral("Find next (F3)")), &QToolButton::clicked, this,
            [this] { Q_EMIT findWanted(false); });
    connect(add(QStringLiteral("Previous"), QStringLiteral("Find previous (Shift+F3)")),
            &QToolButton::clicked, this, [this] { Q_EMIT findWanted(true); });
    connect(add(QStringLiteral("Close"), QStringLiteral("Close the bar (Esc)")), &QToolButton::clicked, this,
            &FindBar::closeWanted);
    connect(m_entry, &QLineEdit::textChanged, this, [this] { tell({}); });
    view->viewport()->installEventFilter(this);
}

QString FindBar::text() const {
    return m_entry->text();
}

void FindBar::open(const QString& text) {
    m_entry->setText(text);
    m_entry->selectAll();
    place();
    show();
    raise();
    m_entry->setFocus();
}

void FindBar::tell(const QString& text) {
    if (m_told->text() == text) return;
    m_told->setText(text);
    QAccessibleEvent alert(m_told, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
    place();
}

void FindBar::place() {
    const QRect room = m_view->viewport()->geometry();
    const QSize size(std::min(room.width(), std::max(sizeHint().width(), room.width() / 2)),
                     sizeHint().height());
    setGeometry(QRect(room.bottomRight() - QPoint(size.width() - 1, size.height() - 1), size));
}

bool FindBar::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::Resize) place();
    return false;
}

void FindBar::keyPressEvent(QKeyEvent* event) {
    const bool shift = event->modifiers().testFlag(Qt::ShiftModifier);
    switch (event->key()) {
        case Qt::Key_Escape:
            Q_EMIT closeWanted();
            break;
        case Qt::Key_F3:
        case Qt::Key_Return:
        case Qt::Key_Enter:
            Q_EMIT findWanted(shift);
            break;
        default:
            // The view below would search by what is typed.
            break;
    }
    event->accept();
}

}  // namespace desktop
