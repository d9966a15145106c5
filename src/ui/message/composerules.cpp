#include "composerules.h"

#include "store/clock.h"
#include "store/textutil.h"

using namespace Qt::Literals::StringLiterals;

namespace compose {

namespace {
constexpr int MaxAttachmentPieces = 21;
}  // namespace

QString ReplySubject(const EmailRec &quoted)
{
    return u"Re:"_s + RightTrim(quoted.subject);
}

QString ForwardSubject(const EmailRec &quoted)
{
    return u"Fw:"_s + RightTrim(quoted.subject);
}

QString QuotedBlock(const EmailRec &quoted, bool reply)
{
    const QString from = reply ? TrimSpaces(quoted.from) : RightTrim(quoted.from);
    return u"\r\n\r\n"_s
        + u"-----Original Message-----\r\n"_s
        + u"From:"_s + from + u"\r\n"_s
        + u"To:"_s + RightTrim(quoted.to) + u"\r\n"_s
        + u"Sent:"_s + RightTrim(quoted.datetime) + u"\r\n"_s
        + u"Subject:"_s + RightTrim(quoted.subject) + u"\r\n"_s
        + u"\r\n"_s
        + u"> "_s + quoted.content;
}

QString JoinAttachments(const QStringList &items)
{
    QString joined;
    for (const QString &item : items)
        joined = LowerAscii(joined) + u' ' + LowerAscii(item);
    return joined;
}

QStringList AttachmentPieces(const QString &field)
{
    QStringList shown;
    const QStringList pieces = field.split(u' ');
    for (const QString &piece : pieces) {
        if (shown.size() == MaxAttachmentPieces || piece.isEmpty() || piece.front() == QChar(0))
            break;
        shown.append(piece);
    }
    return shown;
}

QString AttachmentItemText(const QString &fileTitle, qint64 sizeBytes)
{
    return fileTitle + u'(' + QString::number(double(sizeBytes) / 1024.0, 'f', 2) + u"KB)"_s;
}

EmailRec BuildRecord(const QString &id, const Fields &fields)
{
    EmailRec m;
    m.id = id;
    m.from = LowerAscii(fields.from);
    m.to = LowerAscii(fields.to);
    m.alsoto = RightTrim(LowerAscii(fields.cc));
    m.subject = LowerAscii(fields.subject);
    m.content = LowerAscii(fields.body);
    m.datetime = NowStamp();
    m.attachment = fields.attachment;
    m.isnew = u"0"_s;
    return m;
}

}  // namespace compose
