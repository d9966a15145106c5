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
