#pragma once

// The window tests' ground: a user's clicks and keys, scripted choosers and modal steps, fresh data folders.

#include "store/mailboxes.h"
#include "testsupport.h"
#include "texts.h"
#include "ui/about/frmAbout.h"
#include "ui/accounts/frmMailBox.h"
#include "ui/accounts/frmMainBoxAdd1.h"
#include "ui/accounts/frmMainBoxAdd2.h"
#include "ui/accounts/frmMainBoxAdd3.h"
#include "ui/accounts/frmMainBoxAdd4.h"
#include "ui/accounts/frmMainBoxAdd5.h"
#include "ui/common/filechooser.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
#include "ui/message/frmMailEdit.h"
#include "ui/message/frmMailRead.h"
#include "ui/sendrecv/frmSendAndReceive.h"

#include <QTest>
#include <QtWidgets>

#include <functional>
#include <memory>

namespace testsupport {

void clickItem(QTreeWidget *view, QTreeWidgetItem *item);
// What a row of a list shows in a column, and whether it is bold.
QString cell(const QTreeView *list, int row, int column);
bool bold(const QTreeView *list, int row, int column = 3);
// Clicked twice, as a user double-clicks: the first click lands before the second press.
void clickRow(QTreeView *list, int row, bool twice = false);
inline void clickButton(QToolBar *bar, QAction *b) { QTest::mouseClick(bar->widgetForAction(b), Qt::LeftButton); }
// Keys as a user types them to the window in front: "Alt+F N M", "Ctrl+M", and text in quotes.
void press(const QString &keys);
// One thing a user does in a window, for tables of steps, done by act(): n is the row, name the
// button, action, key or box, text what is typed.
struct Step
{
    enum Kind { Row, RowTwice, Beside, Tab, Click, Trigger, Key, Type } kind;
    int n = 0;
    QString name = {}, text = {};
};
using Steps = QList<Step>;
inline Step row(int n) { return {Step::Row, n}; }            // a row of the window's list clicked
inline Step rowTwice(int n) { return {Step::RowTwice, n}; }  // ... double-clicked
inline Step beside() { return {Step::Beside}; }              // the list clicked below its rows
inline Step tab(int n) { return {Step::Tab, n}; }            // a tab of the window's tab bar clicked
inline Step click(const char *button) { return {Step::Click, 0, QString::fromLatin1(button)}; }
// A menu item or tool bar button by name, triggered.
inline Step trigger(const char *action) { return {Step::Trigger, 0, QString::fromLatin1(action)}; }
// A key ("Down", "Ctrl+R") typed to the control that has the focus.
inline Step key(const char *key) { return {Step::Key, 0, QString::fromLatin1(key)}; }
// Text typed into a box at its cursor, the box given the focus first.
inline Step type(const char *box, const QString &text) { return {Step::Type, 0, QString::fromLatin1(box), text}; }
void act(QWidget *window, const Steps &steps);

// The main window shown, on a tree node and a previewed row when given.
frmMain *mainOn(int node = 0, int row = -1);
// A window by its objectName, shown and active in the state a user sees most of it in: the main window
// on the Inbox, a message window on the Inbox's first message (the compose window replying to it).
QWidget *openWindow(const QString &name);
// "E" or "D" per context button of the main window's tool bar, "-" hidden.
QString contextButtons(const frmMain *w);

// Answers with scripted names in order, then "" (cancel); installed for its lifetime.
class ScriptedFileChooser final : public FileChooser
{
public:
    ScriptedFileChooser() { setFileChooser(this); }
    ~ScriptedFileChooser() override { setFileChooser(nullptr); }
    void answer(const QString &fileName) { m_answers.append(fileName); }
    QString lastSuggestedName;
    QString openFileName(QWidget *, const QString &, const QString &) override { return next(); }
    QString saveFileName(QWidget *, const QString &, const QString &name, const QString &) override
    {
        return lastSuggestedName = name, next();
    }

private:
    QString next() { return m_answers.isEmpty() ? QString() : m_answers.takeFirst(); }
    QStringList m_answers;
};

// Runs each step once the window of that objectName is the active modal one at two polls in a row, so that
// the loop of a window closed just before has ended; steps may open further modal windows. A stalled script
// closes every modal dialog, so that a failing test does not hang.
class ModalScript : public QObject
{
public:
    using Step = std::function<void(QWidget *)>;
    ModalScript &on(const QString &window, Step step) { return m_steps.append({window, std::move(step)}), *this; }
    void start() { QTimer::singleShot(0, this, &ModalScript::poll); }
    bool finished() const { return m_steps.isEmpty() && m_failure.isEmpty(); }
    QByteArray report() const;

private:
    void poll();
    QList<QPair<QString, Step>> m_steps;
    QString m_failure;
    int m_idlePolls = 0;
    QPointer<QWidget> m_seen;
};

// Answers the wizard's pages 1 to lastPage for "New Office", each then Next (page 5: Finish), lastPage if pressLast.
void walkWizard(ModalScript &script, int lastPage = 5, bool pressLast = true);
// Clicks a button, check box or option of a window by name.
void click(QWidget *window, const QString &button);

// A fresh data folder and prompter per test; cleanup closes every window, failing when a scripted box never came.
class WindowTest : public QObject
{
    Q_OBJECT
protected slots:  // found by name; a test class may have its own
    void init() { begin(); }
    void cleanup() { end(); }

protected:
    void begin();
    void end();
    std::unique_ptr<DataDir> dir;
    std::unique_ptr<ScriptedPrompter> boxes;
};

}  // namespace testsupport

Q_DECLARE_METATYPE(testsupport::Steps)
