#pragma once

#include "dbaccess/dbconnection.h"
#include "platform/desktop/datagrid.h"
#include "platform/desktop/settingsstore.h"
#include "query/frmquery.h"
#include "shell/core/appstate.h"
#include "support/picking.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// A query window of its own on a server, with settings of its own.
struct QueryDesk {
    explicit QueryDesk(const QString& server, const QString& login = QStringLiteral("uid=sa;pwd=")) {
        connection->setServer(server);
        connection->setConnectionString(
            QStringLiteral("driver={SQL Server};server=%1;%2").arg(server, login));
        open();
    }
    void open() {
        window = std::make_unique<tw::frmQuery>(state, connection);
        window->Form_Load();
        window->show();
        window->activateWindow();
    }

    template <class Control>
    Control& find(const char* name) const {
        auto* control = window->findChild<Control*>(QString::fromLatin1(name));
        if (control == nullptr) qFatal("no control %s", name);
        return *control;
    }
    QComboBox& list(const char* name) const { return find<QComboBox>(name); }
    QLineEdit& number(const char* name) const { return find<QLineEdit>(name); }

    bool pick(const char* name, const QString& entry) const { return testsupport::pick(list(name), entry); }
    QStringList entries(const char* name) const {
        QStringList texts;
        for (int i = 0; i < list(name).count(); ++i)
            texts += list(name).itemText(i);
        return texts;
    }
    QString text(const char* name) const { return find<QPlainTextEdit>(name).toPlainText(); }
    void write(const char* name, const QString& text) const { find<QPlainTextEdit>(name).setPlainText(text); }
    void press(const char* name) const { QTest::mouseClick(&find<QPushButton>(name), Qt::LeftButton); }

    int page() const { return find<QTabWidget>("tsQuery").currentIndex(); }
    QString countLine() const { return find<QLabel>("lblRecCount").text(); }
    QAbstractItemModel& result() const { return *find<desktop::DataGrid>("dgrResult").model(); }
    QString cell(int row, int column) const {
        return result().index(row, column).data(Qt::EditRole).toString();
    }

    QTemporaryDir folder;
    desktop::SettingsStore settings{folder.filePath(QStringLiteral("settings"))};
    tw::AppState state{settings};
    std::shared_ptr<tw::DBConnection> connection = std::make_shared<tw::DBConnection>();
    std::unique_ptr<tw::frmQuery> window;
};
