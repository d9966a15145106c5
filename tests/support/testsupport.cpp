#include "testsupport.h"

#include "store/appdir.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "store/mailstore.h"

#include <QFile>
#include <QProcess>
#include <QStringEncoder>

using namespace Qt::Literals::StringLiterals;

namespace testsupport {

DataDir::DataDir() : m_previous(AppDir()) { SetAppDir(m_dir.path()); }
DataDir::~DataDir() { store::Flush(); SetAppDir(m_previous); }

void DataDir::writeBytes(const QString &name, const QByteArray &bytes) const
{
    store::Flush();
    QFile f(filePath(name + u".fixture"_s));
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
        qFatal("cannot write fixture %s", qPrintable(name));
    f.close();
    QFile::remove(filePath(name));
    if (!f.rename(filePath(name)))
        qFatal("cannot place fixture %s", qPrintable(name));
}

QByteArray DataDir::readBytes(const QString &name) const
{
    store::Flush();
    QFile f(filePath(name));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QStringList DataDir::entries() const
{
    store::Flush();
    return QDir(m_dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System, QDir::Name);
}

QByteArray gb(const QString &text) { return QStringEncoder("GB18030").encode(text); }

QByteArray crlfLines(const QStringList &lines)
{
    QByteArray out;
    for (const QString &line : lines)
        out += gb(line) + "\r\n";
    return out;
}

EmailRec mail(const QString &id, const QString &from, const QString &to, const QString &subject, bool unread)
{
    return {id, from, to, {}, subject, u"body"_s, u"24-05-13 09:12"_s, {}, unread ? u"1"_s : u"0"_s};
}

MailList mails(int n, int unread, int first)
{
    MailList list;
    for (int i = 0; i < n; ++i) {
        const QString id = QString::number(first + i);
        list << mail(id, u"sender%1@x.com"_s.arg(i), u"rcpt%1@x.com"_s.arg(i), u"s"_s + id, i < unread);
    }
    return list;
}

void put(const DataDir &dir, int folder, const MailList &mails)
{
    dir.writeBytes(FolderFile::fileName(folder), FolderBytes(mails));
}

void putAccounts(const DataDir &dir, const QStringList &addresses)
{
    QList<MailBoxRec> accounts;
    for (int i = 0; i < addresses.size(); ++i)
        accounts.append({u"name%1"_s.arg(i + 1), u"pop"_s, u"smtp"_s, u"logon%1"_s.arg(i + 1),
                         u"pw"_s, addresses.at(i)});
    dir.writeBytes(MailBoxFileName, AccountBytes(accounts));
}

MailList stored(int folder) { return store::Folder(folder); }

QStringList fieldOf(const MailList &mails, QString EmailRec::*field)
{
    QStringList values;
    for (const EmailRec &m : mails)
        values << m.*field;
    return values;
}

QString ids(int folder) { return fieldOf(stored(folder), &EmailRec::id).join(u'|'); }

bool sameAsStored(const MailList &a, const MailList &b)
{
    if (a != b)
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        const StoredOrigin &x = a[i].origin, &y = b[i].origin;
        if (bool(x) != bool(y) || (x && (x->bytes != y->bytes || x->asRead != y->asRead)))
            return false;
    }
    return true;
}

QByteArray allFiles(const DataDir &dir)
{
    QByteArray all;
    for (int f = 0; f < FolderFile::Count; ++f)
        all += dir.readBytes(FolderFile::fileName(f)) + '|';
    return all + dir.readBytes(MailBoxFileName);
}

Run runProgram(const QString &program, const QStringList &args, const QList<std::pair<QString, QString>> &variables)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    env.remove(u"XDG_DATA_HOME"_s);  // the per-user folder then lies below HOME
    for (const auto &[name, value] : variables)
        env.insert(name, value);
    QProcess p;
    p.setProcessEnvironment(env);
    p.start(program, args);
    if (!p.waitForFinished(60000) || p.exitStatus() != QProcess::NormalExit)
        return {};
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
}

// What a box shows; a question says too whether Enter answers it Yes.
static QString describe(Prompter::Icon icon, const QString &title, const QString &text, const char *kind = "message")
{
    return u"%1(icon %2, \"%3\", \"%4\")"_s.arg(QLatin1StringView(kind)).arg(int(icon))
        .arg(title, QString(text).replace(u"\r"_s, u"<CR>"_s));
}
static const char *question(Prompter::Default enter) { return enter == Prompter::Default::Yes ? "confirm, Enter Yes" : "confirm"; }

ScriptedPrompter::ScriptedPrompter() { setPrompter(this); }
ScriptedPrompter::~ScriptedPrompter() { if (&prompter() == this) setPrompter(nullptr); }

void ScriptedPrompter::expectMessage(Icon icon, const QString &title, const QString &text)
{
    m_expected.append({describe(icon, title, text), false});
}

void ScriptedPrompter::expectConfirm(Icon icon, const QString &title, const QString &text, bool answerYes, Default enter)
{
    m_expected.append({describe(icon, title, text, question(enter)), answerYes});
}

bool ScriptedPrompter::take(const QString &box)
{
    const auto want = m_expected.isEmpty() ? QPair<QString, bool>() : m_expected.takeFirst();
    if (want.first != box)
        m_wrong.append(u"expected "_s + want.first + u" but got "_s + box);
    return want.first == box && want.second;
}

void ScriptedPrompter::message(Icon icon, const QString &title, const QString &text) { take(describe(icon, title, text)); }

bool ScriptedPrompter::confirm(Icon icon, const QString &title, const QString &text, Default answer)
{
    return take(describe(icon, title, text, question(answer)));
}

QByteArray ScriptedPrompter::report() const
{
    QStringList lines = m_wrong;
    for (const auto &box : m_expected)
        lines.append(u"never shown "_s + box.first);
    return lines.join(u'\n').toUtf8();
}

}  // namespace testsupport
