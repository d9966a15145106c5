// Installs the build into a temporary DESTDIR and tries the result the way a
// desktop and a trainee would meet it.

#include "testsupport.h"

#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

using namespace testsupport;

namespace {
const QString AppId = QStringLiteral(APP_ID), Built = QStringLiteral(BUILT_EXE);
}  // namespace

class tst_install : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dest;
    QString usr(const QString &path) const { return m_dest.filePath(u"usr/"_s + path); }

private slots:
    void initTestCase()
    {
        const Run r = runProgram(QStringLiteral(CMAKE_COMMAND), {u"--install"_s, QStringLiteral(BUILD_DIR), u"--prefix"_s, u"/usr"_s},
                          {{u"DESTDIR"_s, m_dest.path()}});
        QVERIFY2(r.exitCode == 0, qPrintable(r.out + r.err));
    }

    void validates_data()
    {
        QTest::addColumn<QStringList>("command");  // the validator and its options
        QTest::addColumn<QString>("file");  // checked last, below usr/share
        QTest::newRow("menu entry") << QStringList{u"desktop-file-validate"_s} << u"applications/%1.desktop"_s;
        QTest::newRow("metainfo") << QStringList{u"appstreamcli"_s, u"validate"_s, u"--no-net"_s} << u"metainfo/%1.metainfo.xml"_s;
    }
    void validates()
    {
        QFETCH(QStringList, command);
        QFETCH(QString, file);
        const QString tool = QStandardPaths::findExecutable(command.takeFirst());
        if (tool.isEmpty())
            QSKIP("validator not installed (scripts/install-deps adds it)");
        const Run r = runProgram(tool, command << usr(u"share/"_s + file.arg(AppId)));
        QVERIFY2(r.exitCode == 0, qPrintable(r.out + r.err));
    }

    // What the program says, in Chinese, under a temporary HOME. With --print-data-dir
    // it runs the whole start-up (the folder chosen, made and tried for writing) and
    // prints the folder the store then uses instead of opening the main window.
    void says_data()
    {
        QTest::addColumn<bool>("built");  // the build tree's program, else the installed one
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("out");  // parts of standard output and error; "~" the home
        QTest::addColumn<QString>("err");
        const auto row = [](const char *name, bool built, const QString &args, const QString &out, const QString &err = {}) {
            QTest::newRow(name) << built << args.split(u' ') << out << err;
        };
        row("help", false, u"--help"_s, u"选项："_s);
        row("an unknown option", false, u"--frobnicate"_s, {}, u"未知的选项“frobnicate”"_s);
        row("an argument too many", false, u"mail.eml"_s, {}, u"多余的参数：mail.eml"_s);
        row("installed: the per-user data folder", false, u"--print-data-dir"_s, u"~/.local/share/quillpost-express\n"_s);
        row("built: the folder beside it", true, u"--print-data-dir"_s, QFileInfo(Built).absolutePath() + u'\n');
        // Not even root can make a folder in /proc: the folder is kept, read-only, and named.
        row("a folder that cannot be made", false, u"--print-data-dir --data-dir /proc/quillpost"_s,
            u"/proc/quillpost\n"_s, u"无法写入数据文件夹“/proc/quillpost”"_s);
    }
    void says()
    {
        QFETCH(bool, built);
        QFETCH(QStringList, args);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QTemporaryDir home;
        const Run r = runProgram(built ? Built : usr(u"bin/quillpost"_s), args, {{u"HOME"_s, home.path()}});
        QCOMPARE(r.exitCode, out.isEmpty() ? 2 : 0);  // a usage error prints to stderr only
        QVERIFY2(r.out.contains(out.replace(u'~', home.path())) && r.err.contains(err), qPrintable(r.out + r.err));
        QVERIFY(!r.out.contains(u"Usage"_s) && !r.err.contains(u"Unknown"_s));
        // The folder printed was made, or the user is told it cannot be.
        if (args.contains(u"--print-data-dir"_s))
            QCOMPARE(std::pair(QFileInfo(r.out.trimmed()).isDir(), r.err.contains(u"无法写入数据文件夹"_s)),
                     std::pair(err.isEmpty(), !err.isEmpty()));
        // Nothing was written beside the installed program.
        QCOMPARE(QDir(usr(u"bin"_s)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList{u"quillpost"_s});
    }
};

QTEST_GUILESS_MAIN(tst_install)
#include "tst_install.moc"
