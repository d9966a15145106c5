#include "mail/composerules.h"

#include "store/clock.h"
#include "store/profile.h"
#include "store/textutil.h"

#include <QStringDecoder>

using namespace Qt::Literals::StringLiterals;

namespace compose {

namespace {
constexpr int MaxAttachmentPieces = 21;
constexpr qsizetype ValueLimit = ProfileFile::ValueBuffer - 1;
// The escaped body sits between two brackets, and "\n" takes the two bytes
// the CR LF it stands for took.
constexpr qsizetype BodyLimit = ProfileFile::ContentBuffer - 1 - 2;

QString fitted(const QString &value, qsizetype limit)
{
    const QByteArray bytes = EncodeGb18030(value);
    if (bytes.size() <= limit)
        return value;
    QStringDecoder decoder("GB18030");
    return decoder.decode(cutToCharacters(bytes, limit));
}

struct FieldOf
{
    Overflow::Field field;
    QString EmailRec::*member;
    qsizetype limit;
};
const FieldOf checkedFields[] = {
    {Overflow::From, &EmailRec::from, ValueLimit},
    {Overflow::To, &EmailRec::to, ValueLimit},
    {Overflow::Cc, &EmailRec::alsoto, ValueLimit},
    {Overflow::Subject, &EmailRec::subject, ValueLimit},
    {Overflow::Body, &EmailRec::content, BodyLimit},
    {Overflow::Attachment, &EmailRec::attachment, ValueLimit},
};

// A value as the file holds it: lower-cased and right-trimmed.
QString asStored(const QString &value)
{
    return RightTrim(LowerAscii(value));
}
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

QList<Overflow> Overflows(const EmailRec &m)
{
    QList<Overflow> found;
    for (const FieldOf &f : checkedFields) {
        const QString value = f.field == Overflow::Body ? LowerAscii(m.*f.member)
                                                        : asStored(m.*f.member);
        const qsizetype bytes = EncodeGb18030(value).size();
        if (bytes > f.limit)
            found.append({f.field, bytes, f.limit, (CutToFit(m).*f.member).size()});
    }
    return found;
}

EmailRec CutToFit(EmailRec m)
{
    for (const FieldOf &f : checkedFields) {
        const bool body = f.field == Overflow::Body;
        QString value = fitted(body ? LowerAscii(m.*f.member) : asStored(m.*f.member), f.limit);
        // A line break is never cut in half: a CR alone would end the line
        // it is stored on.
        if (body && value.size() < (m.*f.member).size() && value.endsWith(u'\r'))
            value.chop(1);
        m.*f.member = value;
    }
    return m;
}

}  // namespace compose
