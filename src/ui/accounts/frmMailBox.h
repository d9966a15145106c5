#pragma once

#include "store/mailstore.h"
#include "frmMailBoxProp.h"
#include "ui/common/forms.h"

#include <QDialog>

#include <functional>

class QAction;
class QMenu;
class QPushButton;
class QTabBar;
class QTreeWidget;

// The "Internet 账号" dialog: lists the accounts, starts the new-account
// wizard, deletes an account and opens its properties. Every change goes
// to the account file through the store, and the list then shows the file
// again. The wizard pages and the properties dialog talk back through its
// public fields.
class frmMailBox final : public QDialog
{
    Q_OBJECT

public:
    explicit frmMailBox(QWidget *parent = nullptr);

    // The account handed to the properties dialog.
    using EditRecord = AccountFields;

    // Public fields; they belong to the object, not to the window on screen,
    // so a later opening in the same run sees the same values.
    qint32 AccountCount = 0;      // accounts listed
    float SelectedIndex = 0;      // zero-based slot of the row last clicked
    QString SelectedName;         // that row's text, the account's logon name
    bool Changed = false;         // set by the wizard's finish and the properties' OK/Apply
    EditRecord EditRec;

    QTabBar *TabStrip1 = nullptr;
    QTreeWidget *ListView1 = nullptr;
    QPushButton *btnAddNew = nullptr;
    QPushButton *btnDelete = nullptr;
    QPushButton *btnProperty = nullptr;
    QPushButton *Command[4] = {};
    QPushButton *btnClose = nullptr;
    QMenu *btMnu = nullptr;
    QAction *mnuEmail = nullptr;
    QAction *mnuNew = nullptr;
    QAction *mnudir = nullptr;

    // Where the add menu pops up: the add button's top-right corner.
    static constexpr QPoint MenuAnchor{438, 16};

    // The dialog's start-up; it also runs whenever the dialog rebuilds itself.
    // False when the account file could not be read: the dialog then goes.
    bool Form_Load();
    // Runs the whole new-account wizard and stores the account when it was
    // finished; true when it was stored. Also the entry point of
    // EnsureMailBox.
    bool mnuEmail_Click();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void ListView1_MouseDown(const QPoint &pos);
    void ListView1_Click();
    void ListView1_DblClick();
    void TabStrip1_Click();
    void btnAddNew_Click();
    void btnDelete_Click();
    void btnProperty_Click();
    void btnClose_Click();
    void placeOnScreen();
    // Lists the accounts as the store holds them; false when it cannot.
    bool fillList();
    void ListView1_SelectionChanged();
    void propertiesChanged();
    // Changes the account table as the file holds it, writes it in one
    // unit and lists the file again. slot is the listed account the change
    // is about (-1: none); when the file no longer holds it there, nothing
    // is changed and the user is told. True when the change was stored.
    bool changeAccounts(int slot, const std::function<void(AccountList &)> &change);

    float MouseX = 0;
    float MouseY = 0;
    AccountList m_listed;  // the accounts as the list shows them
    bool m_clickPending = false;  // a press in the list awaits its release
};

namespace forms {
inline frmMailBox *MailBox() { return instance<frmMailBox>(); }
}  // namespace forms
