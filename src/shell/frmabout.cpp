#include "shell/frmabout.h"

#include "icons/icons.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

namespace {

constexpr int PictureSize = 72;
constexpr int Gap = 20;

QLabel* productLabel(QWidget* parent) {
    auto* label = new QLabel(QStringLiteral("SQL Server Tablewright"), parent);
    label->setObjectName(QStringLiteral("lblTitle"));
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 1.6);
    font.setBold(true);
    label->setFont(font);
    return label;
}

QLabel* descriptionLabel(QWidget* parent) {
    auto* label = new QLabel(QStringLiteral("Version %1\n\nBrowse, query and compare SQL Server databases.\n"
                                            "Tablewright reads; it never changes a database.")
                                 .arg(QCoreApplication::applicationVersion()),
                             parent);
    label->setObjectName(QStringLiteral("lblDescription"));
    return label;
}

}  // namespace

frmAbout::frmAbout(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About SQL Server Tablewright"));

    auto* picture = new QLabel(this);
    picture->setObjectName(QStringLiteral("picIcon"));
    picture->setPixmap(
        icon(QStringLiteral("tablewright")).pixmap(QSize(PictureSize, PictureSize), devicePixelRatio()));

    auto* cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);

    auto* texts = new QVBoxLayout;
    texts->addWidget(productLabel(this));
    texts->addWidget(descriptionLabel(this));
    auto* top = new QHBoxLayout;
    top->setSpacing(Gap);
    top->addWidget(picture, 0, Qt::AlignTop);
    top->addLayout(texts, 1);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(Gap, Gap, Gap, Gap);
    whole->setSpacing(Gap);
    whole->setSizeConstraint(QLayout::SetFixedSize);
    whole->addLayout(top);
    whole->addWidget(cmdOK, 0, Qt::AlignRight);
}

}  // namespace tw
