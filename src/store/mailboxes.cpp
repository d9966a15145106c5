#include "mailboxes.h"

#include "errors.h"
#include "mailstore.h"
#include "profile.h"
#include "textutil.h"
#include "texts.h"

using namespace Qt::Literals::StringLiterals;

namespace {
const QList<FieldFormat> &accountFormats()
{
    // Account values are lower-cased but, unlike message values, keep their
    // trailing blanks.
    static const QList<FieldFormat> formats{{"name", FieldKind::Kept},     {"pop", FieldKind::Kept},
                                        {"smtp", FieldKind::Kept},     {"username", FieldKind::Kept},
                                        {"userpassword", FieldKind::Kept}, {"address", FieldKind::Kept}};
    return formats;
}
}  // namespace

AccountsReading ReadAccounts(const ProfileFile &file)
{
    AccountsReading out;
    out.sections = SortSections(file, "mailbox", "mailbox-");
    const QList<qsizetype> &records = out.sections.records;
    if (records.size() > MAX_MAILBOXES)
        throw IndexError(texts::TooManyAccounts);
    for (qsizetype section : records) {
        MailBoxRec a;
        a.name = RightTrim(file.sectionValue(section, "name"));
        a.pop = RightTrim(file.sectionValue(section, "pop"));
        a.smtp = RightTrim(file.sectionValue(section, "smtp"));
        a.username = RightTrim(file.sectionValue(section, "username"));
        a.userpassword = RightTrim(file.sectionValue(section, "userpassword"));
        a.address = RightTrim(file.sectionValue(section, "address"));
        a.origin = OriginOf(file, section, {a.name, a.pop, a.smtp, a.username, a.userpassword, a.address});
        out.accounts.append(std::move(a));
    }
    return out;
}

QList<MailBoxRec> ParseAccounts(const ProfileFile &file, int count)
{
    // A caller that knows how many accounts it wants is not overruled by
    // the file.
    if (count > MAX_MAILBOXES)
        throw IndexError(texts::TooManyAccounts);
    QList<MailBoxRec> accounts = ReadAccounts(file).accounts;
    if (count != 0)
        accounts.resize(qMax(count, 0));
    return accounts;
}

QByteArray AccountBytes(const QList<MailBoxRec> &accounts)
{
    return AccountBytes(accounts, PlainFrame());
}

QByteArray AccountBytes(const QList<MailBoxRec> &accounts, const FileFrame &frame)
{
    RecordFileWriter out(frame, "mailbox", "mailbox-", accounts.size(), 256 * accounts.size());
    for (const MailBoxRec &a : accounts)
        out.record(accountFormats(), {&a.name, &a.pop, &a.smtp, &a.username, &a.userpassword, &a.address},
                   a.origin);
    return out.finish().bytes;
}
