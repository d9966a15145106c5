#include "classroom.h"

#include "classstate.h"
#include "recipients.h"
#include "store/appdir.h"
#include "store/clock.h"
#include "store/errors.h"
#include "store/folderlock.h"
#include "store/folders.h"
#include "store/mailstore.h"
#include "store/profile.h"
#include "store/textutil.h"
#include "texts.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QSettings>

#include <limits>
#include <mutex>
#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace classroom {

namespace {

QString &classDir()
{
    static QString dir;
    return dir;
}

std::function<ExerciseProgress()> &exerciseProgress()
{
    static std::function<ExerciseProgress()> provider;
    return provider;
}

// The class folder's work of one run after another, whatever thread each
// runs on: a run's work starts once the one before it has ended.
std::mutex workLock;
std::shared_future<void> &lastWork()
{
    static std::shared_future<void> work;
    return work;
}

// Problems with files of the class folder are told once while the program
// runs: a file that cannot be read now is tried again at every run.
QSet<QString> &toldFiles()
{
    static QSet<QString> told;
    return told;
}

QString dataDirPath()
{
    const QFileInfo info(AppDir());
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? info.absoluteFilePath() : canonical;
}

// As the store keeps it: what the last run committed, on the disk yet or not.
ClassState storedState()
{
    return ClassState::parse(store::DataFile(StateFileName));
}

// The local addresses, each once, in the accounts' order.
QStringList addressesOf(const AccountList &accounts)
{
    QStringList out;
    for (const MailBoxRec &a : accounts) {
        if (!out.contains(a.address))
            out.append(a.address);
    }
    return out;
}

// Columns padded by the width a terminal gives them: a Chinese character
// takes two places.
int displayWidth(const QString &text)
{
    int width = 0;
    for (QChar c : text)
        width += c.unicode() >= 0x1100 && !c.isLowSurrogate() ? 2 : 1;
    return width;
}

QString table(const QList<QStringList> &rows)
{
    QList<int> widths;
    for (const QStringList &row : rows) {
        for (int i = 0; i < row.size(); ++i) {
            if (widths.size() <= i)
                widths.append(0);
            widths[i] = qMax(widths[i], displayWidth(row[i]));
        }
    }
    QString out;
    for (const QStringList &row : rows) {
        QString line;
        for (int i = 0; i < row.size(); ++i) {
            line += row[i];
            if (i + 1 < row.size())
                line += QString(widths[i] - displayWidth(row[i]) + 2, u' ');
        }
        out += line + u'\n';
    }
    return out;
}

QString oneLine(QString value)
{
    return value.replace(u'\r', u' ').replace(u'\n', u' ');
}

}  // namespace

QString ConfiguredClassDir()
{
    const QSettings settings(QSettings::NativeFormat, QSettings::SystemScope, SettingsName);
    const QString dir = settings.value(SettingsKey).toString().trimmed();
    return dir.isEmpty() ? QString() : QDir::cleanPath(QDir::current().absoluteFilePath(dir));
}

void SetClassDir(const QString &dir)
{
    classDir() = dir;
}

QString ClassDir()
{
    return classDir();
}

void SetExerciseProgress(std::function<ExerciseProgress()> provider)
{
    exerciseProgress() = std::move(provider);
}

ClassRun::ClassRun(qint16 mode) : m_mode(mode) {}

// Work still running holds its own copies and finishes alone.
ClassRun::~ClassRun() = default;

void ClassRun::startWork(std::function<void()> work)
{
    std::shared_future<void> previous;
    auto promise = std::make_shared<std::promise<void>>();
    {
        std::lock_guard<std::mutex> lock(workLock);
        previous = lastWork();
        m_work = promise->get_future().share();
        lastWork() = m_work;
    }
    auto body = [previous, promise, work = std::move(work)] {
        if (previous.valid())
            previous.wait();
        work();
        promise->set_value();
    };
    if (m_here)
        body();
    else
        std::thread(std::move(body)).detach();
}

