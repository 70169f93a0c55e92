#pragma once

#include "stage.h"

#include <QString>

namespace tw {
struct AppState;
class frmMain;
}  // namespace tw

namespace tour {

/// What every road starts from: the frame on the screen and the server to type.
struct Place {
    Stage& stage;
    tw::frmMain& frame;
    tw::AppState& state;
    QString server;  ///< "127.0.0.1,1433"
};

/// First start, the connection dialog with its refusals, and a filled tree.
void walkConnecting(Place& place);
/// A table's columns and rows and a database's details, in both layouts and in the smallest window.
void walkBrowsing(Place& place);
/// A table's columns, written to files under names typed into the save dialog.
void walkExporting(Place& place);
/// The options dialog, and what its values change.
void walkOptions(Place& place);
/// A query window: a query is picked, edited, run, refused, limited and reset.
void walkQuerying(Place& place);
/// Several windows, their arrangement, the layout of their panes, toolbar and help.
void walkWindows(Place& place);
/// Two versions of a database compared, one table with one table, and a comparison that is cancelled.
void walkComparing(Place& place);
/// Closing documents and the program; what the settings then hold.
void walkLeaving(Place& place);

}  // namespace tour
