#include "mailboxes.h"

#include "errors.h"
#include "mailstore.h"
#include "profile.h"
#include "textutil.h"
#include "texts.h"

using namespace Qt::Literals::StringLiterals;

namespace {
QByteArray sectionName(int k)
{
    return "mailbox-" + QByteArray::number(k + 1);
}
}  // namespace

QList<MailBoxRec> ParseAccounts(const ProfileFile &file, int count)
{
    // A caller that knows how many accounts it wants is not overruled by
    // the file; only four characters of "number" are ever read.
    const int number = count != 0 ? count : LeadingNumber(file.value("mailbox", "number", 5));
    if (number > MAX_MAILBOXES)
        throw IndexError(texts::TooManyAccounts);

    QList<MailBoxRec> accounts(qMax(number, 0));
    for (int k = 0; k < accounts.size(); ++k) {
        const QByteArray section = sectionName(k);
        MailBoxRec &a = accounts[k];
        a.name = RightTrim(file.value(section, "name"));
        a.pop = RightTrim(file.value(section, "pop"));
        a.smtp = RightTrim(file.value(section, "smtp"));
        a.username = RightTrim(file.value(section, "username"));
        a.userpassword = RightTrim(file.value(section, "userpassword"));
        a.address = RightTrim(file.value(section, "address"));
    }
    return accounts;
}

QByteArray AccountBytes(const QList<MailBoxRec> &accounts)
{
    // Account values are lower-cased but, unlike message values, keep their
    // trailing blanks.
    ProfileWriter out;
    out.section("mailbox");
    out.line(u"number", QString::number(accounts.size()));
    out.line(QStringView());
    for (int k = 0; k < accounts.size(); ++k) {
        const MailBoxRec &a = accounts[k];
        out.section(sectionName(k));
        out.line(u"name", a.name);
        out.line(u"pop", a.pop);
        out.line(u"smtp", a.smtp);
        out.line(u"username", a.username);
        out.line(u"userpassword", a.userpassword);
        out.line(u"address", a.address);
        out.line(QStringView());
    }
    return out.bytes();
}

void LoadMailBoxes(MailBoxArray &accounts, MailCount &count)
{
    const QList<MailBoxRec> read = count != 0 ? store::Accounts(count) : store::Accounts();
    for (int k = 0; k < read.size(); ++k)
        accounts[k] = read[k];
    count = MailCount(read.size());
}

void SaveMailBoxes(const MailBoxArray &accounts, MailCount count)
{
    if (count > MAX_MAILBOXES)
        throw IndexError(texts::TooManyAccounts);
    FolderSet set;
    set.changeAccounts() = QList<MailBoxRec>(accounts.begin(), accounts.begin() + qMax<int>(count, 0));
    set.commit();
}

void RemoveMailBoxAt(MailBoxArray &accounts, int position)
{
    if (position < 0)
        throw IndexError(texts::BadPosition);
    const int upper = MAX_MAILBOXES - 1;
    for (int i = position; i < upper; ++i)
        accounts[i] = accounts[i + 1];
}
