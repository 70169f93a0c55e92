#include "platform/desktop/messagebox.h"

#include "platform/showntext.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <optional>

namespace desktop {
namespace {

/// Looks like a label, but lays out no more than what is seen.
class MessageText final : public QPlainTextEdit {
  public:
    explicit MessageText(QWidget* parent) : QPlainTextEdit(parent) {
        setReadOnly(true);
        setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        setTabChangesFocus(true);
        setFrameShape(QFrame::NoFrame);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        viewport()->setBackgroundRole(QPalette::Window);
        document()->setDocumentMargin(0);
    }
};

/// To a screen reader it is what it looks like, and has the box's text for its name.
QAccessibleInterface* accessibleText(const QString&, QObject* object) {
    auto* const text = dynamic_cast<MessageText*>(object);
    return text ? new QAccessibleWidget(text, QAccessible::StaticText) : nullptr;
}

std::optional<QStyle::StandardPixmap> pictureOf(MsgBoxIcon icon) {
    switch (icon) {
        case MsgBoxIcon::Critical:
            return QStyle::SP_MessageBoxCritical;
        case MsgBoxIcon::Question:
            return QStyle::SP_MessageBoxQuestion;
        case MsgBoxIcon::Exclamation:
            return QStyle::SP_MessageBoxWarning;
        case MsgBoxIcon::Information:
            return QStyle::SP_MessageBoxInformation;
        case MsgBoxIcon::None:
            break;
    }
    return std::nullopt;
}

/// The room that a text takes, wrapped, or as much as there is.
QSize sizeOf(const QString& text, const QFont& font, const QSize& most) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    double width = 0;
    double height = 0;
    for (const QString& paragraph : text.split(u'\n')) {
        QTextLayout layout(paragraph, font);
        layout.setTextOption(option);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLeadingIncluded(true);
            line.setLineWidth(most.width());
            width = std::max(width, line.naturalTextWidth());
            height += line.height();
            if (height > most.height()) return most;
        }
    }
    return {static_cast<int>(std::ceil(width)), static_cast<int>(std::ceil(height))};
}

}  // namespace

MessageBox::MessageBox(const MsgBoxRequest& request, QWidget* parent)

    : QDialog(parent, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint),
      m_request(request),
      m_text(new MessageText(this)) {
    QAccessible::installFactory(accessibleText);
    setWindowTitle(platform::shownLine(request.title));
    m_text->setObjectName(QStringLiteral("messageText"));
    m_text->setAccessibleName(request.text);
    m_text->setPlainText(platform::shownLines(request.text));
    addContent();
    addButtons();
    fit();
}

void MessageBox::addContent() {
    auto* grid = new QGridLayout(this);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    grid->setSpacing(style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing) * 2);
    grid->addWidget(m_text, 0, 1, Qt::AlignVCenter);
    const auto picture = pictureOf(m_request.icon);
    if (!picture) return;
    auto* label = new QLabel(this);
    const int size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    label->setPixmap(style()->standardIcon(*picture, nullptr, this).pixmap(size));
    grid->addWidget(label, 0, 0, Qt::AlignTop);
}

void MessageBox::addButtons() {
    const bool cancels = m_request.buttons == MsgBoxButtons::OkCancel;
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    if (cancels) buttons->addButton(QDialogButtonBox::Cancel);
    buttons->setCenterButtons(style()->styleHint(QStyle::SH_MessageBox_CenterButtons, nullptr, this));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    static_cast<QGridLayout*>(layout())->addWidget(buttons, 1, 0, 1, 2);
    const bool cancelFirst = cancels && m_request.defaultButton == MsgBoxResult::Cancel;
    QPushButton* first = buttons->button(cancelFirst ? QDialogButtonBox::Cancel : QDialogButtonBox::Ok);
    first->setDefault(true);
    first->setFocus();
}

/// Gives the text the room that it wants, and that a readable line and the screen allow.
void MessageBox::fit() {
    static constexpr int CharactersOfLine = 100;
    m_text->setFixedSize(0, 0);
    layout()->activate();
    // The rest of the screen is for what the window manager puts around.
    const QSize room = screen()->availableGeometry().size() * 9 / 10 - sizeHint();
    const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, m_text);
    const int line = CharactersOfLine * fontMetrics().averageCharWidth();
    const QSize most(std::min(line, room.width() - scrollBar), room.height());
    const QSize title(fontMetrics().horizontalAdvance(windowTitle()) * 3 / 2,
                      0);  // bold, and beside its signs
    const QSize wanted =
        sizeOf(m_text->toPlainText(), m_text->font(), most).expandedTo(title.boundedTo(most));
    const bool scrolls = wanted.height() >= most.height();
    m_text->setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    // The caret stands beside the text, and a text that fills its room to the pixel scrolls.
    const int beside = m_text->cursorWidth() + (scrolls ? scrollBar : 0);
    m_text->setFixedSize(wanted + QSize(beside + 1, 1));
}

MsgBoxResult MessageBox::ask() {
    // Whoever owns the window below may delete it, and the box with it, while the box is open.
    const QPointer<MessageBox> open(this);
    const bool cancels = m_request.buttons == MsgBoxButtons::OkCancel;
    const bool accepted = exec() == Accepted && open;
    return cancels && !accepted ? MsgBoxResult::Cancel : MsgBoxResult::Ok;
}

void MessageBox::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void MessageBox::keyPressEvent(QKeyEvent* event) {
    QScrollBar& bar = *m_text->verticalScrollBar();
    switch (event->key()) {
        case Qt::Key_PageUp:
            return bar.triggerAction(QScrollBar::SliderPageStepSub);
        case Qt::Key_PageDown:
            return bar.triggerAction(QScrollBar::SliderPageStepAdd);
        case Qt::Key_Home:
            return bar.triggerAction(QScrollBar::SliderToMinimum);
        case Qt::Key_End:
            return bar.triggerAction(QScrollBar::SliderToMaximum);
        default:
            if (event->matches(QKeySequence::Copy))
                return QGuiApplication::clipboard()->setText(m_request.text);
            QDialog::keyPressEvent(event);
    }
}

}  // namespace desktop
