#include "recipients.h"

#include "store/textutil.h"

using namespace Qt::Literals::StringLiterals;

bool RecipientsAcceptable(const QString &to, const QString &alsoto)
{
    if (!to.contains(u'@'))
        return false;
    // A copy line pasted from elsewhere may carry NUL characters; they are
    // dropped before deciding whether the line is empty.
    QString copies = alsoto;
    copies.remove(QChar(u'\0'));
    copies = TrimSpaces(copies);
    return copies.isEmpty() || copies.contains(u'@');
}

QString RecipientText(const QString &to, const QString &alsoto)
{
    QString text = to + u';' + alsoto;
    for (QChar &c : text) {
        if (c == u';' || c == u',')
            c = QChar(u'\0');
    }
    return text;
}

bool AddressMatches(const QString &recipientText, const QString &address)
{
    // A plain substring search on purpose: the separators only keep two
    // neighbouring addresses from running together, they do not anchor the
    // match. An empty address therefore matches every message.
    return recipientText.contains(address, Qt::CaseSensitive);
}

QString ToLine(const EmailRec &m, bool inInbox, const QList<MailBoxRec> &accounts)
{
    const QString recipients = RecipientText(TrimSpaces(m.to), TrimSpaces(m.alsoto));
    QString line = m.to;
    // The last account examined decides, not the first that matches: its
    // address when the message was sent to it, else the message's own To.
    const int examined = int(qMin<qsizetype>(accounts.size(), MAX_MAILBOXES));
    for (int i = 0; i < examined; ++i) {
        const QString &address = accounts.at(i).address;
        line = inInbox && AddressMatches(recipients, address) ? address : m.to;
    }
    return line;
}
