#pragma once

#include "mail/commands.h"
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
// bar and the menus reply to and forward the message shown and step through
// the folder it came from.
class frmMailRead final : public QMainWindow
{
    Q_OBJECT

public:
    // Tool bar buttons by their 1-based position; reply, reply to all,
    // forward, previous and next act.
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

    // Shows this message, marking it read, whether or not the window was
    // open on another one.
    static void open(const MailRef &message);

    QAction *toolbarButton(int index) const;
    void Toolbar1_ButtonClick(int index);

    // Position of the shown message in the window's copy of its folder.
    int ShownMail() const { return m_index; }
    // The message shown, as the commands of the window act on it.
    MailRef shownMail() const;

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

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void buildMenus();
    void buildToolbar();
    void buildPanes();

    void Form_Load();
    void showMail(int index);
    void markRead(int index);
    void folderChanged(int folder);
    void reply(qint16 mode);
    void mnuSave_Click();

    QList<QAction *> m_buttons;  // tool bar buttons, position 1 at 0
    AccountList m_accounts;
    MailList m_mails;
    MailRef m_opened;     // what the window was asked to show
    qint16 m_folder = 0;  // the folder the message was opened from
    int m_index = 0;
};

namespace forms {
inline frmMailRead *MailRead() { return instance<frmMailRead>(); }
}  // namespace forms
