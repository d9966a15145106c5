// Every window from the keyboard and a screen reader, in Chinese; then a
// new trainee's whole road with the keyboard alone: two accounts through the
// wizard, a message from one to the other, received, read and answered,
// checked on the screen and in the files.

#include "ui/common/application.h"
#include "ui/common/msgboxprompter.h"
#include "ui/exercise/frmExercise.h"
#include "windows.h"

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;

namespace {
// Every button of a window with a text says it in Chinese.
void buttonsSpeakChinese(QWidget *window)
{
    static const QRegularExpression chinese(u"[\\x{3000}-\\x{9fff}]"_s);
    for (QAbstractButton *b : window->findChildren<QAbstractButton *>())
        QVERIFY2(!b->isVisible() || b->text().isEmpty() || b->text().contains(chinese), qPrintable(b->text()));
}

// The controls of a window a user can Tab to.
QList<QWidget *> inputs(QWidget *window)
{
    QList<QWidget *> found;
    for (QWidget *w : window->findChildren<QWidget *>()) {
        // Of a group of options only the one chosen is a Tab stop.
        const auto *option = qobject_cast<QRadioButton *>(w);
        if (w->isVisible() && w->isEnabled() && (w->focusPolicy() & Qt::TabFocus) && !w->isWindow()
            && w->window() == window && !w->focusProxy() && (!option || option->isChecked()))
            found << w;
    }
    return found;
}

// The window the user returns to: offscreen, a closed modal window does
// not hand the activation back by itself.
bool activate(QWidget *window)
{
    window->activateWindow();
    return QTest::qWaitForWindowActive(window);
}

// The six folders, each as "subject:isnew" per message: Inbox, Outbox,
// Sent Items, Deleted Items, Drafts, queue.
QString folders()
{
    QStringList all;
    for (int f = 0; f < FolderFile::Count; ++f) {
        QStringList one;
        for (const EmailRec &m : stored(f))
            one << m.subject + u':' + m.isnew;
        all << one.join(u',');
    }
    return all.join(u" | "_s);
}

// The wizard's five pages, answered from the keyboard; Alt+N before a name
// neither goes on nor types. With a detour, Back from page 4 finds page 3
// as it was left and page 4 empty again.
void wizard(ModalScript &script, const QString &name, const QString &address, bool detour = false)
{
    QStringList pages = {u"Alt+N \"%1\" Return"_s.arg(name), u"\"%1\" Return"_s.arg(address),
                         u"\"pop.x.cn\" Tab \"smtp.x.cn\" Return"_s,
                         u"\"%1\" Tab \"pw\" Return"_s.arg(name), u"Return"_s};
    if (detour)
        pages.insert(3, u"\"x\" Alt+B"_s), pages.insert(4, u"Return"_s);
    for (int i = 0; i < pages.size(); ++i) {
        const QString keys = pages[i];
        const int page = i + 1 - (detour && i >= 4 ? 2 : 0);
        script.on(u"frmMainBoxAdd%1"_s.arg(page), [keys](QWidget *w) {
            QVERIFY(activate(w));
            const auto *first = w->findChild<QLineEdit *>(u"Text1"_s);
            QVERIFY(!first || first->text().isEmpty() || first->text() == u"pop.x.cn");
            press(keys);
        });
    }
    script.start();
}
}  // namespace

class tst_keyboard : public WindowTest
{
    Q_OBJECT

private slots:
    void initTestCase() { InstallChineseTranslations(); }

