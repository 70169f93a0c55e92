#include "compare/compareselectcontrols.h"

#include "platform/desktop/named.h"
#include "platform/desktop/pickbox.h"
#include "platform/desktop/scrollpage.h"

#include <QCheckBox>
#include <QDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

namespace {

using desktop::named;
using desktop::PickBox;

constexpr int ListCharacters = 26;
constexpr int Spacing = 10;

/// A box of lists, each under its label's text.
struct SystemBox {
    QGroupBox* box;
    QGridLayout* grid;

    SystemBox(const QString& name, const QString& title, QWidget* page)
        : box(named(name, new QGroupBox(title, page))), grid(new QGridLayout(box)) {
        grid->setColumnStretch(1, 1);
    }

    PickBox* add(const QString& name, const QString& labelName, const QString& labelText) const {
        auto* list = named(name, new PickBox(box));
        // As wide for an empty list as for any other; long names are cut in the closed list only.
        list->setSizeAdjustPolicy(PickBox::AdjustToMinimumContentsLengthWithIcon);
        list->setMinimumContentsLength(ListCharacters);
        list->setMinimumWidth(list->sizeHint().width() / 2);
        auto* label = named(labelName, new QLabel(labelText, box));
        label->setBuddy(list);
        const int row = grid->rowCount();
        grid->addWidget(label, row, 0);
        grid->addWidget(list, row, 1);
        return list;
    }
};

}  // namespace

void CompareSelectControls::setupControls(QDialog& dialog) {
    dialog.setObjectName(QStringLiteral("frmCompareSelect"));
    dialog.setWindowTitle(QStringLiteral("Databases Selection"));

    auto* page = new QWidget(&dialog);
    auto* boxes = new QVBoxLayout(page);
    boxes->setContentsMargins({});
    boxes->setSpacing(Spacing);
    // Made in the reading direction, so that the Tab key follows it.
    auto* systems = new QHBoxLayout;
    systems->addWidget(makeSystem1(page));
    systems->addWidget(makeSystem2(page));
    boxes->addLayout(systems);
    boxes->addWidget(makeOptions(page));
    auto* column = new QVBoxLayout(&dialog);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->setSpacing(Spacing);
    column->addWidget(new desktop::ScrollPage(page, &dialog));
    column->addWidget(makeButtons(dialog));
}

QGroupBox* CompareSelectControls::makeSystem1(QWidget* page) {
    const SystemBox system(QStringLiteral("fraSystem1"), QStringLiteral("System 1 Selection "), page);
    cbServer1 =
        system.add(QStringLiteral("cbServer1"), QStringLiteral("lblServer"), QStringLiteral("Server"));
    cbDatabase1 =
        system.add(QStringLiteral("cbDatabase1"), QStringLiteral("lblDataBase"), QStringLiteral("Database"));
    cbTable1 = system.add(QStringLiteral("cbTable1"), QStringLiteral("lblTable"), QStringLiteral("Table"));
    return system.box;
}

QGroupBox* CompareSelectControls::makeSystem2(QWidget* page) {
    const SystemBox system(QStringLiteral("fraSystem2"), QStringLiteral("System 2 Selection "), page);
    cbServer2 = system.add(QStringLiteral("cbServer2"), QStringLiteral("Label1"), QStringLiteral("Server"));
    cbDatabase2 =
        system.add(QStringLiteral("cbDatabase2"), QStringLiteral("Label2"), QStringLiteral("Database"));
    cbTable2 = system.add(QStringLiteral("cbTable2"), QStringLiteral("Label3"), QStringLiteral("Table"));
    return system.box;
}

QGroupBox* CompareSelectControls::makeOptions(QWidget* page) {
    auto* box = named(QStringLiteral("fraOptions"), new QGroupBox(QStringLiteral(" Compare Options "), page));
    auto* row = new QHBoxLayout(box);
    const auto add = [&](const QString& name, const QString& text) {
        auto* check = named(name, new QCheckBox(text, box));
        row->addWidget(check);
        row->addStretch();
        return check;
    };
    chkConstraint = add(QStringLiteral("chkConstraint"), QStringLiteral("Compare Contraints"));
    chkIndex = add(QStringLiteral("chkIndex"), QStringLiteral("Compare Indexes"));
    chkForeignKey = add(QStringLiteral("chkForeignKey"), QStringLiteral("Foreign Keys"));
    return box;
}

QWidget* CompareSelectControls::makeButtons(QDialog& dialog) {
    auto* strip = new QWidget(&dialog);
    cmdOK = named(QStringLiteral("cmdOK"), new QPushButton(QStringLiteral("&OK"), strip));
    cmdCancel = named(QStringLiteral("cmdCancel"), new QPushButton(QStringLiteral("&Cancel"), strip));
    cmdOK->setDefault(true);
    auto* row = new QHBoxLayout(strip);
    row->setContentsMargins({});
    row->addStretch();
    row->addWidget(cmdOK);
    row->addWidget(cmdCancel);
    return strip;
}

}  // namespace tw
