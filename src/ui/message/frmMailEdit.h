#pragma once

#include "mail/commands.h"
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

namespace Main {
// What the compose window opens on; whoever opens it gives the mode, and a
// saved new message turns it into Reopen.
namespace ComposeModes {
inline constexpr qint16 Reopen = 0;  // the stored message it was opened on
inline constexpr qint16 New = 1;
inline constexpr qint16 Reply = 2;
inline constexpr qint16 Forward = 3;
}  // namespace ComposeModes
}  // namespace Main

// The window in which a message is written: a new one, a reply, a forward,
// or a draft or Outbox message opened again. Sending stores the message in
// the Outbox and runs a send-only pass of the progress dialog; saving stores
// it in Drafts. Once stored, a further save or send of the window acts on
// its own stored message, never on the one it quoted or on what another
// window shows.
class frmMailEdit final : public QMainWindow
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

    // Opens the window in a mode (ComposeMode): a new message, a reply to or
    // forward of source, or source itself to edit again. A window holding
    // text that was neither sent nor saved is not emptied for it: it comes
    // to the front and says so.
    // False when it did not open for this (the window held unsaved text).
    static bool openAs(qint16 mode, const MailRef &source);

    QAction *toolbarButton(int index) const;
    bool attachmentRowShown() const { return m_attachmentRow == AttachmentRowShown; }
    // Where the window's message is stored; unset until it is.
    const StoredMail &storedMail() const { return m_stored; }
    // The fields hold text that was neither sent nor saved.
    bool gbModified = false;
    // What the window was opened as, one of Main::ComposeModes.
    qint16 ComposeMode = Main::ComposeModes::Reopen;

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
    QAction *mnuClose = nullptr;
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
    QString joinedAttachments() const;

    // The message as the fields give it, without an id: the store gives it
    // a new one or keeps the stored message's.
    EmailRec composed() const;
    // Whether m may be stored: when a field is longer than the file keeps,
    // the user is told how much would be kept and chooses to go on with
    // that (m is cut) or to go back to writing.
    bool fitsOrAccepted(EmailRec &m);
    void changed();

    QList<QAction *> m_buttons;  // tool bar buttons, position 1 at 0
    MailRef m_source;     // what the window was opened on
    StoredMail m_stored;  // where its message is stored, once it is
    int m_attachmentRow = 0;
    bool m_filling = false;  // the fields are being filled, not edited
};

namespace forms {
inline frmMailEdit *MailEdit() { return instance<frmMailEdit>(); }
}  // namespace forms
