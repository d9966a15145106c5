// What the windows share: twips, the folder captions' rule, the header
// style, the error guard of last resort, and the about box.

#include "store/errors.h"
#include "texts.h"
#include "ui/about/frmAbout.h"
#include "ui/common/application.h"
#include "ui/common/forms.h"
#include "ui/common/headerbuttons.h"
#include "ui/common/twips.h"
#include "ui/main/foldernodes.h"
#include "ui/main/frmMain.h"
#include "windows.h"

#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;
using namespace testsupport;
using Icon = Prompter::Icon;

namespace {
// An event handler that a store error or another failure ends.
class Failing : public QObject
{
public:
    int fault = 0;
    bool event(QEvent *e) override
    {
        if (e->type() != QEvent::User)
            return QObject::event(e);
        if (fault == 1)
            throw IndexError(texts::TooManyMails);
        throw std::runtime_error("disk gone");
    }
};
}  // namespace

class tst_common : public WindowTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void twips_data();
    void twips();
    void unreadCaptions();
    void headerButtons();
    void lastResortGuard();
    void aboutBox();
};

void tst_common::twips_data()
{
    QTest::addColumn<double>("tw");
    QTest::addColumn<double>("dpi");
    QTest::addColumn<int>("px");
    QTest::newRow("15 twips are one pixel at 96 dpi") << 15.0 << 96.0 << 1;
    QTest::newRow("the tree's width at 144 dpi") << 2760.0 << 144.0 << 276;
    QTest::newRow("a half pixel rounds up") << 22.5 << 96.0 << 2;
    QTest::newRow("negative sizes convert too") << -150.0 << 96.0 << -10;
}

void tst_common::twips()
{
    QFETCH(double, tw);
    QFETCH(double, dpi);
    QTEST(twips::toPixels(tw, dpi), "px");
    // Near the top-left: a hundredth of the free space, truncated.
    QCOMPARE(twips::nearTopLeft({15360, 11520}, {9600, 7200}), QPoint(57, 43));
    QCOMPARE(twips::nearTopLeft({9000, 7000}, {9600, 7200}), QPoint(-6, -2));
}

void tst_common::unreadCaptions()
{
    const QList<std::tuple<int, QString, bool>> rows = {
        {0, u"收件箱"_s, false}, {-1, u"收件箱"_s, false}, {1, u"收件箱(1)"_s, true},
        {101, u"收件箱(101)"_s, true}};
    for (const auto &[unread, text, bold] : rows) {
        const NodeCaption c = unreadCaption(u"收件箱"_s, unread);
        QCOMPARE(c.text, text);
        QCOMPARE(c.bold, bold);
    }
}

void tst_common::headerButtons()
{
    QTreeWidget list;
    SetHeaderButtons(&list, 0);
    QVERIFY(list.header()->sectionsClickable());
    SetHeaderButtons(&list, 1);
    QVERIFY(!list.header()->sectionsClickable());
    boxes->expectMessage(Icon::Exclamation, texts::ErrorTitle, texts::HeaderStyleFailed);
    SetHeaderButtons(&list, 2);
    QVERIFY(!list.header()->sectionsClickable());
}

void tst_common::lastResortGuard()
{
    // An error no command caught still ends in a box, and the program goes on.
    auto *app = static_cast<QuillpostApplication *>(qApp);
    Failing target;
    for (int fault : {1, 2}) {
        target.fault = fault;
        boxes->expectMessage(Icon::Exclamation, texts::AppTitle,
                             fault == 1 ? texts::OperationAbandoned + u"\r\r"_s + texts::TooManyMails
                                        : QuillpostApplication::abandonedText(u"disk gone"_s));
        QEvent e(QEvent::User);
        QVERIFY(!app->notify(&target, &e));
    }
}

void tst_common::aboutBox()
{
    frmMain *w = mainOn();
    for (int opening = 0; opening < 2; ++opening) {
        w->H6->trigger();
        frmAbout *box = forms::About();
        QCOMPARE(box->windowTitle(), u"关于 Quillpost Express"_s);
        QCOMPARE(box->ListView1->topLevelItemCount(), 21);  // never doubled
        // A trainer finds the data folder on the version line.
        QCOMPARE(box->Label1->toolTip(), u"数据文件夹："_s + QDir::toNativeSeparators(dir->path()));
        QTest::mouseClick(box->Command1, Qt::LeftButton);
        QVERIFY(!box->isVisible());
    }
    QStringList names;
    int unknown = 0;
    for (int i = 0; i < 21; ++i) {
        const QTreeWidgetItem *row = forms::About()->ListView1->topLevelItem(i);
        names << row->text(0);
        if (row->text(1) == u"<未知>") {
            ++unknown;
            QCOMPARE(row->text(2), row->text(0));
        }
        if (row->text(0) == u"comctl32.dll")
            QCOMPARE(row->text(1) + u' ' + row->text(2), u"5.80 C:\\WINDOWS\\SYSTEM\\COMCTL32.DLL"_s);
    }
    QStringList sorted = names;
    sorted.sort();
    QCOMPARE(names, sorted);
    QVERIFY(unknown > 0);
}

int main(int argc, char *argv[])
{
    // The program's own application object, whose guard is under test.
    QuillpostApplication app(argc, argv);
    tst_common tc;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&tc, argc, argv);
}

#include "tst_common.moc"
