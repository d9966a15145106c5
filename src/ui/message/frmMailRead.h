#pragma once

#include "store/records.h"
#include "ui/common/forms.h"

#include <QList>
#include <QMainWindow>

class QAction;
class QLabel;
class QListWidget;
class QMenu;
class QStatusBar;
class QTextEdit;
class QToolBar;

// One stored message in a window of its own: sender, date, recipients,
// subject, body and attachments. Opening a message marks it read. The tool
// bar replies, forwards and steps through the folder the message came from.
class frmMailRead : public QMainWindow
{
    Q_OBJECT

public:
    // Tool bar buttons by their 1-based position; only reply, forward,
    // previous and next act.
    enum ToolbarButton : int {
        tbReply = 1,
        tbReplyAll = 2,
        tbForward = 3,
        tbSeparator4 = 4,
        tbPrint = 5,
        tbDelete = 6,
        tbSeparator7 = 7,
        tbPrevious = 8,
        tbNext = 9,
        tbSeparator10 = 10,
        tbAddressBook = 11,
        tbCount = 11
    };

    // The window's size when it first opens, in twips.
    static constexpr int DesignWidth = 10200;
    static constexpr int DesignHeight = 7800;

    frmMailRead();
    ~frmMailRead() override;

    QAction *toolbarButton(int index) const;
    void Toolbar1_ButtonClick(int index);

    // Position of the shown message in the window's copy of its folder.
    int ShownMail() const { return m_index; }

    // ---- Child widgets ---------------------------------------------------
    QToolBar *Toolbar1 = nullptr;
    QLabel *Label1 = nullptr;  // "发件人:"
    QLabel *Label2 = nullptr;  // "日期:"
    QLabel *Label3 = nullptr;  // "收件人:"
    QLabel *Label4 = nullptr;  // "主题:"
    QLabel *Label5 = nullptr;  // from
    QLabel *Label6 = nullptr;  // date
    QLabel *Label7 = nullptr;  // recipients
    QLabel *Label8 = nullptr;  // subject
    QLabel *Label9 = nullptr;  // "附件:"
    QListWidget *lvAddfile = nullptr;
    QTextEdit *Text1 = nullptr;
    QStatusBar *StatusBar1 = nullptr;
    QMenu *mnuPop = nullptr;
    QAction *mnuSave = nullptr;

signals:
    // Reply and forward set ComposeMode and ask for the compose window
    // here; whoever owns that window opens it.
    void mailEditRequested();

protected:
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildMenus();
    void buildToolbar();
    void buildPanes();

    void Form_Load();
    void showMail(int index);
    void markRead(int index);
    void mnuSave_Click();

    QList<QAction *> m_buttons;  // tool bar buttons, position 1 at 0
    MailBoxArray m_accounts;
    ::MailCount m_accountCount = 0;
    EmailArray m_mails;
    ::MailCount m_mailCount = 0;
    qint16 m_folder = 0;  // the folder the message was opened from
    int m_index = 0;
};

namespace forms {
inline frmMailRead *MailRead() { return instance<frmMailRead>(); }
}  // namespace forms
