#include "exercise.h"

#include "store/commit.h"
#include "store/folders.h"
#include "store/mailboxes.h"
#include "store/profile.h"
#include "store/textutil.h"
#include "texts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <cerrno>
#include <map>
#include <optional>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace exercise {

namespace t = texts::exercise;

namespace {

// A line longer than this is quoted by its start.
constexpr int QuotedLength = 60;

QString quote(const QString &line)
{
    return line.size() > QuotedLength ? line.left(QuotedLength) + u'…' : line;
}

[[noreturn]] void refuse(int line, const QString &written, const QString &reason)
{
    throw ExerciseError(line, written, reason);
}

struct Key
{
    const char16_t *name;
    std::optional<Field> field;  // none: not a condition on a message
};

// The keys a task may hold, by the name the trainer writes.
constexpr Key TaskKeys[] = {
    {u"text", {}},
    {u"account", {}},
    {u"folder", {}},
    {u"count", {}},
    {u"from", Field::From},
    {u"to", Field::To},
    {u"cc", Field::Cc},
    {u"subject", Field::Subject},
    {u"attachment", Field::Attachment},
    {u"body", Field::Body},
};

constexpr std::pair<const char16_t *, int> FolderNames[] = {
    {u"inbox", FolderFile::Inbox},   {u"outbox", FolderFile::Outbox},
    {u"sent", FolderFile::SentItems}, {u"deleted", FolderFile::DeletedItems},
    {u"drafts", FolderFile::Drafts},
};

// One line as written (trimmed) and where it stands.
struct Line
{
    int number = 0;
    QString text;
};

// A section being read: its header and its keys in file order.
struct Section
{
    Line header;
    int task = 0;  // 0: [exercise]
    QList<std::pair<QString, Line>> keys;  // lower-cased key name, its line

    const Line *find(QStringView key) const
    {
        for (const auto &[name, line] : keys) {
            if (name == key)
                return &line;
        }
        return nullptr;
    }
};

QString valueOf(const Line &line)
{
    QString value = line.text.mid(line.text.indexOf(u'=') + 1).trimmed();
    // One pair of matching quotes keeps blanks at either end.
    if (value.size() >= 2 && (value.front() == u'"' || value.front() == u'\'')
        && value.back() == value.front())
        value = value.mid(1, value.size() - 2);
    return value;
}

// The text of a file in either encoding: a byte-order mark decides, and so
// do bytes that are all valid UTF-8, which Chinese text in GB18030 nearly
// never is; anything else is GB18030. A trainer's symbols (①, →) count as
// UTF-8 as well as Chinese does.
QString decode(const QByteArray &bytes)
{
    if (const auto marked = QStringConverter::encodingForData(bytes))
        return QStringDecoder(*marked).decode(bytes);
    QStringDecoder utf8(QStringConverter::Utf8);
    const QString text = utf8.decode(bytes);
    return utf8.hasError() ? QStringDecoder("GB18030").decode(bytes) : text;
}

bool isText(const QString &line)
{
    for (const QChar c : line) {
        if (c == QChar::ReplacementCharacter || (c.unicode() < 0x20 && c != u'\t'))
            return false;
    }
    return true;
}

// Whether no letter case changes c and no other character folds to it.
bool caseless(char16_t u)
{
    if (u < 0x80)
        return !((u >= u'A' && u <= u'Z') || (u >= u'a' && u <= u'z'));
    if (u >= 0xFF00 && u <= 0xFFEF)
        return !((u >= 0xFF21 && u <= 0xFF3A) || (u >= 0xFF41 && u <= 0xFF5A));
    return (u >= 0x3000 && u <= 0x9FFF) || (u >= 0x2000 && u <= 0x206F);
}

qsizetype anchorOf(const QString &text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (caseless(text.at(i).unicode()))
            return i;
    }
    return -1;
}