    void everyWindow_data()
    {
        QTest::addColumn<QString>("window");
        for (const char *name : {"frmMain", "frmMailEdit", "frmMailRead", "frmSendAndReceive",
                                 "frmMailBox", "frmMainBoxAdd1", "frmMainBoxAdd2", "frmMainBoxAdd3",
                                 "frmMainBoxAdd4", "frmMainBoxAdd5", "frmMailBoxProp", "frmAbout", "frmExercise"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    void everyWindow()
    {
        QFETCH(QString, window);
        putAccounts(*dir, {u"a@x.com"_s});
        EmailRec m = mail(u"1"_s, u"b@y.cn"_s, u"a@x.com"_s, u"s"_s, true);
        m.attachment = u"a.doc(1.00kb)"_s;
        put(*dir, FolderFile::Inbox, {m});
        QWidget *w = openWindow(window);
        QVERIFY(w->objectName() == window && !(w->windowFlags() & Qt::WindowContextHelpButtonHint));
        const QList<QWidget *> all = inputs(w);

        // A name for every control a screen reader can land on, and for the
        // field inside an editable box, where it lands then.
        for (QWidget *c : all) {
            QAccessibleInterface *a = QAccessible::queryAccessibleInterface(c), *inside = a ? a->focusChild() : nullptr;
            QVERIFY2(a && !a->text(QAccessible::Name).isEmpty() && (!inside || !inside->text(QAccessible::Name).isEmpty()),
                     qPrintable(c->objectName()));
        }
        buttonsSpeakChinese(w);

        // Tab goes round every input once.
        if (all.isEmpty())
            return;
        all.first()->setFocus(Qt::TabFocusReason);
        QList<QWidget *> chain;
        for (QWidget *f = all.first(); f && !chain.contains(f) && chain.size() < 3 * all.size();
             f = QApplication::focusWidget())
            chain << f, QTest::keyClick(f, Qt::Key_Tab);
        for (QWidget *c : all)
            QVERIFY2(chain.contains(c), qPrintable(c->objectName()));
    }

    void boxesAndChoosersSpeakChinese()
    {
        // The program's own boxes: Chinese buttons, Enter on the safe answer.
        QStringList buttons;
        QTimer::singleShot(0, this, [&] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            QVERIFY(box);
            for (QAbstractButton *b : box->buttons())
                buttons << b->text();
            QTest::keyClick(box, Qt::Key_Return);
        });
        QVERIFY(!MessageBoxPrompter().confirm(Icon::Exclamation, texts::AppTitle, texts::AskDeleteForGood,
                                              Prompter::Default::No));
        buttons.sort();
        QCOMPARE(buttons, (QStringList{texts::ButtonNo, texts::ButtonYes}));

        // The real file chooser speaks the toolkit's Chinese, sizes in its
        // list included, and offers the name suggested and the filter as a
        // list of types.
        QString offered;
        dir->writeBytes(u"b.doc"_s, QByteArray(373, 'b'));
        QTimer::singleShot(0, this, [&] {
            auto *chooser = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            QVERIFY(chooser);
            buttonsSpeakChinese(chooser);
            chooser->setDirectory(dir->path());
            const auto *files = chooser->findChild<QFileSystemModel *>();
            const QModelIndex size = files->index(dir->filePath(u"b.doc"_s), 1);
            static_cast<void>(QTest::qWaitFor([&] { return files->data(size).isValid(); }));
            offered = chooser->findChild<QLineEdit *>(u"fileNameEdit"_s)->text() + u'|'
                + chooser->nameFilters().join(u'|') + u'|' + files->data(size).toString();
            chooser->reject();
        });
        QCOMPARE(DialogFileChooser().saveFileName(nullptr, texts::read::SaveTitle, u"a.doc"_s,
                                                  texts::read::SaveFilter), QString());
        QCOMPARE(offered, u"a.doc|All Files(*.*)|373 字节"_s);
    }

    void byKeyboardAlone()
    {
        frmMain *w = mainOn();
        QVERIFY(activate(w));

        // 1. CTRL+M with no account: the wizard sets up the first, the run goes on.
        ModalScript first;
        wizard(first, u"ann"_s, u"Ann@x.cn"_s);
        press(u"Ctrl+M"_s);
        QVERIFY2(first.finished(), first.report());
        QTRY_VERIFY(!forms::SendAndReceive()->isVisible());

        // 2. Tools, Accounts: the dialog; the add button's menu, Mail: the
        // wizard again; Escape closes the dialog.
        QVERIFY(activate(w));
        press(u"Alt+T A"_s);
        frmMailBox *accounts = forms::MailBox();
        QTRY_VERIFY(accounts->isActiveWindow());
        accounts->btnAddNew->setFocus();  // its Tab stops are everyWindow's
        ModalScript second;
        wizard(second, u"bob"_s, u"bob@x.cn"_s, true);
        press(u"Space"_s);
        QTRY_VERIFY(accounts->btMnu->isVisible());
        press(u"Down Return"_s);
        QVERIFY2(second.finished(), second.report());
        QCOMPARE(accounts->ListView1->topLevelItemCount(), 2);
        QVERIFY(activate(accounts));
        press(u"Escape"_s);
        QVERIFY(!accounts->isVisible());

        // 3. File, New, Mail: Alt and a caption's letter reach its field, an
        // unused one (Alt+Q) types nothing; write to Bob, CTRL+S saves, send it.
        QVERIFY(activate(w));
        press(u"Alt+F N M"_s);
        frmMailEdit *e = forms::MailEdit();
        QTRY_VERIFY(e->isActiveWindow());
        QCOMPARE(e->Combo3->currentText(), u"ann@x.cn"_s);
        boxes->expectMessage(Icon::Information, texts::compose::DraftSavedTitle, texts::compose::DraftSaved);
        press(u"Alt+S Alt+Q \"Hello\" Tab \"Hi Bob\" Alt+D \"bob@x.cn\" Ctrl+S"_s);  // the box comes once it is saved
        press(u"Alt+F M"_s);
        QTRY_VERIFY(!e->isVisible());
        QCOMPARE(folders(), u" |  | hello:0 |  |  | hello:1"_s);

        // 4. CTRL+M receives it; the Inbox turns bold.
        QVERIFY(activate(w));
        press(u"Ctrl+M"_s);
        QTRY_VERIFY(!forms::SendAndReceive()->isVisible());
        QCOMPARE(w->node(Node::Inbox)->text(0), u"收件箱(1)"_s);

        // 5. Into the tree, down to the Inbox, into its list, choose the
        // message and open it.
        QVERIFY(activate(w));
        w->TreeView1->setFocus();
        press(u"Home Down Down Return Down Return"_s);
        frmMailRead *r = forms::MailRead();
        QTRY_VERIFY(r->isActiveWindow());
        QVERIFY(r->Label8->text() == u"hello" && !r->lvAddfile->isVisible());  // no attachment row
        QCOMPARE(w->node(Node::Inbox)->text(0), u"收件箱"_s);

        // 6. CTRL+R answers it; the reply goes out later from the File menu.
        press(u"Ctrl+R"_s);
        QTRY_VERIFY(e->isActiveWindow());
        QCOMPARE(e->Text5->text(), u"Re:hello"_s);
        boxes->expectMessage(Icon::Information, texts::AppTitle, texts::compose::SendLaterNotice);
        // Alt+F opens the File menu on New (&N); the next N is Send Later (&N).
        press(u"Alt+F N Return"_s);
        QTRY_VERIFY(!e->isVisible());
        QCOMPARE(folders(), u"hello:0 | re:hello:0 | hello:0 |  |  | "_s);
    }
};

// On the program's own application object, which sets the language the
// toolkit's dialogs format with.
int main(int argc, char *argv[])
{
    QuillpostApplication app(argc, argv);
    tst_keyboard test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_keyboard.moc"
