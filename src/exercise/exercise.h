#pragma once

#include "store/records.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <stdexcept>

// A trainer's exercise: a title and numbered tasks, each done when the
// data files show it. The trainer writes it in a text editor:
//
//     [exercise]
//     title=第三课
//     [task1]
//     text=给李四发一封主题为“会议通知”的邮件
//     folder=sent
//     to=lisi@example.cn
//     subject=会议通知
//
// The file is read strictly, so that a slip of the trainer's shows at once
// rather than as a task nobody can finish: UTF-8 (with or without a
// byte-order mark) or GB18030, any line ends; [exercise] first with its
// title, then [task1], [task2], ... each once and in order; names of
// sections and keys in any letter case; blanks around names and values and
// one pair of matching quotes around a value dropped; whole-line comments
// starting with ";" or "#". A task has text= and either account= or
// folder= with any of from, to, cc, subject, body, attachment and count.
// Every other line, an empty value and a key given twice are refused.
namespace exercise {

enum class Field { From, To, Cc, Subject, Attachment, Body };

// The field contains text, ignoring letter case.
struct Condition
{
    Field field = Field::Subject;
    QString text;
    // The place in text of a character that letter case leaves alone and
    // that no other character folds to (a digit, "@", a Chinese character):
    // where it is found, text may stand. -1 when text has none, as a word
    // of letters alone.
    qsizetype anchor = -1;
};

struct Task
{
    int number = 0;  // 1, 2, ... as in [taskN]
    QString text;    // what the trainee reads
    // Done when an account has this address (ignoring letter case); empty
    // for a folder task.
    QString account;
    // A folder task: done when at least count messages of the folder (a
    // FolderFile number) meet every condition.
    int folder = -1;
    QList<Condition> conditions;
    int count = 1;
};

struct Exercise
{
    QString title;
    QList<Task> tasks;
};

// Why an exercise file cannot be used: at a line (1-based, quoted as
// written), or about the file as a whole (line 0).
class ExerciseError : public std::runtime_error
{
public:
    ExerciseError(int line, const QString &quoted, const QString &reason);
    int line() const { return m_line; }
    QString reason() const { return m_reason; }
    // The whole message for the trainer, naming the file.
    QString text(const QString &fileName) const;

private:
    int m_line = 0;
    QString m_quoted;
    QString m_reason;
};

// Throws ExerciseError.
Exercise ParseExercise(const QByteArray &bytes);
Exercise ReadExercise(const QString &path);

// Which of tasks, all of one folder, the folder's messages show done.
QList<bool> TasksDone(const QList<Task> &tasks, const MailList &folder);
// Whether an account task is done by these accounts.
bool TaskDone(const Task &task, const QList<MailBoxRec> &accounts);

// Every task of the exercise, each folder and the accounts asked for at
// most once.
QList<bool> CheckTasks(const Exercise &exercise,
                       const std::function<MailList(int folder)> &folder,
                       const std::function<QList<MailBoxRec>()> &accounts);

// A data folder's files as they stand, read and never written: no lock,
// no recovery, so that a trainer may check while the program runs there.
// A change whose journal stands counts as made, as the program counts it:
// its new files are read in place of the old ones. Throws StoreError when
// a file cannot be read.
QList<bool> CheckDataFolder(const Exercise &exercise, const QString &dataDir);

// What `--check` prints: a line per task ("完成" or "未完成", its number,
// its text, tab-separated), then "done/tasks".
QString CheckReport(const Exercise &exercise, const QList<bool> &done);

// An exercise's title and how many of its tasks a data folder shows done.
struct Progress
{
    QString title;
    int done = 0;
    int tasks = 0;
};
// Throws ExerciseError or StoreError.
Progress ProgressIn(const QString &exerciseFile, const QString &dataDir);

}  // namespace exercise
