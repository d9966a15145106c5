// Every window and box from the keyboard, with a screen reader, in
// Chinese: each control that takes the focus has a name, Tab reaches every
// enabled input in reading order, no button speaks English, mnemonics and
// shortcuts do what their captions say, and Alt never types.

#include "store/folders.h"
#include "texts.h"
#include "ui/about/frmAbout.h"
#include "ui/accounts/frmMailBox.h"
#include "ui/accounts/frmMailBoxProp.h"
#include "ui/accounts/frmMainBoxAdd1.h"
#include "ui/accounts/frmMainBoxAdd2.h"
#include "ui/accounts/frmMainBoxAdd3.h"
#include "ui/accounts/frmMainBoxAdd4.h"
#include "ui/accounts/frmMainBoxAdd5.h"
#include "ui/common/application.h"
#include "ui/common/forms.h"
#include "ui/common/msgboxprompter.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
#include "ui/message/frmMailEdit.h"
#include "ui/message/frmMailRead.h"
#include "ui/sendrecv/frmSendAndReceive.h"
#include "windows.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;

namespace {
bool hasChinese(const QString &text)
{
    for (QChar c : text) {
        if (c.unicode() >= 0x3000 && c.unicode() <= 0x9FFF)
            return true;
    }
    return false;
}

// The controls of a window a user can Tab to.
QList<QWidget *> inputs(QWidget *window)
{
    QList<QWidget *> found;
    for (QWidget *w : window->findChildren<QWidget *>()) {
        // Of a group of options only the one chosen is a Tab stop.
        const auto *option = qobject_cast<QRadioButton *>(w);
        if (w->isVisible() && w->isEnabled() && (w->focusPolicy() & Qt::TabFocus)
            && !w->isWindow() && w->window() == window && !w->focusProxy()
            && !(option && !option->isChecked()))
            found << w;
    }
    return found;
}

// Shows a window in the state a user sees most of it in.
QWidget *shown(const QString &name)
{
    QWidget *w = nullptr;
    if (name == u"frmMain") {
        w = mainOn(Node::Inbox, 0);
    } else if (name == u"frmMailEdit") {
        frmMailEdit::openAs(2, {FolderFile::Inbox, 0, stored(FolderFile::Inbox).first()});
        w = forms::MailEdit();
    } else if (name == u"frmMailRead") {
        frmMailRead::open({FolderFile::Inbox, 0, stored(FolderFile::Inbox).first()});
        w = forms::MailRead();
    } else if (name == u"frmSendAndReceive") {
        frmSendAndReceive::start(1, false);
        w = forms::SendAndReceive();
    } else {
        const QHash<QString, QWidget *(*)()> dialogs = {
            {u"frmMailBox"_s, [] { return static_cast<QWidget *>(forms::MailBox()); }},
            {u"frmMainBoxAdd1"_s, [] { return static_cast<QWidget *>(forms::MainBoxAdd1()); }},
            {u"frmMainBoxAdd2"_s, [] { return static_cast<QWidget *>(forms::MainBoxAdd2()); }},
            {u"frmMainBoxAdd3"_s, [] { return static_cast<QWidget *>(forms::MainBoxAdd3()); }},
            {u"frmMainBoxAdd4"_s, [] { return static_cast<QWidget *>(forms::MainBoxAdd4()); }},
            {u"frmMainBoxAdd5"_s, [] { return static_cast<QWidget *>(forms::MainBoxAdd5()); }},
            {u"frmMailBoxProp"_s, [] { return static_cast<QWidget *>(forms::MailBoxProp()); }},
            {u"frmAbout"_s, [] { return static_cast<QWidget *>(forms::About()); }}};
        w = dialogs[name]();
        w->show();
    }
    QApplication::setActiveWindow(w);
    return w;
}
}  // namespace

class tst_keyboard : public WindowTest
{
    Q_OBJECT

private slots:
    void initTestCase() { InstallChineseTranslations(); }
    void init()
    {
        begin();
        putAccounts(*dir, {u"a@x.com"_s});
        EmailRec m = mail(u"1"_s, u"b@y.cn"_s, u"a@x.com"_s, u"s"_s, true);
        m.attachment = u"a.doc(1.00kb)"_s;
        put(*dir, FolderFile::Inbox, {m});
    }
    void cleanup() { end(); }

    void everyWindow_data();
    void everyWindow();
    void boxesAndChoosersSpeakChinese();
    void mnemonicsAndAltKeys();
};

