// The compose window: openings, what saving and sending store and never touch, refusals, questions, attachments.

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
// The body of a reply to it or a forward of it.
const QString quoted = u"\n\n-----Original Message-----\nFrom:bob@y.com\nTo:a@x.com\nSent:24-05-13 09:12\nSubject:hello\n\n"
                       u"> first line\nsecond line"_s;

// The entries of a list or a box, joined by "|".
QString entries(const QAbstractItemModel *model)
{
    QStringList out;
    for (int i = 0; i < model->rowCount(); ++i)
        out << model->index(i, 0).data().toString();
    return out.join(u'|');
}

// The window as the user sees it: caption, sender, senders offered, To, Cc, Subject, attachments ("-": row
// hidden), body.
QString shown(const frmMailEdit *e)
{
    const QString attached = e->ListView1->isVisible() ? entries(e->ListView1->model()) : u"-"_s;
    return QStringList({e->windowTitle(), e->Combo3->currentText(), entries(e->Combo3->model()), e->Text3->text(),
                        e->Text4->text(), e->Text5->text(), attached, e->Text1->toPlainText()})
        .join(u" ; "_s);
}

// The window opened on the first message of a folder, as the main window and the read window open it.
frmMailEdit *openOn(int folder, qint16 mode)
{
    const MailList mails = stored(folder);
    const bool quoting = mode != Main::ComposeModes::New && !mails.isEmpty();
    frmMailEdit::openAs(mode, quoting ? MailRef{folder, 0, mails.first()} : MailRef());
    // Its keys work once it is the active window, as it is for a user.
    if (forms::MailEdit()->isVisible())
        (void)QTest::qWaitForWindowActive(forms::MailEdit());
    return forms::MailEdit();
}

// The fields by what they hold.
const char *const To = "Text3", *const Cc = "Text4", *const Subject = "Text5", *const Body = "Text1";
}  // namespace

class tst_compose : public WindowTest
{
    Q_OBJECT

private slots:

