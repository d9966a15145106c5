// The compose window: what each opening fills in, how saving and sending
// reach the commands and what they never touch, refusals, questions,
// attachments and closing. Where the commands put a message is tst_commands'.

#include "windows.h"

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
namespace t = texts::compose;

namespace {
EmailRec quotedMail()
{
    EmailRec m = mail(u"31000001"_s, u"bob@y.com"_s, u"a@x.com"_s, u"hello"_s, true);
    m.alsoto = u"carol@z.com"_s;
    m.content = u"first line\r\nsecond line"_s;
    m.attachment = u"plan.doc(3.00kb) map.png(1.50kb)"_s;
    return m;
}

// The entries of a list or a box, joined by "|".
QString entries(const QAbstractItemModel *model)
{
    QStringList out;
    for (int i = 0; i < model->rowCount(); ++i)
        out << model->index(i, 0).data().toString();
    return out.join(u'|');
}

// The window as the user sees it: caption, sender, senders offered, To,
// Cc, Subject, attachments ("-" with their row hidden) and body.
QString shown(const frmMailEdit *e)
{
    const QString attached = e->ListView1->isVisible() ? entries(e->ListView1->model()) : u"-"_s;
    return QStringList({e->windowTitle(), e->Combo3->currentText(), entries(e->Combo3->model()), e->Text3->text(),
                        e->Text4->text(), e->Text5->text(), attached, e->Text1->toPlainText()})
        .join(u" ; "_s);
}

// The window opened on the first message of a folder, as the main window
// and the read window open it.
frmMailEdit *openOn(int folder, qint16 mode)
{
    const QList<EmailRec> mails = stored(folder);
    const bool quoting = mode != Main::ComposeModes::New && !mails.isEmpty();
    frmMailEdit::openAs(mode, quoting ? MailRef{folder, 0, mails.first()} : MailRef());
    // Its keys work once it is the active window, as it is for a user.
    if (forms::MailEdit()->isVisible())
        (void)QTest::qWaitForWindowActive(forms::MailEdit());
    return forms::MailEdit();
}

// What the user does in the window, step by step: "To=", "Cc=", "Subject="
// or "Body=" and the text typed there, a menu item by name, "close" from
// the title bar, "send" on the tool bar, else a key in the body.
void act(frmMailEdit *e, const QString &steps)
{
    const QMap<QString, QWidget *> fields = {
        {u"To"_s, e->Text3}, {u"Cc"_s, e->Text4}, {u"Subject"_s, e->Text5}, {u"Body"_s, e->Text1}};
    for (const QString &step : steps.split(u' ', Qt::SkipEmptyParts)) {
        if (QWidget *field = fields.value(step.section(u'=', 0, 0)); field && step.contains(u'='))
            QTest::keyClicks(field, step.section(u'=', 1));
        else if (auto *item = e->findChild<QAction *>(step))
            item->trigger();
        else if (step == u"close")
            e->close();
        else if (step == u"send")
            clickButton(e->Toolbar1, e->toolbarButton(frmMailEdit::tbSend));
        else
            QTest::keyClick(e->Text1, QKeySequence(step)[0].key());
    }
}
}  // namespace

class tst_compose : public WindowTest
{
    Q_OBJECT

private slots:

