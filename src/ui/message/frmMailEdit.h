#pragma once

#include "store/records.h"
#include "ui/common/forms.h"

#include <QList>
#include <QMainWindow>

class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QMenu;
class QPlainTextEdit;
class QStatusBar;
class QToolBar;

// The window in which a message is written: a new one, a reply, a forward,
// or a draft or Outbox message opened again. Sending stores the message in
// the Outbox and runs a send-only pass of the progress dialog; saving stores
// it in Drafts. What it opens is decided by ComposeMode, set by the opener.
class frmMailEdit : public QMainWindow
{
    Q_OBJECT

public:
    // Tool bar buttons by their 1-based position; only Send and Attach act.
    enum ToolbarButton : int {
        tbSend = 1,
        tbSeparator2 = 2,
        tbPrint = 3,
        tbFind = 4,
        tbSeparator5 = 5,
        tbCheckNames = 6,
        tbEncoding = 7,
        tbSeparator8 = 8,
        tbAddressBook = 9,
        tbSeparator10 = 10,
        tbAttach = 11,
        tbCount = 11
    };

    // The value of the attachment-row flag while the row is shown.
    static constexpr int AttachmentRowShown = 99;

    // The window's size when it first opens, in twips.
    static constexpr int DesignWidth = 10500;
    static constexpr int DesignHeight = 8400;

    frmMailEdit();
    ~frmMailEdit() override;

    QAction *toolbarButton(int index) const;
    bool attachmentRowShown() const { return m_attachmentRow == AttachmentRowShown; }

    // ---- Commands ----------------------------------------------------------
    void mnuMailSend_Click();
    void mnuMailSendLate_Click();
    void Save_Click();
    void munNewMail_Click();
    void InsertAdd_Click();
    void popmnuDelete_Click();
    void Toolbar1_ButtonClick(int index);

    // ---- Menu items that act -----------------------------------------------
    QAction *munNewMail = nullptr;
    QAction *mnuMailSend = nullptr;
    QAction *mnuMailSendLate = nullptr;
    QAction *Save = nullptr;
    QMenu *Insert = nullptr;
    QAction *InsertAdd = nullptr;
    QMenu *popmnu1 = nullptr;
    QAction *popmnuDelete = nullptr;

    // ---- Child widgets -----------------------------------------------------
    QToolBar *Toolbar1 = nullptr;
    QLabel *Label1 = nullptr;  // "发件人:"
    QLabel *Label2 = nullptr;  // "收件人:"
    QLabel *Label3 = nullptr;  // "抄送:"
    QLabel *Label4 = nullptr;  // "主题:"
    QLabel *Label5 = nullptr;  // "附件:"
    QComboBox *Combo3 = nullptr;   // From
    QLineEdit *Text3 = nullptr;    // To
    QLineEdit *Text4 = nullptr;    // Cc
    QLineEdit *Text5 = nullptr;    // Subject
    QListWidget *ListView1 = nullptr;  // attachments
    QComboBox *Combo1 = nullptr;   // font face of the format bar
    QComboBox *Combo2 = nullptr;   // font size of the format bar
    QLabel *Image1 = nullptr;
    QPlainTextEdit *Text1 = nullptr;  // body
    QStatusBar *StatusBar1 = nullptr;

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildMenus();
    void buildToolbar();
    void buildFields();
    void connectHandlers();

    void Form_Load();
    bool Form_Unload();
    void loadAccounts();
    void loadQuoted();
    void showAttachmentRow(bool shown);
    void loadAttachments(const QString &field);

    // The stored record from the fields: with a new random id, or with the
    // main window's current message id.
    EmailRec newRecord() const;
    EmailRec sameIdRecord() const;
    QString joinedAttachments() const;

    // Send now's and send later's store into the Outbox; false when a
    // check stopped it and nothing was written.
    bool storeForSend();
    bool storeForSendLater();
    void showOutboxInMain();
    void runSendOnly();
    void changed();

    QList<QAction *> m_buttons;  // tool bar buttons, position 1 at 0
    MailBoxArray m_accounts;
    MailCount m_accountCount = 0;
    EmailArray m_mails;
    MailCount m_mailCount = 0;
    int m_index = -1;  // the quoted or re-opened message in m_mails; -1 none
    int m_attachmentRow = 0;
    bool m_loaded = false;
    bool m_filling = false;  // the fields are being filled, not edited
};

namespace forms {
inline frmMailEdit *MailEdit() { return instance<frmMailEdit>(); }
}  // namespace forms
