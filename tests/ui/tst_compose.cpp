// The compose window: what each opening fills in, how saving and sending
// reach the commands and what they never touch, refusals, questions,
// attachments and closing. Where the commands put a message is tst_commands'.

#include "windows.h"

#include <QTemporaryDir>

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

// The window opened on the first message of a folder, as the main window
// and the read window open it.
frmMailEdit *openOn(int folder, qint16 mode)
{
    const QList<EmailRec> mails = stored(folder);
    MailRef ref;
    if (mode != Main::ComposeModes::New && !mails.isEmpty())
        ref = {folder, 0, mails.first()};
    frmMailEdit::openAs(mode, ref);
    // Its keys work once it is the active window, as it is for a user.
    if (forms::MailEdit()->isVisible())
        (void)QTest::qWaitForWindowActive(forms::MailEdit());
    return forms::MailEdit();
}
}  // namespace

class tst_compose : public WindowTest
{
    Q_OBJECT

private slots:

    // The accounts are a@x.com and c@x.com. Shown: the caption, the sender,
    // the senders offered, To, Cc, Subject and the attachments.
    void opening_data()
    {
        QTest::addColumn<int>("folder");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QStringList>("shown");
        QTest::addColumn<QString>("body");
        const QString a = u"a@x.com"_s, both = u"a@x.com|c@x.com"_s, bob = u"bob@y.com"_s, none;
        const QString attached = u"plan.doc(3.00kb)|map.png(1.50kb)"_s, hello = u"hello"_s;
        const QString quoted = u"\n\n-----Original Message-----\nFrom:bob@y.com\nTo:a@x.com\n"
                               u"Sent:24-05-13 09:12\nSubject:hello\n\n> first line\nsecond line"_s;
        QTest::newRow("reply from Deleted Items: To is the sender, an empty sender offered too")
            << 3 << 2 << QStringList{t::Caption, a, both + u'|', bob, none, u"Re:hello"_s, none}
            << quoted;
        QTest::newRow("forward: To and Cc empty, attachments copied")
            << 0 << 3 << QStringList{t::Caption, a, both, none, none, u"Fw:hello"_s, attached}
            << quoted;
        QTest::newRow("re-opened draft: its subject as caption, its own sender kept")
            << 4 << 0 << QStringList{hello, bob, both, a, u"carol@z.com"_s, hello, attached}
            << u"first line\nsecond line"_s;
    }
    void opening()
    {
        QFETCH(int, folder);
        QFETCH(int, mode);
        putAccounts(*dir, {u"a@x.com"_s, u"c@x.com"_s});
        put(*dir, folder, {quotedMail()});
        const QByteArray before = allFiles(*dir);

        frmMailEdit *e = openOn(folder, qint16(mode));
        QTEST(QStringList({e->windowTitle(), e->Combo3->currentText(), entries(e->Combo3->model()),
                           e->Text3->text(), e->Text4->text(), e->Text5->text(),
                           entries(e->ListView1->model())}),
              "shown");
        QTEST(e->Text1->toPlainText(), "body");
        QCOMPARE(e->ListView1->isVisible(), e->ListView1->count() > 0);
        QCOMPARE(allFiles(*dir), before);
    }

    // Each field lands in its place; attachments come from the tool bar and
    // the menu and go by the pop-up or the Delete key, the row with the last.
    void aNewMessageWithAttachmentsSentLater()
    {
        putAccounts(*dir, {u"ann@x.com"_s});
        QTemporaryDir files;
        ScriptedFileChooser chooser;
        for (const auto &[name, size] : {std::pair{"a", 1}, {"b", 2048}, {"c", 512}, {"d", 1}}) {
            QFile f(files.filePath(QString::fromLatin1(name) + u".txt"_s));
            QVERIFY(f.open(QIODevice::WriteOnly) && f.write(QByteArray(size, 'x')) == size);
            chooser.answer(f.fileName());
        }
        frmMailEdit *e = openOn(FolderFile::Inbox, Main::ComposeModes::New);
        QListWidget *list = e->ListView1;
        clickButton(e->Toolbar1, e->toolbarButton(frmMailEdit::tbAttach));
        QVERIFY(list->isVisible() && e->Label5->isVisible());
        const QRect first = list->visualItemRect(list->item(0));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, first.center());
        QVERIFY(!e->popmnu1->isVisible());
        QTest::mouseRelease(list->viewport(), Qt::RightButton, {}, first.center());
        QTRY_VERIFY(e->popmnu1->isVisible());
        e->popmnu1->close();
        e->popmnuDelete->trigger();
        QVERIFY(!list->isVisible() && !e->attachmentRowShown());
        for (int i = 0; i < 4; ++i)
            e->InsertAdd->trigger();  // b, c, d, then a cancel that adds nothing
        list->setCurrentRow(2);
        QTest::keyClick(list, Qt::Key_Menu);
        QTRY_VERIFY(e->popmnu1->isVisible());
        e->popmnu1->close();
        QTest::keyClick(list, Qt::Key_Delete);
        QCOMPARE(entries(list->model()), u"b.txt(2.00KB)|c.txt(0.50KB)"_s);

