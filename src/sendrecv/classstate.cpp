#include "classstate.h"

#include "store/folders.h"
#include "store/profile.h"
#include "store/textutil.h"

#include <QRandomGenerator>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace classroom {

namespace {

// Paths and names may be long; they are read back whole.
constexpr int LongValue = 4096;

QString oneLine(QString value)
{
    value.replace(u'\r', u' ').replace(u'\n', u' ');
    return value;
}

// The text a value reads back as from class.dat: the reader trims blanks
// and strips quotes, so a value is compared as it would come back.
QString asStored(const QString &value)
{
    const ProfileFile f = ProfileFile::parseGb18030(EncodeGb18030(u"[v]\r\nv="_s + oneLine(value)));
    return f.value("v", "v", LongValue);
}

QList<qint64> numbers(const QString &text)
{
    QList<qint64> out;
    for (const QString &part : text.split(u',', Qt::SkipEmptyParts)) {
        bool ok = false;
        const qint64 n = part.trimmed().toLongLong(&ok);
        if (ok && n >= 0)
            out.append(n);
    }
    std::sort(out.begin(), out.end());
    out.erase(std::unique(out.begin(), out.end()), out.end());
    return out;
}

qint64 number(const ProfileFile &f, QByteArrayView section, QByteArrayView key)
{
    return qMax<qint64>(0, f.value(section, key).toLongLong());
}

}  // namespace

Cursor &ClassState::cursor(const QString &member, const QString &address)
{
    for (Cursor &c : cursors) {
        if (c.member == member && c.address == address)
            return c;
    }
    cursors.append({member, address, 0, {}});
    return cursors.last();
}

const Cursor *ClassState::findCursor(const QString &member, const QString &address) const
{
    for (const Cursor &c : cursors) {
        if (c.member == member && c.address == address)
            return &c;
    }
    return nullptr;
}

Tally &ClassState::tally(const QString &address)
{
    for (Tally &t : tallies) {
        if (t.address == address)
            return t;
    }
    tallies.append({address, 0, 0});
    return tallies.last();
}

ClassState ClassState::parse(const QByteArray &bytes)
{
    ClassState s;
    const ProfileFile f = ProfileFile::parse(bytes);
    if (!f.hasSection("class"))
        return s;
    s.member = f.value("class", "member", LongValue);
    s.machine = f.value("class", "machine", LongValue);
    s.dataDir = f.value("class", "datadir", LongValue);
    s.classDir = f.value("class", "classdir", LongValue);
    s.first = number(f, "class", "first");
    s.awayTold = f.value("class", "away") == u"1";
    for (int k = 1;; ++k) {
        const QByteArray section = "cursor-" + QByteArray::number(k);
        if (!f.hasSection(section))
            break;
        s.cursors.append({f.value(section, "member", LongValue), f.value(section, "address", LongValue),
                          number(f, section, "next"), numbers(f.value(section, "retry", LongValue))});
    }
    for (int k = 1;; ++k) {
        const QByteArray section = "tally-" + QByteArray::number(k);
        if (!f.hasSection(section))
            break;
        s.tallies.append({f.value(section, "address", LongValue), number(f, section, "sent"),
                          number(f, section, "received")});
    }
    // The outgoing mail is a folder of its own in the same file.
    s.outgoing = ParseFolder(f);
    return s;
}

QByteArray ClassState::bytes() const
{
    QString text;
    const auto line = [&text](QStringView key, const QString &value) {
        text += key + u'=' + oneLine(value) + u"\r\n"_s;
    };
    text += u"[class]\r\n"_s;
    line(u"member", member);
    line(u"machine", machine);
    line(u"datadir", dataDir);
    line(u"classdir", classDir);
    line(u"first", QString::number(first));
    line(u"away", awayTold ? u"1"_s : u"0"_s);
    text += u"\r\n"_s;
    int k = 0;
    for (const Cursor &c : cursors) {
        text += u"[cursor-%1]\r\n"_s.arg(++k);
        line(u"member", c.member);
        line(u"address", c.address);
        line(u"next", QString::number(c.next));
        QStringList retry;
        for (qint64 n : c.retry)
            retry.append(QString::number(n));
        line(u"retry", retry.join(u','));
        text += u"\r\n"_s;
    }
    k = 0;
    for (const Tally &t : tallies) {
        text += u"[tally-%1]\r\n"_s.arg(++k);
        line(u"address", t.address);
        line(u"sent", QString::number(t.sent));
        line(u"received", QString::number(t.received));
        text += u"\r\n"_s;
    }
    return EncodeGb18030(text) + FolderBytes(outgoing);
}

ClassState CurrentState(const QByteArray &stored, const QString &machine, const QString &dataDir,
                        const QString &classDir)
{
    ClassState s = ClassState::parse(stored);
    if (!s.member.isEmpty() && s.machine == asStored(machine) && s.dataDir == asStored(dataDir)
        && s.classDir == asStored(classDir))
        return s;
    s.member = NewMemberName(machine);
    s.machine = asStored(machine);
    s.dataDir = asStored(dataDir);
    s.classDir = asStored(classDir);
    s.first = 0;
    s.awayTold = false;
    return s;
}

QString NewMemberName(const QString &machine)
{
    QString name;
    for (QChar c : LowerAscii(machine)) {
        const bool plain = (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9') || c == u'-'
            || c == u'_' || c == u'.';
        name += plain ? c : u'_';
    }
    name = name.left(32);
    if (name.isEmpty() || name.front() == u'.' || name.front() == u'-')
        name.prepend(u"pc"_s);
    return name + u'-'
        + u"%1"_s.arg(QRandomGenerator::system()->generate(), 8, 16, QChar(u'0'));
}

bool IsMemberName(const QString &name)
{
    static const QRegularExpression member(u"^[a-z0-9_][a-z0-9._-]*-[0-9a-f]{8}$"_s);
    return member.match(name).hasMatch();
}

}  // namespace classroom
