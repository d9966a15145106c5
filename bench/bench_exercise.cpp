// Checking an exercise of 20 tasks against a folder of 20,000 messages, as
// the exercise window does after a command and --check does once: 3
// account tasks against 21 accounts and 17 tasks in the big folder, none
// of them done, so that every task looks at every message. The messages
// are of a trainee's usual sizes: addresses, a short Chinese subject, a
// body of 100 to 600 characters, now and then an attachment; then bodies
// as long as a folder file keeps them (1,022 Chinese characters: 2,044
// bytes, 2,046 in brackets). The floor is one vectorised
// search for a character through every body: a check that looks into the
// bodies cannot read them faster.

#include "benchutil.h"

#include "exercise/exercise.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace {
const QString Words = u"下周一上午九点在三楼会议室召开项目例会请准备好本月的进度报告培训资料已上传"
                      "到共享文件夹请查收周末聚餐老地方见附件是第一季度的报表谢谢"_s;

MailList folderOf(int messages, bool longest = false)
{
    MailList folder;
    folder.reserve(messages);
    for (int i = 0; i < messages; ++i) {
        EmailRec m;
        m.id = QString::number(10000000 + i);
        m.from = u"trainee%1@example.cn"_s.arg(i % 30);
        m.to = u"colleague%1@example.cn;boss@example.cn"_s.arg(i % 17);
        m.subject = Words.mid(i % 40, 6 + i % 12);
        for (int n = 100 + (i * 37) % 500; !longest && m.content.size() < n;)
            m.content += Words.mid((i + int(m.content.size())) % 50, 20) + u"，ok "_s;
        while (longest && m.content.size() < 1022)
            m.content += Words.mid(i % 50, 1022 - m.content.size());
        m.datetime = u"24-05-13 09:12"_s;
        m.attachment = i % 5 == 0 ? u"report%1.doc"_s.arg(i) : QString();
        m.isnew = u"0"_s;
        folder.append(m);
    }
    return folder;
}

// Topics no message speaks of, one per task.
const QStringList Topics = {u"年终总结"_s, u"放假通知"_s, u"报名截止"_s, u"考试安排"_s, u"体检时间"_s,
                            u"座位调整"_s, u"课程表"_s,   u"值日安排"_s, u"运动会"_s,   u"图书借阅"_s,
                            u"停电通知"_s, u"家长会"_s,   u"奖学金"_s,   u"实习报告"_s, u"毕业典礼"_s,
                            u"开学典礼"_s, u"作业提交"_s, u"成绩查询"_s, u"校园网"_s,   u"食堂菜单"_s};

// 3 account tasks, then folder tasks in the big folder made by kind from
// the task's own topic, so that no two tasks look for the same text.
QByteArray exerciseOf(const std::function<QString(const QString &topic, int n)> &kind)
{
    QString file = u"[exercise]\ntitle=bench\n"_s;
    for (int n = 1; n <= 20; ++n) {
        file += u"[task%1]\ntext=t\n"_s.arg(n);
        file += n <= 3 ? u"account=nobody%1@example.cn\n"_s.arg(n)
                       : u"folder=inbox\n"_s + kind(Topics.at(n - 1), n) + u'\n';
    }
    return file.toUtf8();
}
}  // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const MailList folder = folderOf(20000);
    QList<MailBoxRec> accounts(21);
    for (int i = 0; i < accounts.size(); ++i)
        accounts[i].address = u"account%1@example.cn"_s.arg(i);

    // As a lesson's tasks look: addressee and subject, an attachment, now
    // and then a word of the body.
    const exercise::Exercise mixed = exercise::ParseExercise(exerciseOf([](const QString &topic, int n) {
        switch (n % 4) {
        case 0: return u"to=Colleague3@Example.cn\nsubject=%1"_s.arg(topic);
        case 1: return u"to=wang%1@example.cn"_s.arg(n);
        case 2: return u"attachment=%1.doc"_s.arg(topic);
        default: return u"subject=%1\nbody=%1"_s.arg(topic);
        }
    }));
    const exercise::Exercise bodies = exercise::ParseExercise(
        exerciseOf([](const QString &topic, int) -> QString { return u"body="_s + topic; }));
    const auto check = [&](const exercise::Exercise &e, const MailList &in) {
        const QList<bool> done = exercise::CheckTasks(e, [&](int) { return in; }, [&] { return accounts; });
        if (done.contains(true))
            std::fprintf(stderr, "bench_exercise: a task was done\n");
    };
    const auto floorOf = [](const MailList &in) {
        return bench::medianMs(20, [&] {
            int found = 0;
            for (const EmailRec &m : in)
                found += m.content.indexOf(QChar(u'\x01')) >= 0;
            Q_UNUSED(found);
        });
    };
    const int runs = 20;
    const double floorMs = floorOf(folder);
    bench::printRow("exercise, 20 tasks x 20,000 messages", bench::medianMs(runs, [&] { check(mixed, folder); }),
                    floorMs);
    bench::printRow("  every folder task a body search", bench::medianMs(runs, [&] { check(bodies, folder); }),
                    floorMs);
    const MailList longest = folderOf(20000, true);
    bench::printRow("  the same, every body at the longest",
                    bench::medianMs(runs, [&] { check(bodies, longest); }), floorOf(longest));
    return 0;
}