Task taskOf(const Section &s)
{
    Task task;
    task.number = s.task;
    const Line *text = s.find(u"text");
    if (!text)
        refuse(s.header.number, s.header.text, t::NoText);
    task.text = valueOf(*text);

    const Line *account = s.find(u"account");
    const Line *folder = s.find(u"folder");
    if (account && folder) {
        const Line &later = account->number > folder->number ? *account : *folder;
        refuse(later.number, later.text, t::AccountAlone.arg(u"folder"_s));
    }
    for (const auto &[name, line] : s.keys) {
        if (name == u"text" || name == u"account" || name == u"folder")
            continue;
        if (account)
            refuse(line.number, line.text, t::AccountAlone.arg(name));
        if (!folder)
            refuse(line.number, line.text, t::NeedsFolder.arg(name));
    }
    if (account) {
        task.account = TrimSpaces(valueOf(*account));
        return task;
    }
    if (!folder)
        refuse(s.header.number, s.header.text, t::NoCondition);

    const QString name = valueOf(*folder);
    for (const auto &[word, number] : FolderNames) {
        if (name.compare(QStringView(word), Qt::CaseInsensitive) == 0)
            task.folder = number;
    }
    if (task.folder < 0)
        refuse(folder->number, folder->text, t::UnknownFolder);

    if (const Line *count = s.find(u"count")) {
        const QString digits = valueOf(*count);
        bool number = digits.size() <= 5;
        for (const QChar c : digits)
            number = number && c >= u'0' && c <= u'9';
        task.count = number ? digits.toInt() : 0;
        if (task.count < 1)
            refuse(count->number, count->text, t::BadCount);
    }
    for (const Key &key : TaskKeys) {
        if (!key.field)
            continue;
        if (const Line *line = s.find(key.name)) {
            const QString text = valueOf(*line);
            task.conditions.append({*key.field, text, anchorOf(text)});
        }
    }
    return task;
}

void addKey(Section &s, const Line &line)
{
    const int eq = line.text.indexOf(u'=');
    if (eq < 0)
        refuse(line.number, line.text, t::NotKeyValue);
    const QString name = line.text.left(eq).trimmed().toLower();
    if (s.task == 0 && name != u"title")
        refuse(line.number, line.text, t::ExerciseKeys);
    if (s.task > 0
        && std::none_of(std::begin(TaskKeys), std::end(TaskKeys),
                        [&name](const Key &k) { return name == QStringView(k.name); }))
        refuse(line.number, line.text, t::UnknownKey.arg(line.text.left(eq).trimmed()));
    if (s.find(name))
        refuse(line.number, line.text, t::KeyAgain.arg(name));
    if (valueOf(line).isEmpty())
        refuse(line.number, line.text, t::EmptyValue.arg(name));
    s.keys.append({name, line});
}

// The task number of a header [taskN], or 0 when it is no task's.
int taskNumber(const QString &name)
{
    if (!name.startsWith(u"task"_s, Qt::CaseInsensitive) || name.size() == 4 || name.size() > 9)
        return 0;
    for (const QChar c : QStringView(name).sliced(4)) {
        if (c < u'0' || c > u'9')
            return 0;
    }
    // "task01" is not "task1": the numbers are written as counted.
    return name.at(4) == u'0' ? 0 : name.sliced(4).toInt();
}

}  // namespace

ExerciseError::ExerciseError(int line, const QString &quoted, const QString &reason)
    : std::runtime_error("exercise file refused"), m_line(line), m_quoted(quote(quoted)), m_reason(reason)
{
}

QString ExerciseError::text(const QString &fileName) const
{
    const QString where = m_line > 0 ? t::AtLine.arg(m_line).arg(m_quoted, m_reason) : m_reason;
    return t::CannotUse.arg(QDir::toNativeSeparators(fileName), where);
}

