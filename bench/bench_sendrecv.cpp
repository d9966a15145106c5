// A send-and-receive run of 101 Outbox messages at the largest account
// count, 21. Only the engine is timed, until the writer has its files on
// the disk; the files are put back to their starting state between runs.
// Timed as the program runs it (each step's files synced, journal and all)
// and again without the syncs, so the table shows what making it durable
// costs.

#include "benchutil.h"

#include "sendrecv/engine.h"
#include "store/appdir.h"
#include "store/commit.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "store/mailstore.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    SetAppDir(dir.path());

    FolderSet accounts;
    for (int j = 0; j < MAX_MAILBOXES; ++j)
        accounts.changeAccounts().append({u"user %1"_s.arg(j), u"pop.example.cn"_s, u"smtp.example.cn"_s,
                                          u"user%1"_s.arg(j), u"secret"_s, u"user%1@example.cn"_s.arg(j)});
    accounts.commitAndWait();

    // Every message reaches exactly one account, so the Inbox ends full.
    QString body;
    for (int line = 0; line < 12; ++line)
        body += u"第%1行：这是一封用于测量收发速度的邮件 line of the message body\r\n"_s.arg(line);
    constexpr int Messages = 101;
    FolderSet set;
    MailList &outbox = set.change(FolderFile::Outbox);
    for (int i = 0; i < Messages; ++i)
        outbox << EmailRec{QString::number(10000000 + i), u"user0@example.cn"_s,
                     u"someone@else.cn;user%1@example.cn"_s.arg(i % MAX_MAILBOXES),
                     u"copy@else.cn"_s, u"测量 %1"_s.arg(i), body, u"24-01-01 08:00"_s,
                     u"a.txt"_s, u"0"_s};
    set.commit();
    store::Flush();
    QFile outboxFile(AppFilePath(FolderFile::fileName(FolderFile::Outbox)));
    outboxFile.open(QIODevice::ReadOnly);
    const QByteArray fullOutbox = outboxFile.readAll();

    auto reset = [&] {
        QFile f(outboxFile.fileName());
        f.open(QIODevice::WriteOnly);
        f.write(fullOutbox);
        for (int folder : {FolderFile::Inbox, FolderFile::SentItems, FolderFile::ServerQueue})
            QFile::remove(AppFilePath(FolderFile::fileName(folder)));
        store::Forget();
    };

    const auto medianRun = [&] {
        constexpr int runs = 31;
        QList<double> times;
        for (int i = 0; i <= runs; ++i) {
            reset();
            QElapsedTimer t;
            t.start();
            const RunResult r = RunSendReceive(SendReceiveModes::SendAndReceive);
            store::Flush();
            const double ms = double(t.nsecsElapsed()) / 1e6;
            if (r.send.sent != Messages || r.receive.received != Messages)
                qFatal("the run did not move every message");
            if (i > 0)  // the first run warms the caches
                times.append(ms);
        }
        std::sort(times.begin(), times.end());
        return times.at(times.size() / 2);
    };
    const double synced = medianRun();
    SetSyncing(false);
    const double unsynced = medianRun();
    bench::printRow("send and receive, 101 mails, 21 accounts", synced);
    bench::printRow("  the same, files and folder not synced", unsynced);
    return 0;
}
