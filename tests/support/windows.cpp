#include "windows.h"

#include "sendrecv/engine.h"
#include "ui/exercise/frmExercise.h"

using namespace Qt::Literals::StringLiterals;

namespace testsupport {

void clickItem(QTreeWidget *view, QTreeWidgetItem *item)
{
    view->scrollToItem(item);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualItemRect(item).center());
}
QString cell(const QTreeView *list, int row, int column) { return list->model()->index(row, column).data().toString(); }
bool bold(const QTreeView *list, int row, int column)
{
    return list->model()->index(row, column).data(Qt::FontRole).value<QFont>().bold();
}

void clickRow(QTreeView *list, int row, bool twice)
{
    // The middle of the whole row, as a user aims at it.
    const QModelIndex at = list->model()->index(row, 0);
    list->scrollTo(at);
    const int last = list->model()->columnCount() - 1;
    const QPoint centre = list->visualRect(at).united(list->visualRect(at.siblingAtColumn(last))).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, centre);
    if (twice)
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, centre);
}

// Where keys go: an open menu, else the focus, unless that was left behind in a window just closed.
static QWidget *keyboard()
{
    if (QWidget *menu = QApplication::activePopupWidget())
        return menu;
    QWidget *top = QApplication::activeModalWidget() ? QApplication::activeModalWidget()
                                                      : QApplication::activeWindow();
    QWidget *focus = QApplication::focusWidget();
    return focus && focus->window() == top ? focus : top;
}

void press(const QString &keys)
{
    static const QRegularExpression token(u"\"[^\"]*\"|\\S+"_s);
    for (const QRegularExpressionMatch &m : token.globalMatch(keys)) {
        const QString k = m.captured();
        const QKeyCombination c = QKeySequence(k)[0];
        k.startsWith(u'"') ? QTest::keyClicks(keyboard(), k.mid(1, k.size() - 2))
                           : QTest::keyClick(keyboard(), c.key(), c.keyboardModifiers());
    }
}

void act(QWidget *w, const Steps &steps)
{
    for (const Step &s : steps) {
        // The main window's message list, else the window's only list.
        auto *list = w->findChild<QTreeView *>(u"ListView1"_s);
        if (!list)
            list = w->findChild<QTreeWidget *>();
        auto *box = w->findChild<QWidget *>(s.name);
        switch (s.kind) {
        case Step::Row:
        case Step::RowTwice: clickRow(list, s.n, s.kind == Step::RowTwice); break;
        case Step::Beside:
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, QPoint(5, list->viewport()->height() - 4));
            break;
        case Step::Tab: {
            auto *tabs = w->findChild<QTabBar *>();
            QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(s.n).center());
            break;
        }
        case Step::Click: click(w, s.name); break;
        case Step::Trigger: w->findChild<QAction *>(s.name)->trigger(); break;
        case Step::Key: {
            const QKeyCombination c = QKeySequence(s.name)[0];
            QTest::keyClick(w->focusWidget() ? w->focusWidget() : w, c.key(), c.keyboardModifiers());
            break;
        }
        case Step::Type:
            box->setFocus();
            QTest::keyClicks(box, s.text);
            break;
        }
    }
}

frmMain *mainOn(int node, int row)
{
    frmMain *w = forms::Main();
    forms::setMainWindow(w);
    w->show();
    QApplication::setActiveWindow(w);
    QCoreApplication::processEvents();
    // The folders are read off the window's thread: the list fills once they are, as the user waits for it.
    store::Flush();
    if (node > 0)
        clickItem(w->TreeView1, w->node(node));
    store::Flush();
    if (row >= 0 && row < w->ListView1->model()->rowCount())
        clickRow(w->ListView1, row);
    return w;
}

