// Writes the system refuses: every command that saves runs in a child
// process in which the kernel fails its writes, and must end with FileError
// naming the cause, telling the truth about the files, and leaving every
// file of the data folder exactly as it was, with nothing of its own left
// behind. A child, because the limits used (a file-size limit, dropping
// root for a read-only folder) cannot be taken back within one process.

#include "mail/commands.h"
#include "sendrecv/engine.h"
#include "store/clock.h"
#include "store/errors.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "testsupport.h"
#include "texts.h"

#include <QDir>
#include <QMap>
#include <QTest>

#include <csignal>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using testsupport::DataDir;

namespace {

enum class Fault { NothingFits, LargestCutShort, ReadOnlyFolder, FolderInFilesPlace };

EmailRec mail(int id, const QString &to, const QString &isnew = u"1"_s)
{
    // Bodies long enough that every folder file outgrows the journal.
    return {QString::number(id), u"a@x.cn"_s, to, QString(), u"主题 %1"_s.arg(id),
            QString(u"正文 body\r\n"_s).repeated(20), u"24-01-01 08:00"_s, QString(), 0, 0, isnew};
}

// Every folder holds something for each command to act on.
void fill()
{
    FolderSet set;
    set.changeAccounts() = {{u"a"_s, u"p"_s, u"s"_s, u"a"_s, u"pw"_s, u"a@x.cn"_s},
                            {u"b"_s, u"p"_s, u"s"_s, u"b"_s, u"pw"_s, u"b@x.cn"_s}};
    set.change(FolderFile::Inbox) = {mail(11, u"a@x.cn"_s), mail(12, u"a@x.cn"_s, u"0"_s)};
    set.change(FolderFile::Outbox) = {mail(21, u"b@x.cn"_s)};
    set.change(FolderFile::SentItems) = {mail(31, u"b@x.cn"_s)};
    set.change(FolderFile::DeletedItems) = {mail(41, u"a@x.cn"_s), mail(42, u"c@y.cn"_s)};
    set.change(FolderFile::Drafts) = {mail(51, u"b@x.cn"_s)};
    set.change(FolderFile::ServerQueue) = {mail(61, u"a@x.cn;b@x.cn"_s), mail(62, u"c@y.cn"_s)};
    set.commit();
}

MailRef shown(int folder, int index)
{
    return {folder, index, store::Folder(folder).at(index)};
}

StoredMail opened(int folder, int index)
{
    const EmailRec m = store::Folder(folder).at(index);
    return {folder, m.id, index, m};
}

const QList<std::pair<const char *, std::function<void()>>> commands{
    {"SaveEmails", [] {
         EmailArray a;
         MailCount n = 0;
         LoadEmails(FolderFile::Inbox, a, n);
         a[n++] = mail(13, u"a@x.cn"_s);
         SaveEmails(FolderFile::Inbox, a, n);
     }},
    {"SaveMailBoxes", [] {
         MailBoxArray a;
         MailCount n = 0;
         LoadMailBoxes(a, n);
         a[n++] = {u"c"_s, u"p"_s, u"s"_s, u"c"_s, QString(u"pw"_s).repeated(100), u"c@x.cn"_s};
         SaveMailBoxes(a, n);
     }},
    {"SendStep", [] { SendStep(); }},
    {"ReceiveStep", [] { ReceiveStep(); }},
    {"MoveToDeletedItems", [] { MoveToDeletedItems(shown(FolderFile::Inbox, 0)); }},
    {"DeleteForGood", [] { DeleteForGood(shown(FolderFile::DeletedItems, 0)); }},
    {"MarkRead", [] { MarkRead(shown(FolderFile::Inbox, 0)); }},
    {"SaveDraft", [] {
         bool created = false;
         SaveDraft(mail(0, u"c@y.cn"_s), {}, &created);
     }},
    {"StoreForSend", [] { StoreForSend(mail(51, u"c@y.cn"_s), opened(FolderFile::Drafts, 0)); }},
    {"StoreForSendLater",
     [] { StoreForSendLater(mail(41, u"c@y.cn"_s), opened(FolderFile::DeletedItems, 0)); }},
};

// Every entry of the data folder: a file's bytes, or a mark for a folder.
QMap<QString, QByteArray> entries(const DataDir &dir)
{
    QMap<QString, QByteArray> all;
    const QFileInfoList infos = QDir(dir.path()).entryInfoList(
        QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
    for (const QFileInfo &info : infos)
        all[info.fileName()] = info.isDir() ? "<folder>" : dir.readBytes(info.fileName());
    return all;
}

struct Outcome
{
    QString error;  // the class of what the command threw, or how it ended
    QString text;
    bool unchanged = false;
};

// Runs command in a child that first calls restrict, and reports back.
Outcome runInChild(const std::function<void()> &restrict, const std::function<void()> &command)
{
    int pipeFds[2];
    if (::pipe(pipeFds) != 0)
        return {u"no pipe"_s, {}, false};
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::close(pipeFds[0]);
        restrict();
        QByteArray report = "returned\n0\n";
        try {
            command();
        } catch (const StoreError &e) {
            report = (dynamic_cast<const FileError *>(&e) ? "FileError\n" : "StoreError\n")
                + QByteArray(e.filesUnchanged() ? "1\n" : "0\n") + e.userText().toUtf8();
        }
        const bool written = ::write(pipeFds[1], report.constData(), report.size()) == report.size();
        ::_exit(written ? 0 : 1);
    }
    ::close(pipeFds[1]);
    QByteArray report;
    char buffer[4096];
    for (ssize_t n; (n = ::read(pipeFds[0], buffer, sizeof buffer)) > 0;)
        report.append(buffer, n);
    ::close(pipeFds[0]);
    int status = 0;
    ::waitpid(pid, &status, 0);
    const QList<QByteArray> parts = report.split('\n');
    if (WIFEXITED(status) && WEXITSTATUS(status) == 3)
        return {u"root kept"_s, {}, false};
    if (!WIFEXITED(status) || parts.size() < 3)
        return {u"child ended with status %1"_s.arg(status), {}, false};
    return {QString::fromUtf8(parts[0]), QString::fromUtf8(report.mid(parts[0].size() + 3)),
            parts[1] == "1"};
}

void limitFileSize(rlim_t bytes)
{
    // Ignored, SIGXFSZ lets write() fail with EFBIG instead of killing.
    ::signal(SIGXFSZ, SIG_IGN);
    rlimit limit;
    ::getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes;
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

// Root writes into any folder; as nobody the child meets the folder's mode.
void dropRoot()
{
    if (::geteuid() == 0
        && (::setgroups(0, nullptr) != 0 || ::setgid(65534) != 0 || ::setuid(65534) != 0))
        ::_exit(3);
}

}  // namespace

class tst_storefaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { SetClock([] { return QDateTime({2024, 2, 3}, {4, 5}); }); }

