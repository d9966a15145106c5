#pragma once

#include <QString>
#include <QStringList>

// What the command line asks for. The program itself takes no files; the
// options say where the data lives, which exercise to show beside the main
// window, or ask for a short answer.
struct CommandLine
{
    enum class Action { Run, PrintDataDir, Check, ClassStatus, Exit };
    Action action = Action::Run;
    int exitCode = 0;  // for Exit: 0 after --help or --version, 2 after a bad option
    QString out;       // printed on standard output before exiting
    QString err;       // printed on standard error before exiting
    QString dataDir;   // --data-dir made absolute; empty when not given
    QString exercise;  // the file of --exercise or --check, as given
    QString classDir;  // --class-dir made absolute; empty when not given
};

// Reads QCoreApplication's arguments (the toolkit's own options already
// taken out). Needs the application object, for the parser's Chinese words.
CommandLine ParseCommandLine(const QStringList &arguments);

// Whether the arguments ask for --check, which runs without a display.
// Needs no application object; a command line that does not parse is no
// check, and the program's own start then says what is wrong with it.
bool IsCheckCommand(int argc, char *argv[]);

// The names the desktop and the per-user data folder know the program by.
void NameApplication();
