#include "testsupport.h"
#include "ui/about/frmAbout.h"
#include "ui/main/frmMain.h"

#include <QAction>
#include <QDir>

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;

class tst_frmAbout : public QObject
{
    Q_OBJECT

private slots:
    void showsTheComponentListOnceHoweverOftenOpened()
    {
        frmAbout box;
        for (int opening = 0; opening < 2; ++opening) {
            box.show();
            QVERIFY(QTest::qWaitForWindowExposed(&box));
            QCOMPARE(box.windowTitle(), u"关于 Quillpost Express"_s);
            QCOMPARE(box.ListView1->topLevelItemCount(), 21);
            QTest::mouseClick(box.Command1, Qt::LeftButton);
            QVERIFY(!box.isVisible());
        }
    }

    void rowsAreAlphabeticalWithKnownAndUnknownVersions()
    {
        frmAbout box;
        box.show();
        QStringList names;
        int unknown = 0;
        for (int i = 0; i < box.ListView1->topLevelItemCount(); ++i) {
            const QTreeWidgetItem *row = box.ListView1->topLevelItem(i);
            names.append(row->text(0));
            if (row->text(1) == u"<未知>") {
                ++unknown;
                QCOMPARE(row->text(2), row->text(0));  // the bare name as the path
            }
            if (row->text(0) == u"comctl32.dll") {
                QCOMPARE(row->text(1), u"5.80"_s);
                QCOMPARE(row->text(2), u"C:\\WINDOWS\\SYSTEM\\COMCTL32.DLL"_s);
            }
            if (row->text(0) == u"ole32.dll") {
                QCOMPARE(row->text(1), u"4.71.2900"_s);
                QCOMPARE(row->text(2), u"C:\\WINDOWS\\SYSTEM\\OLE32.DLL"_s);
            }
        }
        QStringList sorted = names;
        sorted.sort();
        QCOMPARE(names, sorted);
        QVERIFY(names.contains(u"comctl32.dll"_s) && names.contains(u"ole32.dll"_s));
        QVERIFY(unknown > 0);
        QVERIFY(box.Label1->text().contains(QRegularExpression(u"\\d+\\.\\d+\\.\\d+\\.\\d+"_s)));
        QCOMPARE(box.Command1->text(), u"确定"_s);
        QVERIFY(!box.Image1->pixmap().isNull() && !box.Image2->pixmap().isNull());
    }

    void helpMenuOpensTheOneAboutBox()
    {
        testsupport::DataDir dir;
        frmMain *main = forms::Main();
        main->show();
        main->H6->trigger();
        frmAbout *box = forms::About();
        QVERIFY(box->isVisible());
        main->H6->trigger();  // a second choice brings back the same box
        QCOMPARE(forms::About(), box);
        QCOMPARE(box->ListView1->topLevelItemCount(), 21);
        // A trainer finds the data folder on the version line.
        QCOMPARE(box->Label1->toolTip(), u"数据文件夹："_s + QDir::toNativeSeparators(dir.path()));
        forms::destroyAll();
    }
};

QTEST_MAIN(tst_frmAbout)
#include "tst_frmAbout.moc"
