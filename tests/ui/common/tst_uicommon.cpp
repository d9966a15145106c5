// The window layer's shared helpers, checked on numbers and on one list.

#include "testsupport.h"
#include "texts.h"
#include "ui/common/headerbuttons.h"
#include "ui/common/msgboxprompter.h"
#include "ui/common/twips.h"
#include "ui/main/foldernodes.h"
#include "ui/main/mainlayout.h"

#include <QHeaderView>
#include <QTest>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;
using testsupport::ScriptedPrompter;

class tst_UiCommon : public QObject
{
    Q_OBJECT

private slots:
    void twipsToPixels_data();
    void twipsToPixels();
    void placement_data();
    void placement();
    void layoutTable_data();
    void layoutTable();
    void previewStack();
    void unreadCaption_data();
    void unreadCaption();
    void headerButtons_data();
    void headerButtons();
    void boxIcons();
};

void tst_UiCommon::twipsToPixels_data()
{
    QTest::addColumn<double>("twips");
    QTest::addColumn<double>("dpi");
    QTest::addColumn<int>("pixels");
    QTest::newRow("15 twips are one pixel at 96 dpi") << 15.0 << 96.0 << 1;
    QTest::newRow("an inch is 96 pixels at 96 dpi") << 1440.0 << 96.0 << 96;
    QTest::newRow("the tree's width at 96 dpi") << 2760.0 << 96.0 << 184;
    QTest::newRow("the tree's width at 144 dpi") << 2760.0 << 144.0 << 276;
    QTest::newRow("a half pixel rounds up") << 22.5 << 96.0 << 2;
    QTest::newRow("negative sizes convert too") << -150.0 << 96.0 << -10;
}

void tst_UiCommon::twipsToPixels()
{
    QFETCH(double, twips);
    QFETCH(double, dpi);
    QFETCH(int, pixels);
    QCOMPARE(twips::toPixels(twips, dpi), pixels);
    QCOMPARE(twips::fromPixels(pixels, dpi), double(pixels) * 1440.0 / dpi);
}

void tst_UiCommon::placement_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<QSize>("window");
    QTest::addColumn<QPoint>("topLeft");
    QTest::newRow("a hundredth of the free space in, truncated")
        << QSize(15360, 11520) << QSize(9600, 7200) << QPoint(57, 43);
    QTest::newRow("no free space opens at the corner")
        << QSize(9600, 7200) << QSize(9600, 7200) << QPoint(0, 0);
    QTest::newRow("a window larger than the screen truncates toward zero")
        << QSize(9600, 7200) << QSize(15360, 11520) << QPoint(-57, -43);
}

void tst_UiCommon::placement()
{
    QFETCH(QSize, screen);
    QFETCH(QSize, window);
    QFETCH(QPoint, topLeft);
    QCOMPARE(twips::nearTopLeft(screen, window), topLeft);
    QCOMPARE(twips::freeSpaceOffset(15360, 9600, 2), 2880);  // divisor 2 centres
}

void tst_UiCommon::layoutTable_data()
{
    QTest::addColumn<double>("W");
    QTest::addColumn<double>("H");
    QTest::newRow("design size") << 13500.0 << 8400.0;
    QTest::newRow("odd height halves to a fraction") << 12000.0 << 9001.0;
}

