#include "check.h"

#include "commandline.h"
#include "datafolder.h"
#include "exercise/exercise.h"
#include "store/errors.h"
#include "texts.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {
void print(FILE *stream, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
}

// A box's text on a terminal: its CRs as line ends.
void printReason(const QString &text)
{
    print(stderr, QString(text).replace(u'\r', u'\n') + u'\n');
}

// Whether the program could write in dir, asked without making the folder
// or a file in it, so that the check picks the folder the program would.
bool writableNow(const QString &dir)
{
    return QFileInfo(dir).isDir() && ::access(QFile::encodeName(dir).constData(), W_OK) == 0;
}
}  // namespace

int RunCheck(const CommandLine &cmd)
{
    namespace t = texts::exercise;
    const DataDirChoice data = ChooseDataDir(DataDirFactsHere(cmd.dataDir, writableNow));

    exercise::Exercise exercise;
    try {
        exercise = exercise::ReadExercise(cmd.exercise);
    } catch (const exercise::ExerciseError &error) {
        printReason(error.text(cmd.exercise));
        return 2;
    }
    const QString shown = QDir::toNativeSeparators(data.dir);
    if (!QFileInfo(data.dir).isDir()) {
        printReason(t::NoDataFolder.arg(shown));
        return 3;
    }
    QList<bool> done;
    try {
        done = exercise::CheckDataFolder(exercise, data.dir);
    } catch (const StoreError &error) {
        printReason(t::CannotCheck.arg(shown, error.userText()));
        return 3;
    }
    print(stdout, exercise::CheckReport(exercise, done));
    return done.contains(false) ? 1 : 0;
}

int RunCheckWithoutDisplay(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    NameApplication();
    const CommandLine cmd = ParseCommandLine(QCoreApplication::arguments());
    if (cmd.action != CommandLine::Action::Check) {
        print(stdout, cmd.out);
        print(stderr, cmd.err);
        return cmd.exitCode;
    }
    return RunCheck(cmd);
}
