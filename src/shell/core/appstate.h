#pragma once

#include "platform/desktop/settingsstore.h"
#include "platform/runtimeerror.h"
#include "shell/core/documents.h"

#include <QString>

#include <memory>

namespace tw {

class ConnectionPool;

/// The application's title: message boxes, error boxes, the settings' application name.
inline const QString ApplicationTitle = QStringLiteral("Tablewright");
/// The one section of the settings.
inline const QString SettingsSection = QStringLiteral("Settings");

/// Option values: read once when the frame loads, written once when it unloads.
struct Options {
    qint16 Layout = 1;            ///< 1 horizontal, 2 vertical arrangement of the panes
    qint32 NumberRecShow = 50;    ///< rows a table-data list shows; 0 for all
    qint16 MouseClickOption = 0;  ///< 1: a single click opens a table, 0: a double click
    qint16 ToolBarCaption = 1;    ///< 1: the toolbar's buttons show their labels
    qint16 MouseHotTracking = 0;  ///< 1: the tree marks the node under the mouse
};

/// What the whole program shares. Made in main and handed on by reference; used on the one thread of the
/// user interface.
struct AppState {
    explicit AppState(desktop::SettingsStore& store);

    desktop::SettingsStore& settings;
    Options options;
    Documents documents;            ///< open document windows by the decimal text of their running number
    qint32 documentNumber = 0;      ///< running number of the newest document window
    qint32 openDocuments = 0;       ///< how many document windows are open
    qint32 connectedDocuments = 0;  ///< how many of them are connected
    std::shared_ptr<ConnectionPool> connectionPool;  ///< for every DBConnection that is made; may be null
    QString helpFile;                                ///< the one beside the program; empty when there is none
    bool cancelled = false;  ///< set by the Cancel of the connection dialog and of a comparison

    /// A setting of this application, in its one section.
    QString setting(const QString& key, const QString& defaultText) const {
        return settings.GetSetting(ApplicationTitle, SettingsSection, key, defaultText);
    }
    /// A setting as a number. Throws what the conversion throws; the description then says where to mend it.
    template <typename Number>
    Number setting(const QString& key, const QString& defaultText,
                   Number (*converted)(const QString&)) const {
        const QString text = setting(key, defaultText);
        try {
            return converted(text);
        } catch (const platform::RuntimeError& error) {
            throw settingFailure(error, key, text);
        }
    }
    void saveSetting(const QString& key, const QString& text) {
        settings.SaveSetting(ApplicationTitle, SettingsSection, key, text);
    }

  private:
    platform::RuntimeError settingFailure(const platform::RuntimeError& error, const QString& key,
                                          const QString& text) const;
};

}  // namespace tw
