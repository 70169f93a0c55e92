#pragma once

#include "browse/frmdocument.h"
#include "platform/desktop/settingsstore.h"
#include "shell/core/appstate.h"
#include "shell/core/frame.h"

#include <QPoint>
#include <QTemporaryDir>

#include <memory>
#include <vector>

/// A frame that only keeps what windows ask of it.
class FakeFrame : public tw::Frame {
  public:
    explicit FakeFrame(const tw::AppState& state) : m_state(state) {}

    void SetMenuAndToolBarControls() override { connectedCounts.push_back(m_state.connectedDocuments); }
    void popUpConnectMenu(const QPoint&) override { ++connectMenus; }
    void popUpExportMenu(const QPoint&) override { ++exportMenus; }

    /// The count of connected documents at each call for an update of the menus.
    std::vector<qint32> connectedCounts;
    int connectMenus = 0;
    int exportMenus = 0;

  private:
    const tw::AppState& m_state;
};

/// Settings in a folder of their own, a frame, and one open document, as the frame would have made it.
struct Desk {
    Desk() { openDocument(); }

    void openDocument() {
        ++state.documentNumber;
        ++state.openDocuments;
        document = std::make_unique<tw::frmDocument>(state, frame);
    }
    void connectDocument() {
        document->setConnected(true);
        document->setWindowTitle(QStringLiteral("Connected to X"));
        ++state.connectedDocuments;
    }
    void store(const std::vector<std::pair<QString, QString>>& entries) {
        for (const auto& [key, text] : entries) {
            state.saveSetting(key, text);
        }
    }

    QTemporaryDir folder;
    desktop::SettingsStore settings{folder.filePath(QStringLiteral("settings"))};
    tw::AppState state{settings};
    FakeFrame frame{state};
    std::unique_ptr<tw::frmDocument> document;
};
