#pragma once

// What every window is built from: its tool bar and menus from tables, its
// load handler run on every opening, its place on the screen, and the
// boundary where a command's store error stops.

#include <QList>
#include <QSize>
#include <QString>

#include <functional>
#include <initializer_list>

class QAction;
class QMainWindow;
class QMenuBar;
class QToolBar;
class QWidget;

namespace scaffold {

// One tool bar button, in bar order: its objectName, its caption (nullptr:
// a separator), its tooltip (nullptr: the caption) and its icon.
struct Tool
{
    const char *name;
    const QString *caption;
    const QString *tip;
    const char *icon;
};
// A message window's tool bar, Toolbar1: captions under the icons, fixed
// at the top of the window, where the user can neither drag nor hide it.
QToolBar *fixedToolBar(QMainWindow *window);
// Adds the buttons; a click on button n (1-based) calls clicked(n).
QList<QAction *> addTools(QToolBar *bar, std::initializer_list<Tool> tools,
                          std::function<void(int)> clicked);

// One entry of a menu bar, in order. Depth 0 is a menu of the bar, depth 1
// an entry of the last menu, depth 2 an entry of the submenu that the last
// depth-1 entry opens. A null caption is a separator.
struct Entry
{
    int depth;
    const char *name;
    const QString *caption;
    const char *icon = nullptr;
};
void addMenus(QMenuBar *bar, std::initializer_list<Entry> entries);

// The action of a window by objectName; the tables above name them.
QAction *action(const QWidget *window, const char *name);

// Runs load every time the window is shown after it was hidden or closed,
// the first time included, before it is painted.
void loadOnShow(QWidget *window, std::function<void()> load);

// Moves a window so that its offset from the screen's top-left corner is
// share/parts of the free space along each axis, worked out in whole twips
// and truncated: 1/2 centres, 2/5 opens above and left of the centre,
// 1/100 near the top-left corner.
void placeOnFreeSpace(QWidget *window, QSize windowTwips, int share, int parts);
// The window's outer size, frame included, in whole twips.
QSize frameTwips(const QWidget *window);
// A child window of the main window opens below and right of its top-left
// corner, clear of its tool bar, and on the screen.
void placeBeside(QWidget *window, const QWidget *mainWindow);
// Brings a window of the main window's up: one already open runs load
// again for what it is now asked to show, a closed one opens beside the
// main window (its load runs as it shows); either way it comes to the front.
void bringUp(QWidget *window, const std::function<void()> &load);

// Keys that no control should type: an Alt combination that is no
// shortcut (a disabled button's mnemonic, an unused letter) does nothing
// instead of typing its letter into the field that has the focus.
// Installed once for the application by the first window made.
void installKeyboardRules();

// Runs a command; a store error it throws ends it with the error box. True
// when it ran to its end.
bool guarded(const std::function<void()> &command);

}  // namespace scaffold