Exercise ParseExercise(const QByteArray &bytes)
{
    QString text = decode(bytes);
    text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    const QStringList lines = text.split(u'\n');

    Exercise exercise;
    std::optional<Section> section;
    const auto finish = [&] {
        if (!section)
            return;
        if (section->task > 0) {
            exercise.tasks.append(taskOf(*section));
        } else if (const Line *title = section->find(u"title")) {
            exercise.title = valueOf(*title);
        } else {
            refuse(section->header.number, section->header.text, t::NoTitle);
        }
    };
    Line first;  // the [exercise] header
    for (int i = 0; i < lines.size(); ++i) {
        const Line line{i + 1, lines.at(i).trimmed()};
        if (!isText(line.text))
            refuse(line.number, line.text, t::NotText);
        if (line.text.isEmpty() || line.text.startsWith(u';') || line.text.startsWith(u'#'))
            continue;
        if (!line.text.startsWith(u'[')) {
            if (!section)
                refuse(line.number, line.text, t::ExerciseFirst);
            addKey(*section, line);
            continue;
        }
        if (!line.text.endsWith(u']'))
            refuse(line.number, line.text, t::BadHeader);
        const QString name = line.text.mid(1, line.text.size() - 2).trimmed();
        const bool isExercise = name.compare(u"exercise"_s, Qt::CaseInsensitive) == 0;
        const int task = taskNumber(name);
        if (!isExercise && task == 0)
            refuse(line.number, line.text, t::UnknownSection);
        if (isExercise && section)
            refuse(line.number, line.text, t::ExerciseTwice);
        if (!isExercise && !section)
            refuse(line.number, line.text, t::ExerciseFirst);
        finish();
        const int expected = exercise.tasks.size() + 1;
        if (task > expected)
            refuse(line.number, line.text, t::TaskMissing.arg(expected));
        if (task > 0 && task < expected)
            refuse(line.number, line.text, t::TaskAgain.arg(task).arg(expected));
        if (isExercise)
            first = line;
        section = Section{line, task, {}};
    }
    if (!section)
        refuse(0, QString(), t::EmptyFile);
    finish();
    if (exercise.tasks.isEmpty())
        refuse(first.number, first.text, t::NoTasks);
    return exercise;
}

Exercise ReadExercise(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        refuse(0, QString(), t::NoSuchFile);
    QFile file(path);
    if (info.isDir() || !file.open(QIODevice::ReadOnly))
        refuse(0, QString(), t::CannotRead.arg(FileFailureReason(info.isDir() ? EISDIR : EACCES)));
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        refuse(0, QString(), t::CannotRead.arg(FileFailureReason(EIO)));
    return ParseExercise(bytes);
}

namespace {
const QString &fieldOf(const EmailRec &m, Field field)
{
    switch (field) {
    case Field::From: return m.from;
    case Field::To: return m.to;
    case Field::Cc: return m.alsoto;
    case Field::Subject: return m.subject;
    case Field::Attachment: return m.attachment;
    case Field::Body: break;
    }
    return m.content;
}

// The conditions of some tasks on one field, all looked for in one pass
// over the field's text: a character that is some condition's anchor is
// marked in a bitmap, and only there is a condition compared, ignoring
// letter case. A condition of letters alone has no anchor and is searched
// for by itself. So a check costs one reading of each field it looks at,
// however many tasks look for something in it.
struct FieldSearch
{
    QList<int> anchored;  // the conditions, by their index in the folder's list
    QList<int> letters;
    std::array<quint64, 1 << 10> marked{};  // anchor characters, by UTF-16 unit

    void add(int index, const Condition &c)
    {
        if (c.anchor < 0) {
            letters.append(index);
            return;
        }
        anchored.append(index);
        const char16_t u = c.text.at(c.anchor).unicode();
        marked[u >> 6] |= quint64(1) << (u & 63);
    }

    void find(QStringView text, const QList<const Condition *> &conditions, std::vector<char> &met) const
    {
        for (int k : letters)
            met[k] = met[k] || text.contains(conditions.at(k)->text, Qt::CaseInsensitive);
        if (anchored.isEmpty())
            return;
        const char16_t *units = text.utf16();
        for (qsizetype i = 0; i < text.size(); ++i) {
            const char16_t u = units[i];
            if (!(marked[u >> 6] >> (u & 63) & 1))
                continue;
            for (int k : anchored) {
                const Condition &c = *conditions.at(k);
                const qsizetype start = i - c.anchor;
                if (!met[k] && c.text.at(c.anchor) == u && start >= 0
                    && start + c.text.size() <= text.size()
                    && text.sliced(start, c.text.size()).compare(c.text, Qt::CaseInsensitive) == 0)
                    met[k] = 1;
            }
        }
    }
};
}  // namespace