    // The accounts are a@x.com and c@x.com.
    void opening_data()
    {
        QTest::addColumn<int>("folder");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("shown");
        const QString quoted = u"\n\n-----Original Message-----\nFrom:bob@y.com\nTo:a@x.com\n"
                               u"Sent:24-05-13 09:12\nSubject:hello\n\n> first line\nsecond line"_s;
        QTest::newRow("reply from Deleted Items: To is the sender, an empty sender offered too")
            << 3 << 2 << t::Caption + u" ; a@x.com ; a@x.com|c@x.com| ; bob@y.com ;  ; Re:hello ; - ; "_s + quoted;
        QTest::newRow("forward: To and Cc empty, attachments copied")
            << 0 << 3 << t::Caption + u" ; a@x.com ; a@x.com|c@x.com ;  ;  ; Fw:hello ; "
                                      u"plan.doc(3.00kb)|map.png(1.50kb) ; "_s + quoted;
        QTest::newRow("re-opened draft: its subject as caption, its own sender kept")
            << 4 << 0 << u"hello ; bob@y.com ; a@x.com|c@x.com ; a@x.com ; carol@z.com ; hello ; "
                         u"plan.doc(3.00kb)|map.png(1.50kb) ; first line\nsecond line"_s;
    }
    void opening()
    {
        QFETCH(int, folder);
        QFETCH(int, mode);
        putAccounts(*dir, {u"a@x.com"_s, u"c@x.com"_s});
        put(*dir, folder, {quotedMail()});
        const QByteArray before = allFiles(*dir);

        frmMailEdit *e = openOn(folder, qint16(mode));
        QTEST(shown(e), "shown");
        QCOMPARE(allFiles(*dir), before);
    }

    // Each field lands in its place; attachments come from the tool bar and
    // the menu and go by the pop-up or the Delete key, the row with the last.
    void aNewMessageWithAttachmentsSentLater()
    {
        putAccounts(*dir, {u"ann@x.com"_s});
        ScriptedFileChooser chooser;
        for (const auto &[name, size] : {std::pair{"a.txt", 1}, {"b.txt", 2048}, {"c.txt", 512}, {"d.txt", 1}}) {
            dir->writeBytes(QString::fromLatin1(name), QByteArray(size, 'x'));
            chooser.answer(dir->filePath(QString::fromLatin1(name)));
        }
        frmMailEdit *e = openOn(FolderFile::Inbox, Main::ComposeModes::New);
        QListWidget *list = e->ListView1;
        clickButton(e->Toolbar1, e->toolbarButton(frmMailEdit::tbAttach));
        QVERIFY(list->isVisible() && e->Label5->isVisible());
        const QPoint first = list->visualItemRect(list->item(0)).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, first);
        QVERIFY(!e->popmnu1->isVisible());
        QTest::mouseRelease(list->viewport(), Qt::RightButton, {}, first);
        QTRY_VERIFY(e->popmnu1->isVisible());
        QTest::mouseClick(e->popmnu1, Qt::LeftButton, {}, e->popmnu1->actionGeometry(e->popmnuDelete).center());
        QVERIFY(!list->isVisible() && !e->attachmentRowShown());
        act(e, u"InsertAdd InsertAdd InsertAdd InsertAdd"_s);  // b, c, d, then a cancel that adds nothing
        list->setCurrentRow(2);
        QTest::keyClick(list, Qt::Key_Menu);
        QTRY_VERIFY(e->popmnu1->isVisible());
        e->popmnu1->close();
        QTest::keyClick(list, Qt::Key_Delete);
        QCOMPARE(entries(list->model()), u"b.txt(2.00KB)|c.txt(0.50KB)"_s);

