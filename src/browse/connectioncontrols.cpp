#include "browse/connectioncontrols.h"

#include "platform/desktop/combobox.h"
#include "platform/desktop/named.h"
#include "platform/desktop/scrollpage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace tw {

namespace {

using desktop::named;

constexpr int EntryWidth = 16;  // in heights of a line
constexpr int Spacing = 10;

QLabel* makeLabel(const QString& name, const QString& text, QWidget* parent, QWidget* buddy) {
    QLabel* label = named(name, new QLabel(text, parent));
    label->setBuddy(buddy);
    return label;
}

/// An entry that cannot be used looks like the dialog's own surface.
void greyWhenDisabled(QWidget* entry) {
    QPalette palette = entry->palette();
    palette.setColor(QPalette::Disabled, QPalette::Base, palette.color(QPalette::Active, QPalette::Button));
    entry->setPalette(palette);
    entry->setMinimumWidth(EntryWidth * entry->fontMetrics().height());
}

/// Labels of one width, so that the entries of two boxes stand in one column.
void alignLabels(const QWidget& page) {
    const std::array labels{page.findChild<QLabel*>(QStringLiteral("lblDSN")),
                            page.findChild<QLabel*>(QStringLiteral("lblServer")),
                            page.findChild<QLabel*>(QStringLiteral("lblUserName")),
                            page.findChild<QLabel*>(QStringLiteral("lblPassword"))};
    int width = 0;
    for (const QLabel* label : labels) {
        width = std::max(width, label->sizeHint().width());
    }
    for (QLabel* label : labels) {
        label->setMinimumWidth(width);
    }
}

}  // namespace

void ConnectionControls::setupControls(QDialog& dialog) {
    dialog.setObjectName(QStringLiteral("frmConnection"));
    dialog.setWindowTitle(QStringLiteral("Login - Database Connection"));

    auto* page = new QWidget(&dialog);
    auto* boxes = new QVBoxLayout(page);
    boxes->setContentsMargins({});
    boxes->setSpacing(Spacing);
    // Made in the reading direction, so that the Tab key follows it.
    boxes->addWidget(makeDataSourceBox(page));
    boxes->addWidget(makeServerBox(page));
    boxes->addWidget(makeSavingBox(page));
    boxes->addStretch();
    alignLabels(*page);
    auto* column = new QVBoxLayout(&dialog);
    column->setSpacing(Spacing);
    column->addWidget(new desktop::ScrollPage(page, &dialog), 1);
    column->addWidget(makeButtons(dialog));
    dialog.resize(dialog.sizeHint());
}

QGroupBox* ConnectionControls::makeDataSourceBox(QWidget* page) {
    auto* box = named(QStringLiteral("Frame2"), new QGroupBox(QStringLiteral(" Use ODBC Connection"), page));
    cbDSN = named(QStringLiteral("cbDSN"), new desktop::ComboBox(box));
    // A long name is cut in the closed list only.
    cbDSN->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    greyWhenDisabled(cbDSN);
    auto* grid = new QGridLayout(box);
    grid->setColumnStretch(1, 1);
    grid->addWidget(makeLabel(QStringLiteral("lblDSN"), QStringLiteral("Data Source Name (DSN)"), box, cbDSN),
                    0, 0);
    grid->addWidget(cbDSN, 0, 1);
    return box;
}

QGroupBox* ConnectionControls::makeServerBox(QWidget* page) {
    auto* box = named(QStringLiteral("Frame1"),
                      new QGroupBox(QStringLiteral(" Use Server Direct Connection "), page));
    cbServer = named(QStringLiteral("cbServer"), new desktop::ComboBox(box));
    cbServer->setEditable(true);
    cbServer->lineEdit()->setAccessibleName(QStringLiteral("Database Server Name"));
    cbServer->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cbServer->setInsertPolicy(QComboBox::NoInsert);
    // What is typed is meant: no completion to a longer name of the list.
    cbServer->setCompleter(nullptr);
    cbServer->setEditText(QStringLiteral("Server Name"));
    chkSQLAuthentication = named(QStringLiteral("chkSQLAuthentication"), new QCheckBox(box));
    lblSQLEnthentication =
        makeLabel(QStringLiteral("lblSQLEnthentication"), QStringLiteral("Use SQL Server Authentication"),
                  box, chkSQLAuthentication);
    chkSQLAuthentication->setAccessibleName(lblSQLEnthentication->text());
    txtUserName = named(QStringLiteral("txtUserName"), new QLineEdit(box));
    txtPassword = named(QStringLiteral("txtPassword"), new QLineEdit(box));
    txtPassword->setEchoMode(QLineEdit::Password);
    txtPassword->setStyleSheet(QStringLiteral("lineedit-password-character: 42"));
    for (QWidget* entry : std::initializer_list<QWidget*>{cbServer, txtUserName, txtPassword}) {
        greyWhenDisabled(entry);
    }

    auto* authentication = new QHBoxLayout;
    authentication->addWidget(chkSQLAuthentication);
    authentication->addWidget(lblSQLEnthentication, 1);
    auto* grid = new QGridLayout(box);
    grid->setColumnStretch(1, 1);
    grid->addWidget(
        makeLabel(QStringLiteral("lblServer"), QStringLiteral("Database Server Name"), box, cbServer), 0, 0);
    grid->addWidget(cbServer, 0, 1);
    grid->addLayout(authentication, 1, 1);
    grid->addWidget(makeLabel(QStringLiteral("lblUserName"), QStringLiteral("User ID"), box, txtUserName), 2,
                    0);
    grid->addWidget(txtUserName, 2, 1);
    grid->addWidget(makeLabel(QStringLiteral("lblPassword"), QStringLiteral("Password"), box, txtPassword), 3,
                    0);
    grid->addWidget(txtPassword, 3, 1);
    return box;
}

QGroupBox* ConnectionControls::makeSavingBox(QWidget* page) {
    auto* box = named(QStringLiteral("Frame3"),
                      new QGroupBox(QStringLiteral(" Save User Information Options "), page));
    chkSaveUserID =
        named(QStringLiteral("chkSaveUserID"), new QCheckBox(QStringLiteral("Remember My User ID"), box));
    chkSavePassword =
        named(QStringLiteral("chkSavePassword"), new QCheckBox(QStringLiteral("Remember My Password"), box));
    auto* row = new QHBoxLayout(box);
    row->addWidget(chkSaveUserID);
    row->addWidget(chkSavePassword);
    return box;
}

QWidget* ConnectionControls::makeButtons(QDialog& dialog) {
    auto* strip = new QWidget(&dialog);
    cmdOK = named(QStringLiteral("cmdOK"), new QPushButton(QStringLiteral("&OK"), strip));
    cmdCancel = named(QStringLiteral("cmdCancel"), new QPushButton(QStringLiteral("&Cancel"), strip));
    cmdHelp = named(QStringLiteral("cmdHelp"), new QPushButton(QStringLiteral("&Help"), strip));
    cmdOK->setDefault(true);
    auto* row = new QHBoxLayout(strip);
    row->setContentsMargins({});
    row->addStretch();
    for (QPushButton* button : {cmdOK, cmdCancel, cmdHelp}) {
        row->addWidget(button);
    }
    return strip;
}

}  // namespace tw
