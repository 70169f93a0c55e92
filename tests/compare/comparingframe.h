#pragma once

#include "compare/frmcompareresult.h"
#include "dbaccess/dbconnection.h"
#include "platform/controls/listitems.h"
#include "platform/desktop/listview.h"
#include "shell/framefixture.h"
#include "support/sampleserverprocess.h"

#include <QCoreApplication>
#include <QDialog>
#include <QEvent>
#include <QLabel>
#include <QMdiArea>
#include <QPushButton>

#include <functional>

/// A frame with one document, and result windows in it whose comparisons a test steps through.
struct ComparingFrame : FrameFixture {
    explicit ComparingFrame(const testsupport::SampleServerProcess& server, qint16 layout = 1)
        : m_server(server) {
        start();
        state.options.Layout = layout;
        open(server.serverText());
    }

    /// A shown window that compares two databases of the sample server; it is not loaded yet.
    tw::frmCompareResult& show(const QString& table1 = QStringLiteral("(All Tables)"),
                               const QString& table2 = QStringLiteral("(All Tables)")) {
        auto* result = new tw::frmCompareResult(state, [this] {  // owned by its sub-window
            const auto current = yield;                          // which may ask for another one
            current();
        });
        configure(result->DBConn1(), QStringLiteral("Workshop"), table1);
        configure(result->DBConn2(), QStringLiteral("Workshop2"), table2);
        result->setCompareIndex(1);
        result->setCompareConstraint(2);
        result->setCompareForeignKey(1);
        QMdiSubWindow* child = frame.area().addSubWindow(result);
        child->setGeometry(10, 10, 600, 400);
        child->show();
        return *result;
    }

    /// Served once per yield, as if the events came in then.
    std::function<void()> yield = [] {};
    /// Does something at one yield, and then destroys what was closed.
    void atYield(int number, std::function<void()> action) {
        yield = [this, number, action = std::move(action)] {
            if (++yields != number) return;
            action();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCoreApplication::processEvents();
        };
    }
    int yields = 0;

  private:
    void configure(tw::DBConnection& connection, const QString& database, const QString& table) const {
        connection.setServer(m_server.serverText());
        connection.setDatabase(database);
        connection.setTable(table);
        connection.setConnectionString(m_server.connectionString());
    }

    const testsupport::SampleServerProcess& m_server;
};

inline desktop::ListView& listOf(const tw::frmCompareResult& result, int system) {
    return *result.findChild<desktop::ListView*>(QStringLiteral("lvSystem%1").arg(system));
}

inline controls::ListItems& itemsOf(const tw::frmCompareResult& result, int system) {
    return static_cast<controls::ListItems&>(*listOf(result, system).model());
}

inline QDialog& progressOf(const tw::frmCompareResult& result) {
    return *result.findChild<QDialog*>(QStringLiteral("frmCompareProgress"));
}

inline QString textOf(const QWidget& window, const char* label) {
    return window.findChild<QLabel*>(QString::fromLatin1(label))->text();
}

inline void clickClose(const tw::frmCompareResult& result) {
    progressOf(result).findChild<QPushButton*>(QStringLiteral("cmdClose"))->click();
}
