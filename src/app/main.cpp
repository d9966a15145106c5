#include "check.h"
#include "commandline.h"
#include "datafolder.h"
#include "sendrecv/classroom.h"
#include "onecopy.h"
#include "store/appdir.h"
#include "store/datadir.h"
#include "store/folderlock.h"
#include "store/mailstore.h"
#include "store/prompter.h"
#include "texts.h"
#include "ui/common/application.h"
#include "ui/common/fonts.h"
#include "ui/common/msgboxprompter.h"
#include "ui/main/frmMain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryFile>

#include <cstdio>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {
const QString AppId = QStringLiteral(QUILLPOST_APP_ID);

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

// The trainer's overview of the class folder, on standard output.
int printClassStatus(const QString &classDir)
{
    if (classDir.isEmpty()) {
        const QSettings settings(QSettings::NativeFormat, QSettings::SystemScope,
                                 classroom::SettingsName);
        print(stderr, texts::cli::NoClassDir.arg(settings.fileName()) + u'\n');
        return 2;
    }
    QString table, why;
    if (!classroom::StatusTable(classDir, &table, &why)) {
        print(stderr, why + u'\n');
        return 1;
    }
    print(stdout, table);
    return 0;
}
}  // namespace

int main(int argc, char *argv[])
{
    if (IsCheckCommand(argc, argv))
        return RunCheckWithoutDisplay(argc, argv);

    QuillpostApplication app(argc, argv);
    NameApplication();
    // The desktop file name ties the windows to the menu entry, so the
    // desktop shows its icon for them.
    QGuiApplication::setDesktopFileName(AppId);
    InstallChineseTranslations();

    const CommandLine cmd = ParseCommandLine(QCoreApplication::arguments());
    if (cmd.action == CommandLine::Action::Exit) {
        print(stdout, cmd.out);
        print(stderr, cmd.err);
        return cmd.exitCode;
    }
    if (cmd.action == CommandLine::Action::Check)
        return RunCheck(cmd);

    // The class folder: --class-dir for this start, else the administrator's.
    const QString classDir = cmd.classDir.isEmpty() ? classroom::ConfiguredClassDir() : cmd.classDir;
    if (cmd.action == CommandLine::Action::ClassStatus)
        return printClassStatus(classDir);
    classroom::SetClassDir(classDir);

    const DataDirChoice data = ChooseDataDir(DataDirFactsHere(cmd.dataDir, canWrite));
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
    if (OpenDataFolderOrHandOver(lock, door, &rc)) {
        if (!data.problem.isEmpty())
            prompter().message(Prompter::Icon::Exclamation, texts::AppTitle, data.problem);
        forms::setMainWindow(forms::Main());
        forms::Main()->show();
        if (!cmd.exercise.isEmpty())
            forms::Main()->startExercise(cmd.exercise);
        rc = app.exec();
        // Mail on its way into the class folder gets a moment to arrive;
        // what does not is sent again by the next run. Every change is on
        // the disk before the program ends.
        store::Flush();
        classroom::WaitForShare(5000);
        forms::destroyAll();
        store::Flush();
    }
    setPrompter(nullptr);
    return rc;
}