RunResult ClassRun::begin()
{
    m_result = RunResult();
    m_phase = Phase::Done;
    const bool sending =
        m_mode == SendReceiveModes::SendAndReceive || m_mode == SendReceiveModes::SendOnly;
    const bool receiving =
        m_mode == SendReceiveModes::SendAndReceive || m_mode == SendReceiveModes::ReceiveOnly;
    if (!sending && !receiving)
        return m_result;

    ClassState state;
    CommitTicket numbered(nullptr);
    try {
        FolderSet set;
        set.describe(texts::unsaved::SendReceive);
        // Reading a folder first finishes a change a kill interrupted.
        set.read(FolderFile::Outbox);
        state = CurrentState(store::DataFile(StateFileName), ::MachineName(), dataDirPath(), ClassDir());
        if (sending) {
            m_result.sendRan = true;
            m_result.send = SendInto(set);
        }
        // The server's queue is the class's: what waits in it, sent now or
        // before the class folder was set, is numbered for the class folder
        // in the same unit as it left the Outbox.
        if (!set.read(FolderFile::ServerQueue).isEmpty()) {
            for (const EmailRec &m : set.read(FolderFile::ServerQueue))
                AppendMail(state.outgoing, m);
            set.change(FolderFile::ServerQueue).clear();
        }
        m_addresses = addressesOf(set.accounts());
        set.alsoWrite(StateFileName, state.bytes());
        numbered = set.commit();
        // The whole run on one thread waits here, taking what the writer
        // did, so that its work below does not wait for itself.
        if (m_here)
            store::Flush();
    } catch (const StoreError &error) {
        m_result.errorText = ErrorBoxText(error);
        return m_result;
    }
    if (m_mode == SendReceiveModes::SendOnly && m_result.send.failed)
        return m_result;
    m_result.receiveRan = receiving;

    m_job = ShareJob();
    m_job.classDir = ClassDir();
    m_job.member = state.member;
    m_job.first = state.first;
    for (const EmailRec &m : state.outgoing)
        m_job.outgoing.append(MessageFileBytes(m));
    m_job.scan = receiving && !m_addresses.isEmpty();
    for (const Cursor &c : state.cursors) {
        if (!m_addresses.contains(c.address))
            continue;
        m_job.retry[c.member] += c.retry;
    }
    QSet<QString> known;
    for (const Cursor &c : state.cursors)
        known.insert(c.member);
    for (const QString &member : known) {
        qint64 from = std::numeric_limits<qint64>::max();
        for (const QString &address : m_addresses) {
            const Cursor *c = state.findCursor(member, address);
            from = qMin(from, c ? c->next : 0);
        }
        m_job.from[member] = from;
    }

    m_outcome = std::make_shared<ShareOutcome>();
    m_phase = Phase::Share;
    // The class folder may only learn a number once the data folder's disk
    // holds it: should that commit fail, nothing goes out, and the numbers
    // are given again by the next run.
    startWork([job = m_job, outcome = m_outcome, numbered] {
        if (numbered.wait())
            *outcome = RunShareJob(job);
        else
            outcome->notRun = true;
    });
    return m_result;
}

