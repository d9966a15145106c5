#pragma once

#include <QString>
#include <QStringList>

// What the command line asks for. The program itself takes no files; the
// options only say where the data lives or ask for a short answer.
struct CommandLine
{
    enum class Action { Run, PrintDataDir, ClassStatus, Exit };
    Action action = Action::Run;
    int exitCode = 0;  // for Exit: 0 after --help or --version, 2 after a bad option
    QString out;       // printed on standard output before exiting
    QString err;       // printed on standard error before exiting
    QString dataDir;   // --data-dir made absolute; empty when not given
    QString classDir;  // --class-dir made absolute; empty when not given
};

// Reads QCoreApplication's arguments (the toolkit's own options already
// taken out). Needs the application object, for the parser's Chinese words.
CommandLine ParseCommandLine(const QStringList &arguments);
