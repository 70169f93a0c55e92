#pragma once

#include "shell/core/windowstatus.h"

#include <QString>

#include <memory>

class QPoint;

namespace tw {

class DBConnection;

/// What the frame asks of every child window.
class ChildWindow {
  public:
    virtual ~ChildWindow() = default;
    /// "frmDocument", "frmQuery" or "frmCompareResult".
    virtual QString getModuleName() const = 0;
    /// The connection that a query opened from this window runs on.
    virtual std::shared_ptr<DBConnection> queryConnection() = 0;
    /// Arranges the window's panes anew, after a change of layout.
    virtual void Form_Resize() = 0;

    /// What the frame's status bar tells while this is the active window.
    WindowStatus& status() { return m_status; }

  private:
    WindowStatus m_status;
};

/// What a window asks of the frame.
class Frame {
  public:
    virtual ~Frame() = default;
    /// Enables or disables the commands that need a connection; due after every change of the count of
    /// connected documents.
    virtual void SetMenuAndToolBarControls() = 0;
    /// Pops up the menu with "Connect..." at a point of the screen.
    virtual void popUpConnectMenu(const QPoint& screenPosition) = 0;
    /// Pops up the menu with the two exports.
    virtual void popUpExportMenu(const QPoint& screenPosition) = 0;
};

}  // namespace tw
