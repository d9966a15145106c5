#pragma once

class QTreeView;

// Column headers of a report-style list: mode 0 makes them buttons that
// react to clicks, mode 1 flat labels. Any other mode tells the user that
// the header could not be set and changes nothing.
void SetHeaderButtons(QTreeView *listView, int mode);