QWidget *openWindow(const QString &name)
{
    const MailRef first{FolderFile::Inbox, 0, stored(FolderFile::Inbox).first()};
    if (name == u"frmMailEdit")
        frmMailEdit::openAs(Main::ComposeModes::Reply, first);
    else if (name == u"frmMailRead")
        frmMailRead::open(first);
    else if (name == u"frmSendAndReceive")
        frmSendAndReceive::start(SendReceiveModes::ReceiveOnly, false);
    QWidget *w = name == u"frmMain" ? mainOn(Node::Inbox, 0) : nullptr;
    for (QWidget *d : QWidgetList{forms::MailEdit(), forms::MailRead(), forms::SendAndReceive(), forms::MailBox(),
                                  forms::About(), forms::MailBoxProp(), forms::MainBoxAdd1(), forms::MainBoxAdd2(),
                                  forms::MainBoxAdd3(), forms::MainBoxAdd4(), forms::MainBoxAdd5(), forms::Exercise()})
        w = d->objectName() == name ? d : w;
    w->show();
    QApplication::setActiveWindow(w);
    return w;
}

QString contextButtons(const frmMain *w)
{
    QString s;
    for (int i : {2, 3, 4, 5, 6, 7, 13, 14}) {
        const QAction *b = w->toolbarButton(i);
        s += !b->isVisible() ? u'-' : b->isEnabled() ? u'E' : u'D';
    }
    return s;
}

QByteArray ModalScript::report() const
{
    return !m_failure.isEmpty() ? m_failure.toUtf8()
           : m_steps.isEmpty()  ? QByteArray("ok")
                                : "never saw " + m_steps.first().first.toUtf8();
}

void ModalScript::poll()
{
    if (m_steps.isEmpty())
        return;
    // A new single shot each time: a timer does not fire inside a nested loop its own handler started.
    QTimer::singleShot(5, this, &ModalScript::poll);
    QWidget *active = QApplication::activeModalWidget();
    const bool settled = active && active == m_seen;
    m_seen = active;
    if (settled && active->objectName() == m_steps.first().first) {
        m_idlePolls = 0;
        m_seen = nullptr;
        m_steps.takeFirst().second(active);
        return;
    }
    if (++m_idlePolls < 400)
        return;
    m_failure = u"waited for %1 under %2"_s.arg(m_steps.first().first,
                                                 active ? active->objectName() : u"nothing"_s);
    m_steps.clear();
    for (QWidget *w : QApplication::topLevelWidgets())
        if (auto *d = qobject_cast<QDialog *>(w); d && d->isVisible() && d->isModal())
            d->done(QDialog::Rejected);
}

void click(QWidget *window, const QString &button)
{
    auto *b = window->findChild<QAbstractButton *>(button);
    QVERIFY2(b, qPrintable(button));
    // Check boxes and option buttons answer only on their mark and text.
    const bool marked = qobject_cast<QCheckBox *>(b) || qobject_cast<QRadioButton *>(b);
    QTest::mouseClick(b, Qt::LeftButton, {}, marked ? QPoint(6, b->height() / 2) : QPoint());
}

void walkWizard(ModalScript &script, int lastPage, bool pressLast)
{
    const QList<QStringList> typing = {{u"New Office"_s}, {u"New.Office@Example.com"_s},
                                       {u"POP.example.com"_s, u"SMTP.example.com"_s},
                                       {u"NewLogon"_s, u"Secret"_s}, {}};
    for (int page = 1; page <= lastPage; ++page) {
        const QStringList texts = typing[page - 1];
        const bool press = page < lastPage || pressLast;
        script.on(u"frmMainBoxAdd"_s + QString::number(page), [texts, press, page](QWidget *w) {
            for (int i = 0; i < texts.size(); ++i)
                QTest::keyClicks(w->findChild<QLineEdit *>(u"Text%1"_s.arg(i + 1)), texts[i]);
            if (press)
                click(w, page == 5 ? u"btnOK"_s : u"btnForWard"_s);
        });
    }
}

void WindowTest::begin()
{
    dir = std::make_unique<DataDir>();
    boxes = std::make_unique<ScriptedPrompter>();
}

void WindowTest::end()
{
    forms::destroyAll();
    const bool done = boxes->done();
    const QByteArray report = boxes->report();
    boxes.reset(), dir.reset();
    QVERIFY2(done, report);
}

}  // namespace testsupport
