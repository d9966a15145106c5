// The compose window: what each opening fills in, what its three ways of
// storing write (and what they never touch), its refusals and questions,
// attachments and closing.

#include "store/clock.h"
#include "store/folders.h"
#include "store/state.h"
#include "texts.h"
#include "ui/common/forms.h"
#include "ui/message/frmMailEdit.h"
#include "ui/sendrecv/frmSendAndReceive.h"
#include "windows.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
using Icon = Prompter::Icon;
namespace t = texts::compose;

namespace {
const QString Stamp = u"24-07-09 14:05"_s;

EmailRec quotedMail()
{
    EmailRec m = mail(u"31000001"_s, u"bob@y.com"_s, u"a@x.com"_s, u"hello"_s, true);
    m.alsoto = u"carol@z.com"_s;
    m.content = u"first line\r\nsecond line"_s;
    m.attachment = u"plan.doc(3.00kb) map.png(1.50kb)"_s;
    return m;
}

QString quoted(const QString &subject)
{
    return u"\n\n-----Original Message-----\nFrom:bob@y.com\nTo:a@x.com\nSent:24-05-13 09:12\n"
           u"Subject:"_s + subject + u"\n\n> first line\nsecond line"_s;
}

QString entries(const QComboBox *box)
{
    QStringList list;
    for (int i = 0; i < box->count(); ++i)
        list << box->itemText(i);
    return list.join(u'|');
}

QString items(const QListWidget *list)
{
    QStringList out;
    for (int i = 0; i < list->count(); ++i)
        out << list->item(i)->text();
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
    void init()
    {
        begin();
        SetClock([] { return QDateTime(QDate(2024, 7, 9), QTime(14, 5)); });
    }
    void cleanup()
    {
        SetClock({});
        end();
    }

    void opening_data();
    void opening();
    void newMessageStoredExactly();
    void storing_data();
    void storing();
    void tooLongForTheFile_data();
    void tooLongForTheFile();
    void refusals_data();
    void refusals();
    void anotherMessageWhileWriting();
    void aNewUserSendsThroughTheWizard();
    void attachments();
    void closing_data();
    void closing();

private:
    QTemporaryDir attachDir;
};

void tst_compose::opening_data()
{
    QTest::addColumn<int>("folder");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("subjectIn");  // the stored subject
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("entries");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("cc");
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("attachments");
    const QString accounts = u"a@x.com|c@x.com"_s;
    QTest::newRow("new: empty fields, the first account sends")
        << 0 << 1 << u"hello"_s << t::Caption << u"a@x.com"_s << accounts << QString()
        << QString() << QString() << QString() << QString();
    QTest::newRow("reply to a reply: Re:re:, To is the sender, quoted block, no Cc")
        << 0 << 2 << u"re:hello"_s << t::Caption << u"a@x.com"_s << accounts << u"bob@y.com"_s
        << QString() << u"Re:re:hello"_s << quoted(u"re:hello"_s) << QString();
    QTest::newRow("reply from Deleted Items offers an empty sender too")
        << 3 << 2 << u"hello"_s << t::Caption << u"a@x.com"_s << accounts + u'|' << u"bob@y.com"_s
        << QString() << u"Re:hello"_s << quoted(u"hello"_s) << QString();
    QTest::newRow("forward: Fw:, To and Cc empty, attachments copied")
        << 0 << 3 << u"hello"_s << t::Caption << u"a@x.com"_s << accounts << QString() << QString()
        << u"Fw:hello"_s << quoted(u"hello"_s) << u"plan.doc(3.00kb)|map.png(1.50kb)"_s;
    QTest::newRow("re-opened draft: its subject as caption, its own sender kept")
        << 4 << 0 << u"hello"_s << u"hello"_s << u"bob@y.com"_s << accounts << u"a@x.com"_s
        << u"carol@z.com"_s << u"hello"_s << u"first line\nsecond line"_s
        << u"plan.doc(3.00kb)|map.png(1.50kb)"_s;
}

void tst_compose::opening()
{
    QFETCH(int, folder);
    QFETCH(int, mode);
    QFETCH(QString, subjectIn);
    putAccounts(*dir, {u"a@x.com"_s, u"c@x.com"_s});
    EmailRec m = quotedMail();
    m.subject = subjectIn;
    put(*dir, folder, {m});
    const QByteArray before = allFiles(*dir);

    frmMailEdit *e = openOn(folder, qint16(mode));

    QVERIFY(e->isVisible());
    QTEST(e->windowTitle(), "caption");
    QTEST(e->Combo3->currentText(), "from");
    QTEST(entries(e->Combo3), "entries");
    QTEST(e->Text3->text(), "to");
    QTEST(e->Text4->text(), "cc");
    QTEST(e->Text5->text(), "subject");
    QTEST(e->Text1->toPlainText(), "body");
    QTEST(items(e->ListView1), "attachments");
    QCOMPARE(e->ListView1->isVisible(), e->ListView1->count() > 0);
    QCOMPARE(allFiles(*dir), before);
}

void tst_compose::newMessageStoredExactly()
{
    putAccounts(*dir, {u"ann@x.com"_s});
    QFile a(attachDir.filePath(u"A.txt"_s)), b(attachDir.filePath(u"b.txt"_s));
    QVERIFY(a.open(QIODevice::WriteOnly) && a.write(QByteArray(1024, 'a')) == 1024);
    QVERIFY(b.open(QIODevice::WriteOnly) && b.write(QByteArray(2048, 'b')) == 2048);
    a.close();
    b.close();
    ScriptedFileChooser files;
    files.answer(a.fileName());
    files.answer(b.fileName());

    frmMailEdit *e = openOn(FolderFile::Inbox, Main::ComposeModes::New);
    QTest::keyClicks(e->Text3, u"Bob@Y.com"_s);
    QTest::keyClicks(e->Text4, u"Carol@Z.com  "_s);
    QTest::keyClicks(e->Text5, u"Test"_s);
    QTest::keyClicks(e->Text1, u"Hello World"_s);
    QTest::keyClick(e->Text1, Qt::Key_Return);
    e->Text1->insertPlainText(u"第二行 Line"_s);  // as an input method enters it
    clickButton(e->Toolbar1, e->toolbarButton(frmMailEdit::tbAttach));
    e->InsertAdd->trigger();
    QCOMPARE(files.lastFilter, t::AttachFilter);
    QCOMPARE(items(e->ListView1), u"A.txt(1.00KB)|b.txt(2.00KB)"_s);

    boxes->expectMessage(Icon::Information, texts::AppTitle, t::SendLaterNotice);
    e->mnuMailSendLate->trigger();

    const QList<EmailRec> outbox = stored(FolderFile::Outbox);
    QCOMPARE(outbox.size(), 1);
    QVERIFY(outbox[0].id.toInt() >= 10000000 && outbox[0].id.toInt() <= 99999999);
    EmailRec expected = mail(outbox[0].id, u"ann@x.com"_s, u"bob@y.com"_s, u"test"_s);
    expected.alsoto = u"carol@z.com"_s;
    expected.content = u"hello world\r\n第二行 line"_s;
    expected.datetime = Stamp;
    expected.attachment = u" a.txt(1.00kb) b.txt(2.00kb)"_s;
    QCOMPARE(dir->readBytes(u"send_c.dat"_s), FolderBytes({expected}));
    QVERIFY(!e->isVisible());  // closed after storing
}

void tst_compose::storing_data()
{
    QTest::addColumn<int>("folder");   // holding the quoted or re-opened message
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("commands");  // in order; a "+" types a word first
    QTest::addColumn<QString>("boxes");     // the boxes shown, in order
    QTest::addColumn<QString>("drafts");    // subjects; "<same>" the quoted one, "-" none
    QTest::addColumn<QString>("outbox");
    QTest::addColumn<QString>("sent");
    // Every row starts with the quoted message in its folder and Drafts
    // empty unless the row's folder is Drafts.
    QTest::newRow("reply saved twice: one draft, replaced; the Inbox untouched")
        << 0 << 2 << u"save +more save"_s << u"draft"_s << u"re:hellomore"_s << QString() << QString();
    QTest::newRow("new message saved twice: one draft")
        << 0 << 1 << u"+new save +more save"_s << u"draft"_s << u"newmore"_s << QString() << QString();
    QTest::newRow("forward saved: a new draft; the forwarded message untouched")
        << 0 << 3 << u"save"_s << u"draft"_s << u"fw:hello"_s << QString() << QString();
    QTest::newRow("re-opened draft saved replaces itself, no box")
        << 4 << 0 << u"+more save"_s << QString() << u"hellomore"_s << QString() << QString();
    QTest::newRow("re-opened draft sent now leaves Drafts with its id")
        << 4 << 0 << u"send"_s << QString() << QString() << QString() << u"<same>"_s;
    QTest::newRow("saved, then sent: the draft leaves Drafts")
        << 0 << 3 << u"+x@y.cn save send"_s << u"draft"_s << QString() << QString() << u"fw:hello"_s;
    QTest::newRow("To without @: name check, the message waits in the Outbox")
        << 0 << 1 << u"+bad send"_s << u"names"_s << QString() << u"-"_s << QString();
    QTest::newRow("reply sent later: into the Outbox")
        << 0 << 2 << u"later"_s << u"notice"_s << QString() << u"re:hello"_s << QString();
}

void tst_compose::storing()
{
    QFETCH(int, folder);
    QFETCH(int, mode);
    QFETCH(QString, commands);
    QFETCH(QString, boxes);
    putAccounts(*dir, {u"a@x.com"_s});
    put(*dir, folder, {quotedMail()});
    const QByteArray quotedFile = dir->readBytes(FolderFile::fileName(folder));
    const QMap<QString, std::pair<QString, QString>> box = {
        {u"draft"_s, {t::DraftSavedTitle, t::DraftSaved}},
        {u"names"_s, {texts::NameCheckTitle, texts::NameCheckFailed}},
        {u"notice"_s, {texts::AppTitle, t::SendLaterNotice}}};
    for (const QString &b : boxes.split(u' ', Qt::SkipEmptyParts))
        this->boxes->expectMessage(Icon::Information, box[b].first, box[b].second);

    frmMailEdit *e = openOn(folder, qint16(mode));
    for (const QString &c : commands.split(u' ')) {
        if (c.startsWith(u'+')) {
            // A word for the subject, or for To when the message has none.
            if (e->Text3->text().isEmpty())
                QTest::keyClicks(e->Text3, c.mid(1) == u"new" ? u"b@y.cn"_s : c.mid(1));
            else
                QTest::keyClicks(e->Text5, c.mid(1));
            if (c == u"+new")
                QTest::keyClicks(e->Text5, u"new"_s);
        } else if (c == u"save") {
            e->Save->trigger();
        } else if (c == u"send") {
            clickButton(e->Toolbar1, e->toolbarButton(frmMailEdit::tbSend));
        } else {
            e->mnuMailSendLate->trigger();
        }
    }
    QTRY_VERIFY(!forms::SendAndReceive()->isVisible());

    const auto subjects = [&](int f) {
        QStringList out;
        for (const EmailRec &m : stored(f))
            out << (m.id == quotedMail().id && m.subject == u"hello" ? u"<same>"_s
                    : m.subject.isEmpty()                             ? u"-"_s
                                                                      : m.subject);
        return out.join(u'|');
    };
    if (folder != FolderFile::Drafts)
        QCOMPARE(dir->readBytes(FolderFile::fileName(folder)), quotedFile);
    QTEST(subjects(FolderFile::Drafts), "drafts");
    QTEST(subjects(FolderFile::Outbox), "outbox");
    QTEST(subjects(FolderFile::SentItems), "sent");
}

void tst_compose::tooLongForTheFile_data()
{
    QTest::addColumn<bool>("goOn");
    QTest::newRow("No goes back: nothing stored, the whole text kept") << false;
    QTest::newRow("Yes stores what fits") << true;
}

void tst_compose::tooLongForTheFile()
{
    QFETCH(bool, goOn);
    putAccounts(*dir, {u"a@x.com"_s});
    frmMailEdit *e = openOn(FolderFile::Inbox, Main::ComposeModes::New);
    const QString body = u"中"_s.repeated(1100);
    e->Text1->setPlainText(body);
    boxes->expectConfirm(Icon::Exclamation, texts::AppTitle,
                         t::TooLongForFile.arg(t::TooLongLine.arg(t::FieldNames[4]).arg(2200).arg(2045).arg(1022)),
                         goOn);

    if (goOn)
        boxes->expectMessage(Icon::Information, t::DraftSavedTitle, t::DraftSaved);
    e->Save->trigger();

    QCOMPARE(boxes->defaults().value(0), Prompter::Default::No);
    QCOMPARE(e->Text1->toPlainText(), body);
    QCOMPARE(stored(FolderFile::Drafts).size(), goOn ? 1 : 0);
    if (goOn)
        QCOMPARE(stored(FolderFile::Drafts).first().content, body.left(1022));
}

void tst_compose::refusals_data()
{
    QTest::addColumn<bool>("account");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("text");
    QTest::newRow("send with empty To") << true << 1 << QString() << u"send"_s
                                        << t::CannotSendNoRecipient;
    QTest::newRow("send tests To before From") << false << 1 << QString() << u"send"_s
                                               << t::CannotSendNoRecipient;
    QTest::newRow("send later with empty To") << true << 1 << QString() << u"later"_s
                                              << t::CannotSendNoRecipient;
    QTest::newRow("send later with empty From") << false << 1 << u"b@y.com"_s << u"later"_s
                                                << t::CannotSaveNoSender;
    QTest::newRow("save with empty From") << false << 1 << u"b@y.com"_s << u"save"_s
                                          << t::CannotSaveNoSender;
    QTest::newRow("reply with no account") << false << 2 << QString() << QString()
                                           << t::NoAccountYet;
}

void tst_compose::refusals()
{
    QFETCH(bool, account);
    QFETCH(int, mode);
    QFETCH(QString, to);
    QFETCH(QString, command);
    QFETCH(QString, text);
    if (account)
        putAccounts(*dir, {u"a@x.com"_s});
    put(*dir, FolderFile::Inbox, {quotedMail()});
    const QByteArray before = allFiles(*dir);
    boxes->expectMessage(Icon::Exclamation, texts::AppTitle, text);

    frmMailEdit *e = openOn(FolderFile::Inbox, qint16(mode));
    QTest::keyClicks(e->Text3, to);
    if (command == u"send")
        e->mnuMailSend->trigger();
    else if (command == u"later")
        e->mnuMailSendLate->trigger();
    else if (command == u"save")
        e->Save->trigger();

    QVERIFY(e->isVisible());
    QCOMPARE(e->Text3->text(), mode == 2 ? QString() : to);
    QCOMPARE(allFiles(*dir), before);
}

void tst_compose::anotherMessageWhileWriting()
{
    putAccounts(*dir, {u"a@x.com"_s});
    put(*dir, FolderFile::Inbox, {quotedMail()});
    frmMailEdit *e = openOn(FolderFile::Inbox, Main::ComposeModes::New);
    QTest::keyClicks(e->Text1, u"unsaved words"_s);

    // Another opening does not empty a window with unsaved text ...
    boxes->expectMessage(Icon::Information, texts::AppTitle, t::StillWriting);
    openOn(FolderFile::Inbox, Main::ComposeModes::Reply);
    QCOMPARE(e->Text1->toPlainText(), u"unsaved words"_s);
    QCOMPARE(int(Main::ComposeMode), int(Main::ComposeModes::New));

    // ... but one whose text is stored takes the new message.
    QTest::keyClicks(e->Text3, u"b@y.cn"_s);
    boxes->expectMessage(Icon::Information, t::DraftSavedTitle, t::DraftSaved);
    e->Save->trigger();
    openOn(FolderFile::Inbox, Main::ComposeModes::Reply);
    QCOMPARE(e->Text5->text(), u"Re:hello"_s);
    QVERIFY(!e->storedMail().isSet());

    // New inside the window keeps the sender and the attachments.
    e->munNewMail->trigger();
    QCOMPARE(int(Main::ComposeMode), int(Main::ComposeModes::New));
    QCOMPARE(e->Text1->toPlainText() + e->Text3->text() + e->Text5->text(), QString());
    QCOMPARE(e->Combo3->currentText(), u"a@x.com"_s);
}

// Send with no account at all calls up the wizard; the message leaves,
// from the account just made, only once it exists.
void tst_compose::aNewUserSendsThroughTheWizard()
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

void tst_compose::attachments()
{
    putAccounts(*dir, {u"a@x.com"_s});
    QFile f(attachDir.filePath(u"report.doc"_s));
    QVERIFY(f.open(QIODevice::WriteOnly) && f.write(QByteArray(12800, 'r')) == 12800);
    f.close();
    ScriptedFileChooser files;
    frmMailEdit *e = openOn(FolderFile::Inbox, Main::ComposeModes::New);

    e->InsertAdd->trigger();  // cancelled: nothing added
    QVERIFY(!e->attachmentRowShown());
    files.answer(f.fileName());
    files.answer(f.fileName());
    e->InsertAdd->trigger();
    e->InsertAdd->trigger();
    QCOMPARE(items(e->ListView1), u"report.doc(12.50KB)|report.doc(12.50KB)"_s);
    QVERIFY(e->ListView1->isVisible() && e->Label5->isVisible());

    // A right-button release over the list opens the pop-up; Delete from
    // the keyboard removes as its entry does.
    const QRect first = e->ListView1->visualItemRect(e->ListView1->item(0));
    QTest::mouseClick(e->ListView1->viewport(), Qt::LeftButton, {}, first.center());
    QTest::mouseRelease(e->ListView1->viewport(), Qt::RightButton, {}, first.center());
    QTRY_VERIFY(e->popmnu1->isVisible());
    e->popmnu1->close();
    e->popmnuDelete->trigger();
    QCOMPARE(e->ListView1->count(), 1);
    e->ListView1->setCurrentRow(0);
    QTest::keyClick(e->ListView1, Qt::Key_Delete);
    QCOMPARE(e->ListView1->count(), 0);
    QVERIFY(!e->attachmentRowShown());
}

void tst_compose::closing_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<bool>("typed");
    QTest::addColumn<int>("answer");  // -1 no question
    QTest::addColumn<bool>("closes");
    QTest::newRow("untouched window closes without a question") << u"close"_s << false << -1 << true;
    QTest::newRow("typed text asks; Yes drops it") << u"close"_s << true << 1 << true;
    QTest::newRow("typed text asks; No keeps the window") << u"close"_s << true << 0 << false;
    QTest::newRow("Escape asks as well") << u"escape"_s << true << 0 << false;
    QTest::newRow("File, Close") << u"menu"_s << false << -1 << true;
}

void tst_compose::closing()
{
    QFETCH(QString, how);
    QFETCH(bool, typed);
    QFETCH(int, answer);
    putAccounts(*dir, {u"a@x.com"_s});
    frmMailEdit *e = openOn(FolderFile::Inbox, Main::ComposeModes::New);
    if (typed)
        QTest::keyClicks(e->Text1, u"x"_s);
    if (answer >= 0)
        boxes->expectConfirm(Icon::Exclamation, texts::AppTitle, t::AskDiscardOnClose, answer);

    if (how == u"escape")
        QTest::keyClick(e->Text1, Qt::Key_Escape);
    else if (how == u"menu")
        e->mnuClose->trigger();
    else
        e->close();

    QTEST(!e->isVisible(), "closes");
    if (answer >= 0)
        QCOMPARE(boxes->defaults().value(0), Prompter::Default::No);
}

QTEST_MAIN(tst_compose)
#include "tst_compose.moc"