void tst_UiCommon::layoutTable()
{
    QFETCH(double, W);
    QFETCH(double, H);
    const MainLayout l = mainLayout(W, H);
    // The tree is fixed, the panes take the rest, the status bar 280.
    QCOMPARE(l.TreeView1, (twips::Rect{0, 1170, 2760, H - 1450}));
    QCOMPARE(l.Frame2, (twips::Rect{2760, 1170, W - 2760, H - 1450}));
    QCOMPARE(l.Frame4, l.Frame2);
    // The summary page is 60 wider than the pages beside it.
    QCOMPARE(l.Frame5.width - l.Frame2.width, 60.0);
    QCOMPARE(l.Picture1, (twips::Rect{30, 10, W - 2700, H - 1500}));
    QCOMPARE(l.ListView2, (twips::Rect{0, 1320, W - 2760, H - 2780}));
    QCOMPARE(l.Label11, (twips::Rect{20, 0, W - 2760, H - 2780}));
    // List and preview share the page in real halves.
    QCOMPARE(l.ListView1, (twips::Rect{0, 20, W - 2760, (H - 1450) / 2.0}));
    QCOMPARE(l.Frame3, (twips::Rect{0, (H - 1450) / 2.0, W - 2760, (H - 1450) / 2.0}));
    QCOMPARE(l.Text1, (twips::Rect{0, 600, W - 2760, (H - 1750) / 2.0}));
    QCOMPARE(l.statusPanel1Width, W - 4200);
    QVERIFY(fits(l.Frame2));
    QVERIFY(!fits(mainLayout(W, 1000).Frame2));
}

void tst_UiCommon::previewStack()
{
    const PreviewStack s = stackPreviewLabels(60, 180, 200);
    QCOMPARE(s.label6Top, 340.0);  // 60 + 180 + 100
    QCOMPARE(s.label7Top, 590.0);  // 340 + 200 + 50
}

void tst_UiCommon::unreadCaption_data()
{
    QTest::addColumn<int>("unread");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("bold");
    QTest::newRow("none: the plain name") << 0 << u"收件箱"_s << false;
    QTest::newRow("below zero: the plain name") << -1 << u"收件箱"_s << false;
    QTest::newRow("one: name(1) in bold") << 1 << u"收件箱(1)"_s << true;
    QTest::newRow("many: no blanks or zeros") << 101 << u"收件箱(101)"_s << true;
}

void tst_UiCommon::unreadCaption()
{
    QFETCH(int, unread);
    QFETCH(QString, text);
    QFETCH(bool, bold);
    const NodeCaption c = ::unreadCaption(texts::InboxName, unread);
    QCOMPARE(c.text, text);
    QCOMPARE(c.bold, bold);
}

void tst_UiCommon::headerButtons_data()
{
    QTest::addColumn<bool>("clickableBefore");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("clickableAfter");
    QTest::addColumn<bool>("errorBox");
    QTest::newRow("mode 0 makes flat headers buttons") << false << 0 << true << false;
    QTest::newRow("mode 1 makes buttons flat") << true << 1 << false << false;
    QTest::newRow("mode 2 reports and keeps buttons") << true << 2 << true << true;
    QTest::newRow("mode -1 reports and keeps flat") << false << -1 << false << true;
}

void tst_UiCommon::headerButtons()
{
    QFETCH(bool, clickableBefore);
    QFETCH(int, mode);
    QFETCH(bool, clickableAfter);
    QFETCH(bool, errorBox);
    QTreeWidget list;
    list.header()->setSectionsClickable(clickableBefore);
    ScriptedPrompter boxes;
    if (errorBox)
        boxes.expectMessage(Prompter::Icon::Exclamation, u"出错"_s, u"表头定位出错"_s);
    SetHeaderButtons(&list, mode);
    QCOMPARE(list.header()->sectionsClickable(), clickableAfter);
    QVERIFY2(boxes.done(), boxes.report());
}

void tst_UiCommon::boxIcons()
{
    using I = Prompter::Icon;
    QCOMPARE(MessageBoxPrompter::boxIcon(I::Exclamation), QMessageBox::Warning);
    QCOMPARE(MessageBoxPrompter::boxIcon(I::Warning), QMessageBox::Warning);
    QCOMPARE(MessageBoxPrompter::boxIcon(I::Information), QMessageBox::Information);
    QCOMPARE(MessageBoxPrompter::boxIcon(I::Critical), QMessageBox::Critical);
}

QTEST_MAIN(tst_UiCommon)
#include "tst_uicommon.moc"
