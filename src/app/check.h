#pragma once

struct CommandLine;

// quillpost --check FILE [--data-dir DIR]: which tasks of an exercise the
// data folder shows done, one line per task and "done/tasks" last. Exits 0
// when every task is done, 1 when some are not, 2 when the exercise file
// cannot be used and 3 when the data folder cannot be read, the reason on
// standard error. It writes nothing and takes no lock.
int RunCheck(const CommandLine &cmd);

// The same as the first thing main() does, before any window system is
// asked for: a trainer runs it in a terminal, over ssh too.
int RunCheckWithoutDisplay(int argc, char *argv[]);
