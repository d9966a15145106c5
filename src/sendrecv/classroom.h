#pragma once

#include "engine.h"
#include "classshare.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <future>
#include <memory>

// A class mails itself through a folder on the school's file share. With a
// class folder set, a send-and-receive run does its steps across the class:
// outgoing mail goes into this data folder's member folder there, and each
// local address takes, from every member folder, the messages it has not
// yet considered, once per matching account. Without one, nothing changes.
namespace classroom {

// The administrator's settings file that every user's copy reads, and the
// key in it that names the class folder.
inline const QString SettingsName = QStringLiteral("quillpost-express");
inline const QString SettingsKey = QStringLiteral("classroom/folder");
// The class folder the administrator set (absolute), or empty.
QString ConfiguredClassDir();

// The class folder of this start; empty without one.
void SetClassDir(const QString &dir);
QString ClassDir();

// The exercise a member is doing, for the trainer's overview: its title and
// "done/all" tasks. Whoever knows the exercise sets the provider; without
// one the overview leaves the columns out.
struct ExerciseProgress
{
    QString title;
    QString done;
};
void SetExerciseProgress(std::function<ExerciseProgress()> provider);

// The trainer's overview of a class folder: one line per machine and
// address with what it sent and received and when it last ran. False with
// the reason when the folder cannot be read.
bool StatusTable(const QString &classDir, QString *table, QString *why);

// One send-and-receive run with a class folder. begin() does the local part
// on the window's thread (the send, the outgoing mail numbered, in one
// commit) and hands the class folder's part to a thread of its own; poll()
// takes what that found in a second commit, has the status written and
// says when all is done. Runs follow each other in the class folder: a run
// whose window went away leaves its work to finish there, and its findings
// are dropped, to be found again by the next run.
class ClassRun
{
public:
    explicit ClassRun(qint16 mode);
    ~ClassRun();
    ClassRun(const ClassRun &) = delete;
    ClassRun &operator=(const ClassRun &) = delete;

    RunResult begin();
    bool poll();

    // The send's result and, once done, any store error of the second commit.
    const RunResult &result() const { return m_result; }
    // What the user is to be told once the run is over, in order.
    const QStringList &notices() const { return m_notices; }

    // The whole run on this thread: for the benchmark and the tests.
    static RunResult runHere(qint16 mode, QStringList *notices = nullptr);

private:
    enum class Phase { Share, Status, Done };
    void take(const ShareOutcome &outcome);
    void startWork(std::function<void()> work);

    qint16 m_mode;
    bool m_here = false;
    Phase m_phase = Phase::Done;
    RunResult m_result;
    QStringList m_notices;
    ShareJob m_job;
    QStringList m_addresses;  // the local addresses the job looked for
    std::shared_ptr<ShareOutcome> m_outcome;
    std::shared_future<void> m_work;
};

// Waits up to ms for the class folder's work of earlier runs; the program
// gives it a moment to finish before it ends.
void WaitForShare(int ms);

}  // namespace classroom