    // Each field lands in its place; attachments come from the tool bar and the menu and go by the pop-up or
    // the Delete key, the row with the last.
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
        QVERIFY(!e->Toolbar1->toggleViewAction()->isEnabled());  // the tool bar cannot be hidden
        clickButton(e->Toolbar1, e->toolbarButton(frmMailEdit::tbAttach));
        QVERIFY(list->isVisible() && e->Label5->isVisible());
        const QPoint first = list->visualItemRect(list->item(0)).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, first);
        QTest::mouseRelease(list->viewport(), Qt::RightButton, {}, first);
        QTRY_VERIFY(e->popmnu1->isVisible());
        QTest::mouseClick(e->popmnu1, Qt::LeftButton, {}, e->popmnu1->actionGeometry(e->popmnuDelete).center());
        QVERIFY(!list->isVisible() && !e->attachmentRowShown());
        act(e, {trigger("InsertAdd"), trigger("InsertAdd"), trigger("InsertAdd"), trigger("InsertAdd")});  // b, c, d, a cancel
        list->setCurrentRow(2);
        QTest::keyClick(list, Qt::Key_Delete);
        QCOMPARE(entries(list->model()), u"b.txt(2.00KB)|c.txt(0.50KB)"_s);
        QVERIFY(list->height() < 3 * list->visualItemRect(list->item(0)).height());  // two rows at most

        act(e, {type(To, u"bob@y.com"_s), type(Cc, u"carol@z.com"_s), type(Subject, u"test"_s), type(Body, u"hello"_s), key("Return")});
        e->Text1->insertPlainText(u"第二行"_s);  // as an input method enters it
        boxes->expectMessage(Icon::Information, texts::AppTitle, t::SendLaterNotice);
        act(e, {trigger("mnuMailSendLate")});
        const EmailRec m = stored(FolderFile::Outbox).value(0);
        QCOMPARE(QStringList({m.from, m.to, m.alsoto, m.subject, m.content, m.attachment}).join(u" ; "_s),
                 u"ann@x.com ; bob@y.com ; carol@z.com ; test ; hello\r\n第二行 ; b.txt(2.00kb) c.txt(0.50kb)"_s);
        QVERIFY(!e->isVisible());
    }

    // The question names the field and what the file keeps; No, its default, goes back to writing with
    // nothing stored, Yes stores what fits.
    void tooLongForTheFile()
    {
        putAccounts(*dir, {u"a@x.com"_s});
        frmMailEdit *e = openOn(FolderFile::Inbox, Main::ComposeModes::New);
        const QString body = u"中"_s.repeated(1100);
        e->Text1->setPlainText(body);
        const QString question =
            t::TooLongForFile.arg(t::TooLongLine.arg(t::FieldNames[4]).arg(2200).arg(2045).arg(1022));
        for (bool yes : {false, true})
            boxes->expectConfirm(Icon::Exclamation, texts::AppTitle, question, yes);
        boxes->expectMessage(Icon::Information, t::DraftSavedTitle, t::DraftSaved);
        act(e, {trigger("Save")});
        QCOMPARE(stored(FolderFile::Drafts).size(), 0);
        act(e, {trigger("Save")});
        QCOMPARE(e->Text1->toPlainText(), body);
        QCOMPARE(stored(FolderFile::Drafts).value(0).content, body.left(1022));
    }

    // The window opened on a message (its folder's first), then the user's steps, the box they bring, and
    // the window as it shows then; nothing is ever written. An opening fills the fields from the message. A
    // refusal says why and leaves the window as it was. A reply's text typed and neither sent nor saved is
    // given up, closing or by New, only on a Yes, the question's default being No; New empties all but the
    // sender.
    void openingRefusalsAndQuestions_data()
    {
        QTest::addColumn<QStringList>("accounts");
        QTest::addColumn<int>("folder");
        QTest::addColumn<int>("mode");
        QTest::addColumn<Steps>("steps");
        QTest::addColumn<QString>("said");  // none: no box
        QTest::addColumn<int>("answer");  // -1: a message, else No or Yes to a question
        QTest::addColumn<QString>("shown");  // "" once closed
        const auto add = [](const char *name, const QStringList &accounts, int folder, int mode, const Steps &steps,
                            const QString &said, int answer, const QString &shown) {
            QTest::newRow(name) << accounts << folder << mode << steps << said << answer << shown;
        };
        const QStringList a{u"a@x.com"_s}, ac{u"a@x.com"_s, u"c@x.com"_s}, none;
        const int in = FolderFile::Inbox, fresh = Main::ComposeModes::New, reply = Main::ComposeModes::Reply;
        const QString to = t::CannotSendNoRecipient, from = t::CannotSaveNoSender, close = t::AskDiscardOnClose,
                      renew = t::AskDiscardOnNew;
        const QString empty = t::Caption + u" ; a@x.com ; a@x.com ;  ;  ;  ; - ; "_s;
        const QString toB = t::Caption + u" ;  ;  ; b@y.com ;  ;  ; - ; "_s;
        const QString blank = t::Caption + u" ;  ;  ;  ;  ;  ; - ; "_s, both = u"a@x.com|c@x.com"_s;
        // With a Cc and text above the quote.
        const QString replyWith = t::Caption + u" ; a@x.com ; a@x.com ; bob@y.com ; %1 ; Re:hello ; - ; %2"_s + quoted;
        add("reply from Deleted Items: To is the sender, an empty sender offered too", ac, FolderFile::DeletedItems,
            reply, {}, {}, -1, t::Caption + u" ; a@x.com ; "_s + both + u"| ; bob@y.com ;  ; Re:hello ; - ; "_s + quoted);
        add("forward: To and Cc empty, attachments copied", ac, in, Main::ComposeModes::Forward, {}, {}, -1,
            t::Caption + u" ; a@x.com ; "_s + both + u" ;  ;  ; Fw:hello ; plan.doc(3.00kb)|map.png(1.50kb) ; "_s + quoted);
        add("re-opened draft: its subject as caption, its own sender kept", ac, FolderFile::Drafts,
            Main::ComposeModes::Reopen, {}, {}, -1, u"hello ; bob@y.com ; "_s + both + u" ; a@x.com ; carol@z.com ; hello ; "
                                                    u"plan.doc(3.00kb)|map.png(1.50kb) ; first line\nsecond line"_s);
        add("send with empty To", a, in, fresh, {trigger("mnuMailSend")}, to, -1, empty);
        add("send later with empty To", a, in, fresh, {trigger("mnuMailSendLate")}, to, -1, empty);
        add("send later with empty From", none, in, fresh, {type(To, u"b@y.com"_s), trigger("mnuMailSendLate")}, from, -1,
            toB);
        add("save with empty From", none, in, fresh, {type(To, u"b@y.com"_s), trigger("Save")}, from, -1, toB);
        add("reply with no account: the window stays empty", none, in, reply, {}, t::NoAccountYet, -1, blank);
        add("typed text, Escape answered No", a, in, reply, {type(Body, u"x"_s), key("Escape")}, close, 0,
            replyWith.arg(QString(), u"x"_s));
        add("typed text, closed and answered Yes", a, in, reply, {type(Cc, u"x"_s), trigger("mnuClose")}, close, 1, {});
        add("typed text, New answered No", a, in, reply, {type(Cc, u"cc"_s), trigger("munNewMail")}, renew, 0,
            replyWith.arg(u"cc"_s, QString()));
        add("typed text, New answered Yes", a, in, reply, {type(Cc, u"cc"_s), trigger("munNewMail")}, renew, 1, empty);
    }
    void openingRefusalsAndQuestions()
    {
        QFETCH(int, folder);
        QFETCH(int, mode);
        QFETCH(QString, said);
        QFETCH(int, answer);
        QFETCH(QStringList, accounts);
        if (!accounts.isEmpty())
            putAccounts(*dir, accounts);
        put(*dir, folder, {quotedMail()});
        const QByteArray before = allFiles(*dir);
        if (answer >= 0)
            boxes->expectConfirm(Icon::Exclamation, texts::AppTitle, said, answer == 1);
        else if (!said.isEmpty())
            boxes->expectMessage(Icon::Exclamation, texts::AppTitle, said);
        frmMailEdit *e = openOn(folder, qint16(mode));
        QFETCH(Steps, steps);
        act(e, steps);
        QTEST(e->isVisible() ? shown(e) : QString(), "shown");
        QCOMPARE(allFiles(*dir), before);
    }

    // A window holding unsaved text is not emptied for another message: it says so. Once its text is stored
    // it takes the next message afresh.
    void aBusyWindow()
    {
        putAccounts(*dir, {u"a@x.com"_s});
        put(*dir, FolderFile::Drafts, {mail(u"41"_s)});
        put(*dir, FolderFile::Inbox, {quotedMail()});
        frmMailEdit *e = openOn(FolderFile::Drafts, Main::ComposeModes::Reopen);
        act(e, {type(Subject, u"more"_s)});
        boxes->expectMessage(Icon::Information, texts::AppTitle, t::StillWriting);
        openOn(FolderFile::Inbox, Main::ComposeModes::Reply);
        QCOMPARE(shown(e), u"hello ; a@x.com ; a@x.com ; b@x.com ;  ; hellomore ; - ; body"_s);

        act(e, {trigger("Save")});  // the draft replaced: no box
        openOn(FolderFile::Inbox, Main::ComposeModes::Reply);
        QCOMPARE(e->windowTitle() + e->Text5->text(), t::Caption + u"Re:hello"_s);
        QVERIFY(!e->storedMail().isSet());
    }
};

QTEST_MAIN(tst_compose)
#include "tst_compose.moc"
