// Loading and saving a folder of 101 messages at the largest sizes the
// reader allows: every text field at 255 bytes and the body at 2047 bytes,
// mostly Chinese. The floor is reading the file's bytes and decoding them
// in one call, which no parser can beat. The store keeps a folder it has
// read, so a read is a look at the file and a copy; the file parsed afresh
// is what a folder changed behind the program's back costs. A save is a
// commit taken until the writer has it on the disk.

#include "benchutil.h"

#include "store/appdir.h"
#include "store/commit.h"
#include "store/folders.h"
#include "store/mailstore.h"
#include "store/profile.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringDecoder>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

namespace {
// n bytes of GB18030 text: Chinese characters (two bytes each) and one
// ASCII letter where n is odd.
QString fieldOf(int bytes, QChar chinese)
{
    QString s(bytes / 2, chinese);
    if (bytes % 2)
        s += u'x';
    return s;
}

MailList fullFolder()
{
    MailList mails;
    for (int i = 0; i < 101; ++i) {
        EmailRec m;
        m.id = QString::number(10000000 + i);
        m.from = fieldOf(255, u'发');
        m.to = fieldOf(255, u'收');
        m.alsoto = fieldOf(255, u'抄');
        m.subject = fieldOf(255, u'题');
        // 2047 bytes once escaped: the brackets and one line break ("\n")
        // take four bytes.
        m.content = fieldOf(1021, u'正') + u"\r\n"_s + fieldOf(1022, u'文');
        m.datetime = fieldOf(255, u'时');
        m.attachment = fieldOf(255, u'附');
        m.isnew = u"1"_s;
        mails.append(m);
    }
    return mails;
}

void save(const MailList &mails)
{
    FolderSet set;
    set.change(FolderFile::Inbox) = mails;
    set.commit();
    store::Flush();
}
}  // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    SetAppDir(dir.path());

    const MailList mails = fullFolder();
    save(mails);
    const QString path = AppFilePath(FolderFile::fileName(FolderFile::Inbox));

    const int runs = 200;
    const double floorMs = bench::medianMs(runs, [&] {
        QFile f(path);
        f.open(QIODevice::ReadOnly);
        QStringDecoder decoder("GB18030");
        const QString text = decoder.decode(f.readAll());
        Q_UNUSED(text.size());
    });

    MailList loaded;
    const double loadMs = bench::medianMs(runs, [&] { loaded = store::Folder(FolderFile::Inbox); });
    if (loaded.size() != mails.size() || loaded[100].content != mails[100].content) {
        std::fprintf(stderr, "bench_store: the full folder did not read back whole\n");
        return 1;
    }

    const double parseMs = bench::medianMs(runs, [&] {
        QFile f(path);
        f.open(QIODevice::ReadOnly);
        Q_UNUSED(ParseFolder(ProfileFile::parse(f.readAll())).size());
    });

    const double saveMs = bench::medianMs(runs, [&] { save(mails); });

    // The syncs take most of a save and swing with the disk; without them
    // the figures show the work of the program itself: new records encoded,
    // and records as they were read, which are a copy of their bytes.
    SetSyncing(false);
    const double saveNoSyncMs = bench::medianMs(runs, [&] { save(mails); });
    loaded = store::Folder(FolderFile::Inbox);
    const double keptNoSyncMs = bench::medianMs(runs, [&] { save(loaded); });
    SetSyncing(true);

    bench::printRow("a folder read, 101 x max sizes", loadMs, floorMs);
    bench::printRow("  the file parsed afresh, as after a change", parseMs, floorMs);
    bench::printRow("a folder saved, 101 x max sizes", saveMs);
    bench::printRow("  the same without syncing", saveNoSyncMs);
    bench::printRow("  the folder as read, saved again, without syncing", keptNoSyncMs);
    return 0;
}
