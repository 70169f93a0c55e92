#include "trial/trialwindow.h"

#include <QClipboard>
#include <QFormLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace trial {

namespace {

constexpr int Gap = 12;
constexpr int CornerGap = 24;  // room for the frame, and for a status bar below

QLineEdit* addCopiedLine(QFormLayout& form, const QString& label, const QString& name) {
    auto* line = new QLineEdit(form.parentWidget());
    line->setObjectName(QStringLiteral("txt") + name);
    line->setReadOnly(true);
    auto* copy = new QPushButton(QStringLiteral("Copy"), form.parentWidget());
    copy->setObjectName(QStringLiteral("cmdCopy") + name);
    copy->setAutoDefault(false);
    QObject::connect(copy, &QPushButton::clicked, line,
                     [line] { QGuiApplication::clipboard()->setText(line->text()); });
    auto* row = new QHBoxLayout;
    row->addWidget(line, 1);
    row->addWidget(copy);
    form.addRow(label, row);
    return line;
}

QLabel* plainLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    return label;
}

}  // namespace

TrialWindow::TrialWindow()
    : QDialog(nullptr,
              Qt::Window | Qt::WindowTitleHint | Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint) {
    setWindowTitle(QStringLiteral("Tablewright's sample server"));
    setAttribute(Qt::WA_ShowWithoutActivating);  // the keyboard is the program's

    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(Gap, Gap, Gap, Gap);
    whole->setSpacing(Gap);
    whole->setSizeConstraint(QLayout::SetFixedSize);
    whole->addWidget(plainLabel(QStringLiteral("A sample server is running on this computer.\n"
                                               "To look at it, choose File > New Connection\n"
                                               "in Tablewright and enter:"),
                                this));
    auto* form = new QFormLayout;
    whole->addLayout(form);
    txtServer = addCopiedLine(*form, QStringLiteral("Database Server Name"), QStringLiteral("Server"));
    form->addRow(QString(), plainLabel(QStringLiteral("tick \"Use SQL Server Authentication\""), this));
    addCopiedLine(*form, QStringLiteral("User ID"), QStringLiteral("User"))->setText(QStringLiteral("sa"));
    form->addRow(QStringLiteral("Password"), plainLabel(QStringLiteral("leave it empty"), this));
    whole->addWidget(plainLabel(QStringLiteral("The server ends when you leave Tablewright."), this));
    auto* cmdClose = new QPushButton(QStringLiteral("Close"), this);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::close);
    whole->addWidget(cmdClose, 0, Qt::AlignRight);
}

void TrialWindow::showServer(const QString& server) {
    txtServer->setText(server);
    adjustSize();
    placeInCorner();
    show();
}

/// The program opens its dialogs in the middle.
void TrialWindow::placeInCorner() {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    move(screen.bottomRight() - QPoint(width() + CornerGap, height() + CornerGap));
}

}  // namespace trial