bool ClassRun::poll()
{
    for (;;) {
        if (m_phase == Phase::Done)
            return true;
        if (m_work.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
            return false;
        if (m_phase == Phase::Status) {
            m_phase = Phase::Done;
            return true;
        }
        take(*m_outcome);
    }
}

void ClassRun::take(const ShareOutcome &outcome)
{
    m_phase = Phase::Done;
    if (outcome.notRun)
        return;  // the store has told why
    const bool receiving = m_result.receiveRan;
    QByteArray status;
    try {
        FolderSet set;
        set.describe(texts::unsaved::SendReceive);
        set.read(FolderFile::Inbox);
        ClassState state = storedState();
        // Only what this run's job started from can be taken.
        if (state.member != m_job.member || state.first != m_job.first)
            return;

        const AccountList &accounts = set.accounts();
        for (int i = 0; i < outcome.published; ++i) {
            const QString from = TrimSpaces(state.outgoing.at(i).from);
            if (addressesOf(accounts).contains(from))
                ++state.tally(from).sent;
        }
        state.outgoing.remove(0, outcome.published);
        state.first += outcome.published;
        if (outcome.memberGone) {
            state.member = NewMemberName(::MachineName());
            state.first = 0;
        }
        if (outcome.away.isEmpty()) {
            state.awayTold = false;
        } else if (!state.awayTold) {
            m_notices.append(texts::classroom::ShareAway.arg(QDir::toNativeSeparators(m_job.classDir),
                                                            outcome.away));
            state.awayTold = true;
        }

        MailList inbox = set.read(FolderFile::Inbox);
        const qsizetype inboxBefore = inbox.size();
        const QString stamp = NowStamp();
        // A message for an address goes to each account of that address.
        const auto give = [&](const EmailRec &m, const QString &address) {
            if (!AddressMatches(RecipientText(m.to, m.alsoto), address))
                return;
            const auto copies = std::count_if(accounts.begin(), accounts.end(),
                                              [&](const MailBoxRec &a) { return a.address == address; });
            for (qsizetype k = 0; k < copies; ++k) {
                EmailRec copy = m;
                copy.datetime = stamp;
                AppendMail(inbox, copy);
            }
            m_result.receive.received += int(copies);
            ++state.tally(address).received;
        };

        QStringList problems;
        const auto report = [&](const ShareFile &f) {
            const QString path = QDir::toNativeSeparators(m_job.classDir + u'/' + f.member + u'/'
                                                          + MessageFileName(f.number));
            if (toldFiles().contains(path))
                return;
            toldFiles().insert(path);
            problems.append((f.kind == ShareFile::Damaged ? texts::classroom::SkippedFile
                                                          : texts::classroom::RetriedFile)
                                .arg(path, f.why));
        };

        if (receiving) {
            // The cursors as they stood: whether a file is due for an address.
            QMap<std::pair<QString, QString>, Cursor> before;
            for (const Cursor &c : state.cursors)
                before[{c.member, c.address}] = c;
            for (const ShareFile &f : outcome.files) {
                for (const QString &address : m_addresses) {
                    const Cursor old = before.value({f.member, address});
                    const bool inRange = f.number >= old.next
                        && f.number < outcome.scannedTo.value(f.member);
                    const bool retried = old.retry.contains(f.number);
                    if (!inRange && !retried)
                        continue;
                    if (f.kind == ShareFile::Mail)
                        give(f.mail, address);
                    else
                        report(f);
                    Cursor &c = state.cursor(f.member, address);
                    if (inRange)
                        c.next = qMax(c.next, f.number + 1);
                    if (f.kind == ShareFile::Unreadable && !c.retry.contains(f.number)) {
                        c.retry.append(f.number);
                        std::sort(c.retry.begin(), c.retry.end());
                    } else if (f.kind != ShareFile::Unreadable) {
                        c.retry.removeAll(f.number);
                    }
                }
            }
            // Mail that has not reached the class folder yet still reaches
            // the local addresses that have considered everything before it:
            // accounts on one machine mail each other while the share is away.
            for (qsizetype i = 0; i < state.outgoing.size(); ++i) {
                const qint64 n = state.first + i;
                for (const QString &address : m_addresses) {
                    const Cursor *c = state.findCursor(state.member, address);
                    if ((c ? c->next : 0) != n)
                        continue;
                    give(state.outgoing.at(i), address);
                    state.cursor(state.member, address).next = n + 1;
                }
            }
        }
        if (!problems.isEmpty())
            m_notices.append(texts::classroom::BadFiles.arg(problems.join(u'\r')));

        if (inbox.size() != inboxBefore)
            set.change(FolderFile::Inbox) = inbox;
        set.alsoWrite(StateFileName, state.bytes());
        set.commit();
        if (m_result.receive.received > 0) {
            const std::optional<FolderFigures> inboxFigures = store::Figures(FolderFile::Inbox);
            m_result.receive.inboxUnread =
                inboxFigures ? inboxFigures->unread : CountUnread(store::Folder(FolderFile::Inbox));
        }

        if (outcome.away.isEmpty() && !outcome.memberGone) {
            // What the trainer's overview shows of this member.
            QString text = u"[status]\r\n"_s;
            const auto line = [&text](QStringView key, const QString &value) {
                text += key + u'=' + oneLine(value) + u"\r\n"_s;
            };
            line(u"machine", ::MachineName());
            line(u"datadir", dataDirPath());
            line(u"lastrun", Now().toString(u"yyyy-MM-dd HH:mm"_s));
            line(u"published", QString::number(state.first));
            const ExerciseProgress exercise =
                exerciseProgress() ? exerciseProgress()() : ExerciseProgress();
            line(u"exercise", exercise.title);
            line(u"tasks", exercise.done);
            int k = 0;
            for (const QString &address : addressesOf(accounts)) {
                const Tally t = state.tally(address);
                text += u"\r\n[address-%1]\r\n"_s.arg(++k);
                line(u"address", address);
                line(u"sent", QString::number(t.sent));
                line(u"received", QString::number(t.received));
            }
            status = EncodeGb18030(text);
        }
    } catch (const StoreError &error) {
        m_result.errorText = ErrorBoxText(error);
        return;
    }
    if (status.isEmpty())
        return;
    m_phase = Phase::Status;
    startWork([dir = m_job.classDir, member = m_job.member, status] {
        WriteStatus(dir, member, status);
    });
}

RunResult ClassRun::runHere(qint16 mode, QStringList *notices)
{
    ClassRun run(mode);
    run.m_here = true;
    run.begin();
    run.poll();
    if (notices)
        *notices = run.notices();
    return run.result();
}

void WaitForShare(int ms)
{
    std::shared_future<void> work;
    {
        std::lock_guard<std::mutex> lock(workLock);
        work = lastWork();
    }
    if (work.valid())
        work.wait_for(std::chrono::milliseconds(ms));
}

bool StatusTable(const QString &dir, QString *out, QString *why)
{
    const QFileInfo info(dir);
    if (!info.isDir()) {
        *why = texts::classroom::CannotReadClassDir.arg(
            QDir::toNativeSeparators(dir),
            info.exists() ? texts::classroom::NotAFolder : texts::classroom::FolderMissing);
        return false;
    }
    QList<QStringList> rows{{texts::classroom::HeadMachine, texts::classroom::HeadAddress,
                             texts::classroom::HeadSent, texts::classroom::HeadReceived,
                             texts::classroom::HeadLastRun}};
    bool exercises = false;
    QList<QStringList> tasks;
    for (const QString &member : QDir(dir).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        if (!IsMemberName(member))
            continue;
        ProfileFile f;
        try {
            f = ProfileFile::load(dir + u'/' + member + u'/' + StatusFileName);
        } catch (const StoreError &) {
            // A member whose status cannot be read still shows, by its folder.
        }
        QString machine = f.value("status", "machine");
        if (machine.isEmpty())
            machine = member;
        const QString lastRun = f.value("status", "lastrun");
        const QStringList exercise{f.value("status", "exercise"), f.value("status", "tasks")};
        exercises = exercises || !exercise.join(QString()).isEmpty();
        int k = 1;
        for (;; ++k) {
            const QByteArray section = "address-" + QByteArray::number(k);
            if (!f.hasSection(section))
                break;
            rows.append({machine, f.value(section, "address"), f.value(section, "sent"),
                         f.value(section, "received"), lastRun});
            tasks.append(exercise);
        }
        if (k == 1) {
            rows.append({machine, u"-"_s, u"0"_s, u"0"_s,
                         lastRun.isEmpty() ? texts::classroom::NeverRan : lastRun});
            tasks.append(exercise);
        }
    }
    if (exercises) {
        rows[0] << texts::classroom::HeadExercise << texts::classroom::HeadTasks;
        for (int i = 1; i < rows.size(); ++i)
            rows[i] << tasks[i - 1];
    }
    *out = rows.size() == 1 ? texts::classroom::NoMembers.arg(QDir::toNativeSeparators(dir)) + u'\n'
                            : table(rows);
    return true;
}

}  // namespace classroom
