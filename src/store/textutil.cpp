#include "textutil.h"

#include <climits>

QString LowerAscii(const QString &text)
{
    QString out = text;
    for (QChar &c : out) {
        const char16_t u = c.unicode();
        if (u >= u'A' && u <= u'Z')
            c = QChar(char16_t(u + (u'a' - u'A')));
    }
    return out;
}

QStringView RightTrimmed(QStringView text)
{
    while (!text.isEmpty() && text.back() == u' ')
        text.chop(1);
    return text;
}

QString RightTrim(const QString &text)
{
    return text.left(RightTrimmed(text).size());
}

QString TrimSpaces(const QString &text)
{
    qsizetype begin = 0;
    while (begin < text.size() && text.at(begin) == u' ')
        ++begin;
    return RightTrim(text.mid(begin));
}

namespace {
// The digit run at the start of text, after leading blanks.
QStringView leadingDigits(const QString &text)
{
    qsizetype i = 0;
    while (i < text.size() && (text.at(i) == u' ' || text.at(i) == u'\t'
                               || text.at(i) == u'\r' || text.at(i) == u'\n'))
        ++i;
    qsizetype j = i;
    while (j < text.size() && text.at(j) >= u'0' && text.at(j) <= u'9')
        ++j;
    return QStringView(text).mid(i, j - i);
}
}  // namespace

QString LeadingNumberText(const QString &text)
{
    QStringView digits = leadingDigits(text);
    while (digits.size() > 1 && digits.front() == u'0')
        digits = digits.mid(1);
    return digits.isEmpty() ? QStringLiteral("0") : digits.toString();
}

int LeadingNumber(const QString &text)
{
    qint64 value = 0;
    for (QChar c : leadingDigits(text)) {
        value = value * 10 + (c.unicode() - u'0');
        if (value > INT_MAX)
            return INT_MAX;
    }
    return int(value);
}

QString ToWidgetText(const QString &body)
{
    QString text = body;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return text;
}

QString FromWidgetText(const QString &text)
{
    QString body = text;
    body.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    body.replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
    return body;
}
