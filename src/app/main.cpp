#include "commandline.h"
#include "onecopy.h"
#include "store/appdir.h"
#include "store/datadir.h"
#include "store/folderlock.h"
#include "store/prompter.h"
#include "texts.h"
#include "ui/common/application.h"
#include "ui/common/fonts.h"
#include "ui/common/msgboxprompter.h"
#include "ui/main/frmMain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryFile>

#include <cstdio>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {
const QString AppId = QStringLiteral(QUILLPOST_APP_ID);

// Where an installed copy may live. Besides the system's prefixes, a copy
// installed anywhere else (cmake --install --prefix ~/programs, or staged
// into a DESTDIR) is known by the menu entry installed next to its bin/.
QStringList installPrefixes(const QString &exeDir)
{
    QStringList prefixes = {u"/usr"_s, u"/usr/local"_s, u"/opt"_s};
    const QFileInfo bin(exeDir);
    const QString prefix = bin.absolutePath();
    if (bin.fileName() == u"bin"
        && QFileInfo::exists(prefix + u"/share/applications/"_s + AppId + u".desktop"_s))
        prefixes.append(prefix);
    return prefixes;
}

// Tries for real, because a permission check can be wrong (read-only
// mounts, root on a network share). A missing folder is created here, at
// the first start, so a trainer finds it before any mail is written. A
// folder with a lock file in it is likely open in another copy, where a
// start must not touch anything: there the permissions are asked, and the
// lock this copy then tries to make is the real test.
bool canWrite(const QString &dir)
{
    if (!QDir().mkpath(dir))
        return false;
    if (QFileInfo::exists(QDir(dir).filePath(QLatin1StringView(LockFileName))))
        return ::access(QFile::encodeName(dir).constData(), W_OK | X_OK) == 0;
    QTemporaryFile probe(QDir(dir).filePath(u".write-test-XXXXXX"_s));
    return probe.open();
}

void print(FILE *stream, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
}
}  // namespace

int main(int argc, char *argv[])
{
    QuillpostApplication app(argc, argv);
    // The application name gives the per-user data folder its name
    // (~/.local/share/quillpost-express); the desktop file name ties the
    // windows to the menu entry, so the desktop shows its icon for them.
    QCoreApplication::setApplicationName(u"quillpost-express"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLPOST_VERSION));
    QGuiApplication::setDesktopFileName(AppId);
    InstallChineseTranslations();

    const CommandLine cmd = ParseCommandLine(QCoreApplication::arguments());
    if (cmd.action == CommandLine::Action::Exit) {
        print(stdout, cmd.out);
        print(stderr, cmd.err);
        return cmd.exitCode;
    }

    const QString exeDir = QCoreApplication::applicationDirPath();
    const DataDirChoice data = ChooseDataDir(
        {exeDir, installPrefixes(exeDir), cmd.dataDir,
         QStandardPaths::writableLocation(QStandardPaths::AppDataLocation), canWrite});
    SetAppDir(data.dir);
    SetDataReadOnly(data.readOnly);

    if (cmd.action == CommandLine::Action::PrintDataDir) {
        print(stdout, QDir::toNativeSeparators(data.dir) + u'\n');
        if (!data.problem.isEmpty())
            print(stderr, QString(data.problem).replace(u'\r', u'\n') + u'\n');
        return 0;
    }

    app.setFont(fonts::uiFont());
    MessageBoxPrompter boxes;
    setPrompter(&boxes);
    // Nothing in the folder is read or written before this copy holds it.
    DataFolderLock lock(data.dir);
    FrontDoor door(LocalServerName(data.dir));
    int rc = 0;
    if (OpenDataFolderOrHandOver(lock, door)) {
        if (!data.problem.isEmpty())
            prompter().message(Prompter::Icon::Exclamation, texts::AppTitle, data.problem);
        forms::Main()->show();
        rc = app.exec();
        forms::destroyAll();
    }
    setPrompter(nullptr);
    return rc;
}
