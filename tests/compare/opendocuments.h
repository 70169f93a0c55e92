#pragma once

#include "dbaccess/dbconnection.h"
#include "platform/desktop/settingsstore.h"
#include "shell/core/appstate.h"
#include "support/sampleserverprocess.h"

#include <QTemporaryDir>

#include <memory>
#include <vector>

/// An open document that is nothing but its connection object.
class OpenDocument : public tw::Document {
  public:
    std::shared_ptr<tw::DBConnection> connection() override { return m_connection; }

  private:
    std::shared_ptr<tw::DBConnection> m_connection = std::make_shared<tw::DBConnection>();
};

/// What the program shares, with documents open on servers.
struct OpenDocuments {
    /// Opens a document under the next number. Without a user it has no connection string.
    void open(const QString& server, const QString& user = {}, const QString& password = {}) {
        auto document = std::make_unique<OpenDocument>();
        document->connection()->setServer(server);
        if (!user.isEmpty()) {
            document->connection()->setConnectionString(
                testsupport::connectionString(server, user, password));
        }
        state.documents.add(*document, QString::number(++state.documentNumber));
        documents.push_back(std::move(document));
    }
    void close(int number) { state.documents.remove(QString::number(number)); }

    QTemporaryDir folder;
    desktop::SettingsStore settings{folder.filePath(QStringLiteral("settings"))};
    tw::AppState state{settings};
    std::vector<std::unique_ptr<OpenDocument>> documents;
};