    void failedWriteChangesNothing_data()
    {
        QTest::addColumn<int>("command");
        QTest::addColumn<Fault>("fault");
        const std::pair<const char *, Fault> faults[] = {
            {"nothing fits", Fault::NothingFits},
            {"largest file cut short", Fault::LargestCutShort},
            {"read-only folder", Fault::ReadOnlyFolder},
            {"a folder in its file's place", Fault::FolderInFilesPlace}};
        for (int c = 0; c < commands.size(); ++c) {
            for (const auto &[name, fault] : faults)
                QTest::addRow("%s, %s", commands[c].first, name) << c << fault;
        }
    }

    void failedWriteChangesNothing()
    {
        QFETCH(int, command);
        QFETCH(Fault, fault);
        const auto &run = commands.at(command).second;

        // What the command writes when nothing stops it.
        QString largest;
        qsizetype largestSize = 0;
        {
            DataDir dry;
            fill();
            const auto before = entries(dry);
            run();
            const auto after = entries(dry);
            for (auto it = after.cbegin(); it != after.cend(); ++it) {
                if (it.value() != before.value(it.key()) && it.value().size() > largestSize) {
                    largest = it.key();
                    largestSize = it.value().size();
                }
            }
            QVERIFY2(!largest.isEmpty(), "the command wrote nothing");
        }

        DataDir dir;
        fill();
        std::function<void()> restrict = [] {};
        QString reason = texts::ReasonTooLarge;
        switch (fault) {
        case Fault::NothingFits:
            restrict = [] { limitFileSize(0); };
            break;
        case Fault::LargestCutShort:
            // Files written before it must be taken back as well.
            restrict = [largestSize] { limitFileSize(rlim_t(largestSize - 1)); };
            break;
        case Fault::ReadOnlyFolder:
            QVERIFY(::chmod(QFile::encodeName(dir.path()).constData(), 0555) == 0);
            restrict = dropRoot;
            reason = texts::ReasonNoPermission;
            break;
        case Fault::FolderInFilesPlace:
            QVERIFY(QFile::remove(dir.filePath(largest)) && QDir(dir.path()).mkdir(largest));
            reason = texts::ReasonIsFolder;
            break;
        }
        const auto before = entries(dir);
        const Outcome got = runInChild(restrict, run);
        ::chmod(QFile::encodeName(dir.path()).constData(), 0700);
        if (got.error == u"root kept")
            QSKIP("running as root without the right to become another user");

        QCOMPARE(got.error, u"FileError"_s);
        QVERIFY2(got.text.contains(reason), qPrintable(got.text));
        QVERIFY(got.unchanged);
        QCOMPARE(entries(dir), before);
    }
};

QTEST_GUILESS_MAIN(tst_storefaults)
#include "tst_storefaults.moc"