QList<bool> TasksDone(const QList<Task> &tasks, const MailList &folder)
{
    // Each condition once, however many tasks ask for it.
    QList<const Condition *> conditions;
    QList<QList<int>> asked(tasks.size());
    std::array<FieldSearch, 6> fields;
    for (int t = 0; t < tasks.size(); ++t) {
        for (const Condition &c : tasks.at(t).conditions) {
            qsizetype k = 0;
            while (k < conditions.size()
                   && !(conditions.at(k)->field == c.field
                        && conditions.at(k)->text.compare(c.text, Qt::CaseInsensitive) == 0))
                ++k;
            if (k == conditions.size()) {
                conditions.append(&c);
                fields[int(c.field)].add(int(k), c);
            }
            asked[t].append(int(k));
        }
    }

    QList<bool> done(tasks.size(), false);
    QList<int> found(tasks.size(), 0);
    qsizetype open = tasks.size();
    std::vector<char> met(conditions.size());
    for (const EmailRec &m : folder) {
        std::fill(met.begin(), met.end(), 0);
        for (int f = 0; f < int(fields.size()); ++f)
            fields[f].find(fieldOf(m, Field(f)), conditions, met);
        for (int t = 0; t < tasks.size(); ++t) {
            if (done.at(t) || !std::all_of(asked.at(t).begin(), asked.at(t).end(), [&met](int k) { return met[k]; }))
                continue;
            if (++found[t] >= tasks.at(t).count) {
                done[t] = true;
                --open;
            }
        }
        if (open == 0)
            break;
    }
    return done;
}

bool TaskDone(const Task &task, const QList<MailBoxRec> &accounts)
{
    return std::any_of(accounts.begin(), accounts.end(), [&task](const MailBoxRec &a) {
        return TrimSpaces(a.address).compare(task.account, Qt::CaseInsensitive) == 0;
    });
}

QList<bool> CheckTasks(const Exercise &exercise,
                       const std::function<MailList(int folder)> &folder,
                       const std::function<QList<MailBoxRec>()> &accounts)
{
    QList<bool> done(exercise.tasks.size(), false);
    // The accounts are read once, each folder once for all its tasks.
    std::map<int, QList<int>> byFolder;
    for (int i = 0; i < exercise.tasks.size(); ++i)
        byFolder[exercise.tasks.at(i).folder].append(i);
    for (const auto &[number, indices] : byFolder) {
        if (number < 0) {
            const QList<MailBoxRec> accountList = accounts();
            for (int i : indices)
                done[i] = TaskDone(exercise.tasks.at(i), accountList);
            continue;
        }
        QList<Task> tasks;
        for (int i : indices)
            tasks.append(exercise.tasks.at(i));
        const QList<bool> folderDone = TasksDone(tasks, folder(number));
        for (int k = 0; k < indices.size(); ++k)
            done[indices.at(k)] = folderDone.at(k);
    }
    return done;
}

namespace {
// A file of the data folder as the program will find it: the new file of
// a standing change, else the file itself.
ProfileFile readAsItStands(const QString &dataDir, const QString &name, const QStringList &standing)
{
    const QString path = QDir(dataDir).filePath(name);
    if (standing.contains(name)) {
        const QString newer = path + QLatin1StringView(NewFileSuffix);
        ProfileFile file = ProfileFile::load(newer);
        // Nothing read of a file that is gone: the change was moved into
        // place meanwhile.
        if (!file.isBlank() || QFileInfo::exists(newer))
            return file;
    }
    return ProfileFile::load(path);
}
}  // namespace

QList<bool> CheckDataFolder(const Exercise &exercise, const QString &dataDir)
{
    const QStringList standing = StandingChange(dataDir);
    return CheckTasks(
        exercise,
        [&](int folder) {
            return ParseFolder(readAsItStands(dataDir, FolderFile::fileName(folder), standing));
        },
        [&] { return ParseAccounts(readAsItStands(dataDir, MailBoxFileName, standing), 0); });
}

QString CheckReport(const Exercise &exercise, const QList<bool> &done)
{
    QString report;
    for (int i = 0; i < exercise.tasks.size(); ++i) {
        const Task &task = exercise.tasks.at(i);
        report += (done.value(i) ? t::CheckDone : t::CheckOpen) + u'\t' + QString::number(task.number)
            + u'\t' + task.text + u'\n';
    }
    return report + QString::number(done.count(true)) + u'/' + QString::number(exercise.tasks.size())
        + u'\n';
}

Progress ProgressIn(const QString &exerciseFile, const QString &dataDir)
{
    const Exercise exercise = ReadExercise(exerciseFile);
    const QList<bool> done = CheckDataFolder(exercise, dataDir);
    return {exercise.title, int(done.count(true)), int(exercise.tasks.size())};
}

}  // namespace exercise
