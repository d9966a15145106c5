// Installs the build into a temporary DESTDIR and tries the result the way a
// desktop and a trainee would meet it.

#include <QDir>
#include <QImageReader>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {
const QString AppId = QStringLiteral(APP_ID);

struct Run
{
    int exitCode = -1;
    QString out, err;
};

// Runs program to its end with the variables added to the environment.
Run run(const QString &program, const QStringList &args,
        const QList<std::pair<QString, QString>> &variables = {})
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    env.remove(u"XDG_DATA_HOME"_s);  // the per-user folder then lies below HOME
    for (const auto &[name, value] : variables)
        env.insert(name, value);
    QProcess p;
    p.setProcessEnvironment(env);
    p.start(program, args);
    if (!p.waitForFinished(60000) || p.exitStatus() != QProcess::NormalExit)
        return {};
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()),
            QString::fromUtf8(p.readAllStandardError())};
}
}  // namespace

class tst_install : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dest;
    QString usr(const QString &path) const { return m_dest.filePath(u"usr/"_s + path); }

private slots:
    void initTestCase()
    {
        const Run r = run(QStringLiteral(CMAKE_COMMAND),
                          {u"--install"_s, QStringLiteral(BUILD_DIR), u"--prefix"_s, u"/usr"_s},
                          {{u"DESTDIR"_s, m_dest.path()}});
        QVERIFY2(r.exitCode == 0, qPrintable(r.out + r.err));
    }

    void iconsAtEverySize()
    {
        for (int side : {16, 22, 24, 32, 48, 64, 128, 256}) {
            const QString icon = u"share/icons/hicolor/%1x%1/apps/%2.png"_s.arg(side).arg(AppId);
            QCOMPARE(QImageReader(usr(icon)).size(), QSize(side, side));
        }
    }

    void validates_data()
    {
        QTest::addColumn<QString>("tool");
        QTest::addColumn<QStringList>("args");
        QTest::newRow("menu entry") << u"desktop-file-validate"_s
            << QStringList{usr(u"share/applications/"_s + AppId + u".desktop"_s)};
        QTest::newRow("metainfo") << u"appstreamcli"_s
            << QStringList{u"validate"_s, u"--no-net"_s,
                           usr(u"share/metainfo/"_s + AppId + u".metainfo.xml"_s)};
    }
    void validates()
    {
        QFETCH(QString, tool);
        QFETCH(QStringList, args);
        const QString path = QStandardPaths::findExecutable(tool);
        if (path.isEmpty())
            QSKIP("validator not installed (scripts/install-deps adds it)");
        const Run r = run(path, args);
        QVERIFY2(r.exitCode == 0, qPrintable(r.out + r.err));
    }

    void commandLine_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("said");  // on standard output for 0, standard error for 2
        QTest::newRow("--help in Chinese") << QStringList{u"--help"_s} << 0 << u"选项："_s;
        QTest::newRow("--version") << QStringList{u"-v"_s} << 0
                                   << u"Quillpost Express " APP_VERSION "\n"_s;
        QTest::newRow("unknown option, in Chinese")
            << QStringList{u"--frobnicate"_s} << 2 << u"未知的选项“frobnicate”"_s;
        QTest::newRow("a stray argument") << QStringList{u"mail.eml"_s} << 2
                                          << u"多余的参数：mail.eml"_s;
    }
    void commandLine()
    {
        QFETCH(QStringList, args);
        QFETCH(int, exitCode);
        QFETCH(QString, said);
        const Run r = run(usr(u"bin/quillpost"_s), args);
        QCOMPARE(r.exitCode, exitCode);
        QVERIFY2((exitCode == 0 ? r.out : r.err).contains(said), qPrintable(r.out + r.err));
        QVERIFY(!r.out.contains(u"Usage"_s) && !r.err.contains(u"Unknown"_s));
    }

    // --print-data-dir goes through the whole start-up (the folder chosen,
    // created and tried for writing) and prints the folder the store then
    // uses, instead of opening the main window.
    void choosesItsDataFolder_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("dataDir");
        QTest::addColumn<QString>("expected");  // below the temporary home, or absolute
        QTest::addColumn<bool>("writable");
        const QString installed = usr(u"bin/quillpost"_s), built = QStringLiteral(BUILT_EXE);
        QTest::newRow("installed: the per-user folder, created")
            << installed << QString() << u".local/share/quillpost-express"_s << true;
        QTest::newRow("installed with --data-dir: that folder, created")
            << installed << u"exercise 3"_s << u"exercise 3"_s << true;
        QTest::newRow("build tree: beside the executable")
            << built << QString() << QFileInfo(built).absolutePath() << true;
        // Not even root can make a folder in /proc.
        QTest::newRow("--data-dir that cannot be made: kept, read-only, named")
            << installed << u"/proc/quillpost"_s << u"/proc/quillpost"_s << false;
    }
    void choosesItsDataFolder()
    {
        QFETCH(QString, program);
        QFETCH(QString, dataDir);
        QFETCH(QString, expected);
        QFETCH(bool, writable);
        QTemporaryDir home;
        const QDir homeDir(home.path());
        QStringList args{u"--print-data-dir"_s};
        if (!dataDir.isEmpty())
            args << u"--data-dir"_s << homeDir.filePath(dataDir);
        const Run r = run(program, args, {{u"HOME"_s, home.path()}});
        QCOMPARE(r.exitCode, 0);
        const QString folder = homeDir.filePath(expected);
        QCOMPARE(r.out, folder + u'\n');
        QCOMPARE(QFileInfo(folder).isDir(), writable);
        QCOMPARE(r.err.contains(u"无法写入数据文件夹“"_s + folder + u"”"_s), !writable);
        // Nothing was written beside the installed program.
        QCOMPARE(QDir(usr(u"bin"_s)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList{u"quillpost"_s});
    }
};

QTEST_GUILESS_MAIN(tst_install)
#include "tst_install.moc"