        QTest::keyClicks(e->Text3, u"bob@y.com"_s);
        QTest::keyClicks(e->Text4, u"carol@z.com"_s);
        QTest::keyClicks(e->Text5, u"test"_s);
        QTest::keyClicks(e->Text1, u"hello"_s);
        QTest::keyClick(e->Text1, Qt::Key_Return);
        e->Text1->insertPlainText(u"第二行"_s);  // as an input method enters it
        boxes->expectMessage(Icon::Information, texts::AppTitle, t::SendLaterNotice);
        e->mnuMailSendLate->trigger();

        const EmailRec m = stored(FolderFile::Outbox).value(0);
        QCOMPARE(QStringList({m.from, m.to, m.alsoto, m.subject, m.content, m.attachment}),
                 QStringList({u"ann@x.com"_s, u"bob@y.com"_s, u"carol@z.com"_s, u"test"_s,
                              u"hello\r\n第二行"_s, u"b.txt(2.00kb) c.txt(0.50kb)"_s}));
        QVERIFY(!e->isVisible());
    }

    // Once stored, the window stores its own message again: never the one
    // it quotes, nor a second draft.
    void storing()
    {
        putAccounts(*dir, {u"a@x.com"_s});
        put(*dir, FolderFile::Inbox, {quotedMail()});
        const QByteArray inbox = dir->readBytes(FolderFile::fileName(FolderFile::Inbox));
        boxes->expectMessage(Icon::Information, t::DraftSavedTitle, t::DraftSaved);
        frmMailEdit *e = openOn(FolderFile::Inbox, Main::ComposeModes::Reply);
        e->Save->trigger();
        QTest::keyClicks(e->Text5, u"more"_s);
        e->Save->trigger();  // the same draft: no box
        QCOMPARE(stored(FolderFile::Drafts).value(0).subject, u"re:hellomore"_s);

        boxes->expectMessage(Icon::Information, t::DraftSavedTitle, t::DraftSaved);
        e = openOn(FolderFile::Inbox, Main::ComposeModes::Forward);
        QTest::keyClicks(e->Text3, u"x@y.cn"_s);
        e->Save->trigger();
        clickButton(e->Toolbar1, e->toolbarButton(frmMailEdit::tbSend));
        QTRY_VERIFY(!forms::SendAndReceive()->isVisible());
        QCOMPARE(stored(FolderFile::Drafts).size(), 1);
        QCOMPARE(stored(FolderFile::SentItems).value(0).subject, u"fw:hello"_s);
        QCOMPARE(dir->readBytes(FolderFile::fileName(FolderFile::Inbox)), inbox);
    }

    // The question names the field and what the file keeps; No, its default,
    // goes back to writing with nothing stored, Yes stores what fits.
    void tooLongForTheFile()
    {
        putAccounts(*dir, {u"a@x.com"_s});
        frmMailEdit *e = openOn(FolderFile::Inbox, Main::ComposeModes::New);
        const QString body = u"中"_s.repeated(1100);
        e->Text1->setPlainText(body);
        const QString question = t::TooLongForFile.arg(
            t::TooLongLine.arg(t::FieldNames[4]).arg(2200).arg(2045).arg(1022));
        boxes->expectConfirm(Icon::Exclamation, texts::AppTitle, question, false);
        e->Save->trigger();
        QCOMPARE(boxes->defaults().value(0), Prompter::Default::No);
        QCOMPARE(stored(FolderFile::Drafts).size(), 0);

        boxes->expectConfirm(Icon::Exclamation, texts::AppTitle, question, true);
        boxes->expectMessage(Icon::Information, t::DraftSavedTitle, t::DraftSaved);
        e->Save->trigger();
        QCOMPARE(e->Text1->toPlainText(), body);
        QCOMPARE(stored(FolderFile::Drafts).value(0).content, body.left(1022));
    }

    // A refused command writes nothing and leaves the window as it was.
    void refusals_data()
    {
        QTest::addColumn<bool>("account");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("text");
        const QString to = u"b@y.com"_s, none, noTo = t::CannotSendNoRecipient,
                      noFrom = t::CannotSaveNoSender;
        QTest::newRow("send with empty To") << true << none << u"send"_s << noTo;
        QTest::newRow("send tests To before From") << false << none << u"send"_s << noTo;
        QTest::newRow("send later with empty To") << true << none << u"later"_s << noTo;
        QTest::newRow("send later with empty From") << false << to << u"later"_s << noFrom;
        QTest::newRow("save with empty From") << false << to << u"save"_s << noFrom;
        QTest::newRow("reply with no account") << false << none << u"reply"_s << t::NoAccountYet;
    }
    void refusals()
    {
        QFETCH(bool, account);
        QFETCH(QString, to);
        QFETCH(QString, command);
        QFETCH(QString, text);
        if (account)
            putAccounts(*dir, {u"a@x.com"_s});
        put(*dir, FolderFile::Inbox, {quotedMail()});
        const QByteArray before = allFiles(*dir);
        boxes->expectMessage(Icon::Exclamation, texts::AppTitle, text);

        frmMailEdit *e = openOn(FolderFile::Inbox, command == u"reply" ? Main::ComposeModes::Reply
                                                                       : Main::ComposeModes::New);
        QTest::keyClicks(e->Text3, to);
        if (command == u"send")
            e->mnuMailSend->trigger();
        else if (command == u"later")
            e->mnuMailSendLate->trigger();
        else if (command == u"save")
            e->Save->trigger();

        QVERIFY(e->isVisible());
        QCOMPARE(e->Text3->text(), to);
        QCOMPARE(allFiles(*dir), before);
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
        QVERIFY(!e->attachmentRowShown());
        QTest::keyClicks(e->Text5, u" more"_s);
        QWidget other;
        other.show();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        boxes->expectMessage(Icon::Information, texts::AppTitle, t::StillWriting);
        openOn(FolderFile::Inbox, Main::ComposeModes::Reply);
        QCOMPARE(QApplication::activeWindow(), e);
        QCOMPARE(e->Text5->text(), u"hello more"_s);
        QCOMPARE(int(Main::ComposeMode), int(Main::ComposeModes::Reopen));

        e->Save->trigger();  // the draft replaced: no box
        openOn(FolderFile::Inbox, Main::ComposeModes::Reply);
        QCOMPARE(e->windowTitle() + e->Text5->text(), t::Caption + u"Re:hello"_s);
        QVERIFY(!e->storedMail().isSet());

        // New inside the window empties the fields but keeps the sender.
        QTest::keyClicks(e->Text4, u"cc"_s);
        e->munNewMail->trigger();
        QCOMPARE(int(Main::ComposeMode), int(Main::ComposeModes::New));
        QCOMPARE(e->Text1->toPlainText() + e->Text3->text() + e->Text4->text() + e->Text5->text(),
                 QString());
        QCOMPARE(e->Combo3->currentText(), u"a@x.com"_s);
    }

    // Send with no account at all calls up the wizard; the message leaves,
    // from the account just made, only once it exists.
    void aNewUserSendsThroughTheWizard()
    {
        frmMailEdit *e = openOn(FolderFile::Inbox, Main::ComposeModes::New);
        QTest::keyClicks(e->Text3, u"friend@x.cn"_s);
        ModalScript script;
        walkWizard(script, WizardAnswers());
        script.start();
        clickButton(e->Toolbar1, e->toolbarButton(frmMailEdit::tbSend));
        QVERIFY2(script.finished(), script.report());
        QTRY_VERIFY(!e->isVisible());
        QCOMPARE(stored(FolderFile::SentItems).value(0).from, u"new.office@example.com"_s);
    }

    // An untouched window closes without a word; typed text asks first, No
    // (the default) keeping the window.
    void closing()
    {
        putAccounts(*dir, {u"a@x.com"_s});
        frmMailEdit *e = openOn(FolderFile::Inbox, Main::ComposeModes::New);
        e->mnuClose->trigger();
        QVERIFY(!e->isVisible());

        e = openOn(FolderFile::Inbox, Main::ComposeModes::New);
        QTest::keyClicks(e->Text1, u"x"_s);
        boxes->expectConfirm(Icon::Exclamation, texts::AppTitle, t::AskDiscardOnClose, false);
        QTest::keyClick(e->Text1, Qt::Key_Escape);
        QVERIFY(e->isVisible());
        boxes->expectConfirm(Icon::Exclamation, texts::AppTitle, t::AskDiscardOnClose, true);
        e->close();
        QVERIFY(!e->isVisible());
        QCOMPARE(boxes->defaults(), QList({Prompter::Default::No, Prompter::Default::No}));
    }
};

QTEST_MAIN(tst_compose)
#include "tst_compose.moc"
