#include "testsupport.h"

#include "store/appdir.h"

#include <QDir>
#include <QFile>
#include <QStringEncoder>

namespace testsupport {

DataDir::DataDir() : m_previous(AppDir())
{
    SetAppDir(m_dir.path());
}

DataDir::~DataDir()
{
    SetAppDir(m_previous);
}

QString DataDir::path() const
{
    return m_dir.path();
}

QString DataDir::filePath(const QString &name) const
{
    return QDir(m_dir.path()).filePath(name);
}

void DataDir::writeLines(const QString &name, const QStringList &lines) const
{
    writeBytes(name, crlfLines(lines));
}

void DataDir::writeBytes(const QString &name, const QByteArray &bytes) const
{
    QFile f(filePath(name));
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
        qFatal("cannot write fixture %s", qPrintable(name));
}

QByteArray DataDir::readBytes(const QString &name) const
{
    QFile f(filePath(name));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

bool DataDir::exists(const QString &name) const
{
    return QFile::exists(filePath(name));
}

QByteArray gb(const QString &text)
{
    QStringEncoder encoder("GB18030");
    return encoder.encode(text);
}

QByteArray crlfLines(const QStringList &lines)
{
    QByteArray out;
    for (const QString &line : lines)
        out += gb(line) + "\r\n";
    return out;
}

namespace {
QString describe(bool isConfirm, Prompter::Icon icon, const QString &title, const QString &text)
{
    QString t = text;
    t.replace(QStringLiteral("\r"), QStringLiteral("<CR>"));
    return QStringLiteral("%1(icon %2, \"%3\", \"%4\")")
        .arg(isConfirm ? QStringLiteral("confirm") : QStringLiteral("message"))
        .arg(int(icon))
        .arg(title, t);
}
}  // namespace

ScriptedPrompter::ScriptedPrompter()
{
    setPrompter(this);
}

ScriptedPrompter::~ScriptedPrompter()
{
    setPrompter(nullptr);
}

void ScriptedPrompter::expectMessage(Icon icon, const QString &title, const QString &text)
{
    m_expected.append({false, icon, title, text, false});
}

void ScriptedPrompter::expectConfirm(Icon icon, const QString &title, const QString &text,
                                     bool answerYes)
{
    m_expected.append({true, icon, title, text, answerYes});
}

bool ScriptedPrompter::take(const Box &got)
{
    ++m_shown;
    const QString gotText = describe(got.isConfirm, got.icon, got.title, got.text);
    if (m_expected.isEmpty()) {
        m_unexpected.append(QStringLiteral("unexpected ") + gotText);
        return false;
    }
    const Box want = m_expected.takeFirst();
    if (want.isConfirm != got.isConfirm || want.icon != got.icon || want.title != got.title
        || want.text != got.text) {
        m_unexpected.append(QStringLiteral("expected ")
                            + describe(want.isConfirm, want.icon, want.title, want.text)
                            + QStringLiteral(" but got ") + gotText);
        return false;
    }
    return want.answer;
}

void ScriptedPrompter::message(Icon icon, const QString &title, const QString &text)
{
    take({false, icon, title, text, false});
}

bool ScriptedPrompter::confirm(Icon icon, const QString &title, const QString &text,
                               Default answer)
{
    m_defaults.append(answer);
    return take({true, icon, title, text, false});
}

QByteArray ScriptedPrompter::report() const
{
    QStringList lines = m_unexpected;
    for (const Box &b : m_expected)
        lines.append(QStringLiteral("never shown ") + describe(b.isConfirm, b.icon, b.title, b.text));
    return lines.join(u'\n').toUtf8();
}

}  // namespace testsupport
