#include "store/datadir.h"
#include "texts.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Where the seven files go, for every kind of copy. The file system is
// replaced by a list of folders the probe may write, so no real /usr, USB
// stick or read-only home is needed.
class tst_datadir : public QObject
{
    Q_OBJECT

private slots:
    void choosesTheFolder_data()
    {
        QTest::addColumn<QString>("exeDir");
        QTest::addColumn<QString>("requested");
        QTest::addColumn<QStringList>("writable");
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<bool>("readOnly");

        const QString home = u"/home/li/.local/share/quillpost-express"_s;
        QTest::newRow("portable copy in a writable folder keeps its files beside it")
            << u"/media/usb/quillpost"_s << QString()
            << QStringList{u"/media/usb/quillpost"_s, home} << u"/media/usb/quillpost"_s << false;
        QTest::newRow("copy in a read-only folder uses the per-user folder")
            << u"/media/cdrom/quillpost"_s << QString() << QStringList{home} << home << false;
        QTest::newRow("installed in /usr/bin uses the per-user folder, even for root")
            << u"/usr/bin"_s << QString() << QStringList{u"/usr/bin"_s, home} << home << false;
        QTest::newRow("installed below /usr/local too")
            << u"/usr/local/bin"_s << QString() << QStringList{u"/usr/local/bin"_s, home} << home
            << false;
        QTest::newRow("a prefix given with a trailing slash still counts")
            << u"/home/li/programs/bin"_s << QString()
            << QStringList{u"/home/li/programs/bin"_s, home} << home << false;
        QTest::newRow("a folder whose name only begins like a prefix is portable")
            << u"/optical/quillpost"_s << QString()
            << QStringList{u"/optical/quillpost"_s, home} << u"/optical/quillpost"_s << false;
        QTest::newRow("--data-dir wins over a writable portable folder")
            << u"/media/usb/quillpost"_s << u"/srv/exercise/3"_s
            << QStringList{u"/media/usb/quillpost"_s, u"/srv/exercise/3"_s, home}
            << u"/srv/exercise/3"_s << false;
        QTest::newRow("--data-dir that cannot be written is kept, read-only")
            << u"/usr/bin"_s << u"/srv/exercise/3/"_s << QStringList{home}
            << u"/srv/exercise/3"_s << true;
        QTest::newRow("nothing writable: the per-user folder, read-only")
            << u"/usr/bin"_s << QString() << QStringList{u"/usr/bin"_s} << home << true;
    }

    void choosesTheFolder()
    {
        QFETCH(QString, exeDir);
        QFETCH(QString, requested);
        QFETCH(QStringList, writable);
        QFETCH(QString, chosen);
        QFETCH(bool, readOnly);

        const DataDirChoice choice = ChooseDataDir(
            {exeDir, {u"/usr"_s, u"/usr/local"_s, u"/opt"_s, u"/home/li/programs/"_s}, requested,
             u"/home/li/.local/share/quillpost-express"_s,
             [&](const QString &dir) { return writable.contains(dir); }});

        QCOMPARE(choice.dir, chosen);
        QCOMPARE(choice.readOnly, readOnly);
        // What the user sees at start-up: nothing, or a box naming the folder.
        QCOMPARE(choice.problem, readOnly ? texts::datadir::CannotWrite.arg(chosen) : QString());
    }
};

QTEST_GUILESS_MAIN(tst_datadir)
#include "tst_datadir.moc"
