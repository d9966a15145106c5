#include "fixtures.h"

#include "store/records.h"

using namespace Qt::Literals::StringLiterals;

namespace fixtures {

QByteArray folderBytes(const QList<Mail> &mails)
{
    QStringList lines = {u"[email]"_s, u"number="_s + QString::number(mails.size()), QString()};
    for (int k = 1; k <= mails.size(); ++k) {
        const Mail &m = mails.at(k - 1);
        lines << u"[email-%1]"_s.arg(k) << u"id="_s + m.id << u"from="_s + m.from
              << u"to="_s + m.to << u"alsoto="_s + m.alsoto << u"subject="_s + m.subject
              << u"content="_s + m.content << u"datetime="_s + m.datetime
              << u"attachment="_s + m.attachment << u"isnew="_s + m.isnew << QString();
    }
    return testsupport::crlfLines(lines);
}

void writeFolder(const testsupport::DataDir &dir, int folder, const QList<Mail> &mails)
{
    dir.writeBytes(FolderFile::fileName(folder), folderBytes(mails));
}

void writeAccounts(const testsupport::DataDir &dir, const QStringList &addresses)
{
    QStringList lines = {u"[mailbox]"_s, u"number="_s + QString::number(addresses.size()),
                         QString()};
    for (int k = 1; k <= addresses.size(); ++k) {
        const QString &address = addresses.at(k - 1);
        lines << u"[mailbox-%1]"_s.arg(k) << u"name=n%1"_s.arg(k) << u"pop=pop"_s
              << u"smtp=smtp"_s << u"username=u"_s << u"userpassword=p"_s
              << u"address="_s + address << QString();
    }
    dir.writeLines(MailBoxFileName, lines);
}

QList<Mail> mails(int n, int unread)
{
    QList<Mail> list;
    for (int i = 0; i < n; ++i) {
        Mail m;
        m.id = QString::number(20000000 + i);
        m.from = u"sender%1@x.com"_s.arg(i);
        m.to = u"rcpt%1@x.com"_s.arg(i);
        m.subject = u"subject %1"_s.arg(i);
        m.content = u"[body %1]"_s.arg(i);
        m.isnew = i < unread ? u"1"_s : u"0"_s;
        list.append(m);
    }
    return list;
}

}  // namespace fixtures