void tst_keyboard::everyWindow_data()
{
    QTest::addColumn<QString>("window");
    for (const char *name : {"frmMain", "frmMailEdit", "frmMailRead", "frmSendAndReceive",
                             "frmMailBox", "frmMainBoxAdd1", "frmMainBoxAdd2", "frmMainBoxAdd3",
                             "frmMainBoxAdd4", "frmMainBoxAdd5", "frmMailBoxProp", "frmAbout"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_keyboard::everyWindow()
{
    QFETCH(QString, window);
    QWidget *w = shown(window);
    QVERIFY(w->isVisible());
    const QList<QWidget *> all = inputs(w);

    // A name for every control a screen reader can land on, and Chinese on
    // every button that has a text.
    for (QWidget *c : all) {
        QAccessibleInterface *a = QAccessible::queryAccessibleInterface(c);
        QVERIFY2(a && !a->text(QAccessible::Name).isEmpty(), qPrintable(c->objectName()));
    }
    for (QAbstractButton *b : w->findChildren<QAbstractButton *>()) {
        if (b->isVisible() && !b->text().isEmpty())
            QVERIFY2(hasChinese(b->text()), qPrintable(b->text()));
    }

    // Tab goes round every input once, never back up or up-left.
    if (all.isEmpty())
        return;
    all.first()->setFocus(Qt::TabFocusReason);
    QList<QWidget *> chain;
    for (int i = 0; i < 3 * all.size() && !chain.contains(QApplication::focusWidget()); ++i) {
        QWidget *f = QApplication::focusWidget();
        QVERIFY2(f, qPrintable(window));
        chain << f;
        QTest::keyClick(f, Qt::Key_Tab);
    }
    for (QWidget *c : all)
        QVERIFY2(chain.contains(c), qPrintable(c->objectName()));
    // Read as the window is read: down, or on to the next column; never
    // back up within a column or up and to the left.
    const auto place = [w](QWidget *c) { return QRect(c->mapTo(w, QPoint()), c->size()); };
    int start = 0;  // the round begins at the top-left stop
    for (int i = 1; i < chain.size(); ++i) {
        const QRect r = place(chain[i]), best = place(chain[start]);
        if (std::pair(r.top(), r.left()) < std::pair(best.top(), best.left()))
            start = i;
    }
    for (int i = 0; i + 1 < chain.size(); ++i) {
        const int a = (start + i) % int(chain.size()), b = (start + i + 1) % int(chain.size());
        const QRect ra = place(chain[a]), rb = place(chain[b]);
        const bool above = rb.bottom() < ra.top();
        const bool backwards = above && rb.left() < ra.right();
        QVERIFY2(!backwards, qPrintable(chain[a]->objectName() + u" -> "_s + chain[b]->objectName()));
    }
}

void tst_keyboard::boxesAndChoosersSpeakChinese()
{
    // The program's own boxes: Chinese buttons, Enter on the safe answer.
    MessageBoxPrompter real;
    QStringList buttons;
    QMessageBox::StandardButton enter = QMessageBox::NoButton;
    QTimer::singleShot(0, this, [&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(box);
        for (QAbstractButton *b : box->buttons())
            buttons << b->text();
        enter = box->standardButton(box->defaultButton());
        box->grab().save(QString::fromLocal8Bit(qgetenv("QUILLPOST_SHOTS")) + u"/messagebox.png"_s);
        QTest::keyClick(box, Qt::Key_Return);
    });
    QVERIFY(!real.confirm(Prompter::Icon::Exclamation, texts::AppTitle, texts::AskDeleteForGood,
                          Prompter::Default::No));
    buttons.sort();
    QCOMPARE(buttons.join(u'|'), (QStringList{texts::ButtonNo, texts::ButtonYes}.join(u'|')));
    QCOMPARE(enter, QMessageBox::No);

    // The toolkit's own file chooser, where its translations are there.
    QFileDialog chooser(nullptr, texts::compose::AttachTitle);
    chooser.setOption(QFileDialog::DontUseNativeDialog);
    chooser.show();
    for (QAbstractButton *b : chooser.findChildren<QAbstractButton *>()) {
        if (b->isVisible() && !b->text().isEmpty())
            QVERIFY2(hasChinese(b->text()), qPrintable(b->text()));
    }
}

void tst_keyboard::mnemonicsAndAltKeys()
{
    // The compose window: Alt and a caption's letter reach its field; an
    // unused Alt letter types nothing; CTRL+S saves.
    frmMailEdit *e = static_cast<frmMailEdit *>(shown(u"frmMailEdit"_s));
    QVERIFY(QTest::qWaitForWindowActive(e));
    QTest::keyClick(e, Qt::Key_S, Qt::AltModifier);
    QCOMPARE(QApplication::focusWidget(), e->Text5);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Q, Qt::AltModifier);
    QCOMPARE(e->Text5->text(), u"Re:s"_s);
    boxes->expectMessage(Prompter::Icon::Information, texts::compose::DraftSavedTitle,
                         texts::compose::DraftSaved);
    QTest::keyClick(e, Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(stored(FolderFile::Drafts).size(), 1);
    e->close();

    // A wizard page whose Next is disabled: Alt+N neither goes on nor types.
    frmMainBoxAdd1 *p = forms::MainBoxAdd1();
    p->show();
    QVERIFY(QTest::qWaitForWindowActive(p));
    QTest::keyClick(p->Text1, Qt::Key_N, Qt::AltModifier);
    QCOMPARE(p->Text1->text(), QString());
    QVERIFY(p->isVisible() && !forms::MainBoxAdd2()->isVisible());
}

QTEST_MAIN(tst_keyboard)
#include "tst_keyboard.moc"