        act(e, u"To=bob@y.com Cc=carol@z.com Subject=test Body=hello Return"_s);
        e->Text1->insertPlainText(u"第二行"_s);  // as an input method enters it
        boxes->expectMessage(Icon::Information, texts::AppTitle, t::SendLaterNotice);
        act(e, u"mnuMailSendLate"_s);
        const EmailRec m = stored(FolderFile::Outbox).value(0);
        QCOMPARE(QStringList({m.from, m.to, m.alsoto, m.subject, m.content, m.attachment}).join(u" ; "_s),
                 u"ann@x.com ; bob@y.com ; carol@z.com ; test ; hello\r\n第二行 ; b.txt(2.00kb) c.txt(0.50kb)"_s);
        QVERIFY(!e->isVisible());
    }

    // The question names the field and what the file keeps; No, its default,
    // goes back to writing with nothing stored, Yes stores what fits.
    void tooLongForTheFile()
    {
        putAccounts(*dir, {u"a@x.com"_s});
        frmMailEdit *e = openOn(FolderFile::Inbox, Main::ComposeModes::New);
        const QString body = u"中"_s.repeated(1100);
        e->Text1->setPlainText(body);
        const QString question =
            t::TooLongForFile.arg(t::TooLongLine.arg(t::FieldNames[4]).arg(2200).arg(2045).arg(1022));
        boxes->expectConfirm(Icon::Exclamation, texts::AppTitle, question, false);
        boxes->expectConfirm(Icon::Exclamation, texts::AppTitle, question, true);
        boxes->expectMessage(Icon::Information, t::DraftSavedTitle, t::DraftSaved);
        act(e, u"Save"_s);
        QCOMPARE(stored(FolderFile::Drafts).size(), 0);
        act(e, u"Save"_s);
        QCOMPARE(e->Text1->toPlainText(), body);
        QCOMPARE(stored(FolderFile::Drafts).value(0).content, body.left(1022));
        QVERIFY(!boxes->defaults().contains(Prompter::Default::Yes));
    }

    // The account on file ("-" none), the window opened on the Inbox's message
    // and what the user does; the boxes in order ("yes" or "no" answers the one
    // before typed text is dropped; "wizard" walks the new account's wizard);
    // then whether the window stays, and sender and subject of each message in
    // Drafts and Sent Items. A refusal writes nothing and leaves the window be;
    // the window stores its own message again, never the quoted one, never twice.
    void commands_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<QStringList>("said");
        QTest::addColumn<QString>("after");
        const auto row = [](const char *name, const char *how, const QStringList &said, const char *after) {
            QTest::newRow(name) << QString::fromLatin1(how) << said << QString::fromLatin1(after);
        };
        const QString noTo = t::CannotSendNoRecipient, noFrom = t::CannotSaveNoSender, saved = t::DraftSaved;
        row("send with empty To", "a@x.com new: mnuMailSend", {noTo}, "open - -");
        row("send tests To before From", "- new: mnuMailSend", {noTo}, "open - -");
        row("send later with empty To", "a@x.com new: mnuMailSendLate", {noTo}, "open - -");
        row("send later with empty From", "- new: To=b@y.com mnuMailSendLate", {noFrom}, "open - -");
        row("save with empty From", "- new: To=b@y.com Save", {noFrom}, "open - -");
        row("reply with no account", "- reply:", {t::NoAccountYet}, "open - -");
        row("a reply saved twice is one draft", "a@x.com reply: Save Subject=more Save", {saved},
            "open a@x.com:re:hellomore -");
        row("a saved forward sent leaves Drafts", "a@x.com forward: To=x@y.cn Save send", {saved},
            "closed - a@x.com:fw:hello");
        row("send with no account calls up the wizard; it leaves from the account just made",
            "- new: To=friend@x.cn Subject=hi send", {u"wizard"_s}, "closed - new.office@example.com:hi");
        row("an untouched window closes without a word", "a@x.com new: mnuClose", {}, "closed - -");
        row("typed text asks first, No keeping the window", "a@x.com new: Body=x Escape", {u"no"_s}, "open - -");
        row("typed text asks first, Yes closing it", "a@x.com new: Body=x close", {u"yes"_s}, "closed - -");
    }
    void commands()
    {
        QFETCH(QString, how);
        QFETCH(QStringList, said);
        QFETCH(QString, after);
        if (!how.startsWith(u'-'))
            putAccounts(*dir, {how.section(u' ', 0, 0)});
        put(*dir, FolderFile::Inbox, {quotedMail()});
        const QByteArray before = allFiles(*dir), inbox = dir->readBytes(FolderFile::fileName(FolderFile::Inbox));
        ModalScript script;
        for (const QString &box : said) {
            if (box == u"yes" || box == u"no")
                boxes->expectConfirm(Icon::Exclamation, texts::AppTitle, t::AskDiscardOnClose, box == u"yes");
            else if (box == u"wizard")
                walkWizard(script);
            else if (box == t::DraftSaved)
                boxes->expectMessage(Icon::Information, t::DraftSavedTitle, box);
            else
                boxes->expectMessage(Icon::Exclamation, texts::AppTitle, box);
        }
        const QStringList modes = {u"reopen:"_s, u"new:"_s, u"reply:"_s, u"forward:"_s};
        frmMailEdit *e = openOn(FolderFile::Inbox, qint16(modes.indexOf(how.section(u' ', 1, 1))));
        script.start();
        act(e, how.section(u": "_s, 1));
        QVERIFY2(script.finished(), script.report());
        QTRY_VERIFY(!forms::SendAndReceive()->isVisible());
        QStringList shown{e->isVisible() ? u"open"_s : u"closed"_s};
        for (int folder : {FolderFile::Drafts, FolderFile::SentItems}) {
            QStringList held;
            for (const EmailRec &m : stored(folder))
                held << m.from + u':' + m.subject;
            shown << (held.isEmpty() ? u"-"_s : held.join(u'|'));
        }
        QCOMPARE(shown.join(u' '), after);
        QCOMPARE(dir->readBytes(FolderFile::fileName(FolderFile::Inbox)), inbox);
        if (after.endsWith(u"- -"))  // nothing stored, the To typed still there
            QVERIFY(allFiles(*dir) == before && e->Text3->text() == how.section(u"To="_s, 1).section(u' ', 0, 0));
        QVERIFY(!boxes->defaults().contains(Prompter::Default::Yes));
    }

    // A window holding unsaved text is not emptied for another message: it
    // comes to the front and says so. Once its text is stored it takes the
    // next message afresh.
    void aBusyWindow()
    {
        putAccounts(*dir, {u"a@x.com"_s});
        put(*dir, FolderFile::Drafts, {mail(u"41"_s)});
        put(*dir, FolderFile::Inbox, {quotedMail()});
        frmMailEdit *e = openOn(FolderFile::Drafts, Main::ComposeModes::Reopen);
        act(e, u"Subject=more"_s);
        QWidget other;
        other.show();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        boxes->expectMessage(Icon::Information, texts::AppTitle, t::StillWriting);
        openOn(FolderFile::Inbox, Main::ComposeModes::Reply);
        QCOMPARE(QApplication::activeWindow(), e);
        QCOMPARE(shown(e), u"hello ; a@x.com ; a@x.com ; b@x.com ;  ; hellomore ; - ; body"_s);
        QCOMPARE(int(Main::ComposeMode), int(Main::ComposeModes::Reopen));

        act(e, u"Save"_s);  // the draft replaced: no box
        openOn(FolderFile::Inbox, Main::ComposeModes::Reply);
        QCOMPARE(e->windowTitle() + e->Text5->text(), t::Caption + u"Re:hello"_s);
        QVERIFY(!e->storedMail().isSet());
        // New empties the fields and the caption but keeps the sender; text
        // nobody saved goes only on a Yes.
        boxes->expectConfirm(Icon::Exclamation, texts::AppTitle, t::AskDiscardOnNew, false);
        act(e, u"Cc=cc munNewMail"_s);
        QCOMPARE(e->Text4->text(), u"cc"_s);
        boxes->expectConfirm(Icon::Exclamation, texts::AppTitle, t::AskDiscardOnNew, true);
        act(e, u"munNewMail"_s);
        QCOMPARE(int(Main::ComposeMode), int(Main::ComposeModes::New));
        QCOMPARE(shown(e), t::Caption + u" ; a@x.com ; a@x.com ;  ;  ;  ; - ; "_s);
        QVERIFY(!boxes->defaults().contains(Prompter::Default::Yes));
    }
};

QTEST_MAIN(tst_compose)
#include "tst_compose.moc"
