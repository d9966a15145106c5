#include "commandline.h"

#include "texts.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QTranslator>

#include <cstring>
#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace {
// The parser writes its headings and error messages in English through the
// translation system; this gives them in Chinese without shipping a
// translation file for eight phrases.
class ParserWords final : public QTranslator
{
public:
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        if (std::strcmp(context, "QCommandLineParser") != 0)
            return QString();
        for (const texts::cli::ParserWord &w : texts::cli::ParserWords) {
            if (std::strcmp(source, w.english) == 0)
                return QString::fromUtf16(w.chinese);
        }
        return QString();
    }
};

// Every option, made alike for the full reading and for the first look
// that only asks whether this is a check.
struct Options
{
    QCommandLineOption help{{u"h"_s, u"help"_s}, texts::cli::HelpOption};
    QCommandLineOption version{{u"v"_s, u"version"_s}, texts::cli::VersionOption};
    QCommandLineOption dataDir{u"data-dir"_s, texts::cli::DataDirOption, texts::cli::DataDirValue};
    QCommandLineOption printDataDir{u"print-data-dir"_s, texts::cli::PrintDataDirOption};
    QCommandLineOption exercise{u"exercise"_s, texts::cli::ExerciseOption, texts::cli::ExerciseValue};
    QCommandLineOption check{u"check"_s, texts::cli::CheckOption, texts::cli::ExerciseValue};
    QCommandLineOption classDir{u"class-dir"_s, texts::cli::ClassDirOption, texts::cli::DataDirValue};
    QCommandLineOption classStatus{u"class-status"_s, texts::cli::ClassStatusOption};

    void addTo(QCommandLineParser &parser) const
    {
        parser.addOptions({help, version, dataDir, printDataDir, exercise, check, classDir, classStatus});
    }
};

CommandLine badUsage(const QString &why)
{
    CommandLine c;
    c.action = CommandLine::Action::Exit;
    c.exitCode = 2;
    c.err = why + u'\n' + texts::cli::TryHelp + u'\n';
    return c;
}
}  // namespace

CommandLine ParseCommandLine(const QStringList &arguments)
{
    ParserWords words;
    QCoreApplication::installTranslator(&words);
    struct Uninstall
    {
        QTranslator *t;
        ~Uninstall() { QCoreApplication::removeTranslator(t); }
    } uninstall{&words};

    QCommandLineParser parser;
    parser.setApplicationDescription(texts::cli::Description);
    const Options o;
    o.addTo(parser);

    if (!parser.parse(arguments))
        return badUsage(parser.errorText());
    if (!parser.positionalArguments().isEmpty())
        return badUsage(texts::cli::UnexpectedArgument.arg(parser.positionalArguments().join(u' ')));

    CommandLine c;
    if (parser.isSet(o.help) || parser.isSet(o.version)) {
        c.action = CommandLine::Action::Exit;
        c.out = parser.isSet(o.help)
                    ? parser.helpText()
                    : texts::cli::VersionLine.arg(QCoreApplication::applicationVersion()) + u'\n';
        return c;
    }
    for (const auto &[option, name, target] :
         {std::tuple(&o.dataDir, u"--data-dir"_s, &c.dataDir),
          std::tuple(&o.classDir, u"--class-dir"_s, &c.classDir)}) {
        if (!parser.isSet(*option))
            continue;
        const QString value = parser.value(*option);
        if (value.isEmpty()) {
            return badUsage(QCoreApplication::translate("QCommandLineParser", "Missing value after '%1'.")
                                .arg(name));
        }
        *target = QDir::cleanPath(QDir::current().absoluteFilePath(value));
    }
    // Each of these asks for something else of the one run.
    const QCommandLineOption *asks[] = {&o.printDataDir, &o.exercise, &o.check, &o.classStatus};
    const int count = int(std::size(asks));
    for (int a = 0; a < count; ++a) {
        for (int b = a + 1; b < count; ++b) {
            if (parser.isSet(*asks[a]) && parser.isSet(*asks[b]))
                return badUsage(texts::cli::OptionsConflict.arg(u"--"_s + asks[a]->names().constFirst(),
                                                                u"--"_s + asks[b]->names().constFirst()));
        }
    }
    if (parser.isSet(o.printDataDir))
        c.action = CommandLine::Action::PrintDataDir;
    if (parser.isSet(o.check)) {
        c.action = CommandLine::Action::Check;
        c.exercise = parser.value(o.check);
    }
    if (parser.isSet(o.exercise))
        c.exercise = parser.value(o.exercise);
    if (parser.isSet(o.classStatus))
        c.action = CommandLine::Action::ClassStatus;
    return c;
}

bool IsCheckCommand(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    QCommandLineParser parser;
    const Options o;
    o.addTo(parser);
    return parser.parse(arguments) && parser.isSet(o.check);
}

void NameApplication()
{
    // The application name gives the per-user data folder its name
    // (~/.local/share/quillpost-express).
    QCoreApplication::setApplicationName(u"quillpost-express"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLPOST_VERSION));
}
