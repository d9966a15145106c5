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
    const QCommandLineOption help({u"h"_s, u"help"_s}, texts::cli::HelpOption);
    const QCommandLineOption version({u"v"_s, u"version"_s}, texts::cli::VersionOption);
    const QCommandLineOption dataDir(u"data-dir"_s, texts::cli::DataDirOption,
                                     texts::cli::DataDirValue);
    const QCommandLineOption printDataDir(u"print-data-dir"_s, texts::cli::PrintDataDirOption);
    const QCommandLineOption classDir(u"class-dir"_s, texts::cli::ClassDirOption,
                                      texts::cli::DataDirValue);
    const QCommandLineOption classStatus(u"class-status"_s, texts::cli::ClassStatusOption);
    parser.addOptions({help, version, dataDir, printDataDir, classDir, classStatus});

    if (!parser.parse(arguments))
        return badUsage(parser.errorText());
    if (!parser.positionalArguments().isEmpty())
        return badUsage(texts::cli::UnexpectedArgument.arg(parser.positionalArguments().join(u' ')));

    CommandLine c;
    if (parser.isSet(help) || parser.isSet(version)) {
        c.action = CommandLine::Action::Exit;
        c.out = parser.isSet(help)
                    ? parser.helpText()
                    : texts::cli::VersionLine.arg(QCoreApplication::applicationVersion()) + u'\n';
        return c;
    }
    for (const auto &[option, name, target] :
         {std::tuple(&dataDir, u"--data-dir"_s, &c.dataDir), std::tuple(&classDir, u"--class-dir"_s, &c.classDir)}) {
        if (!parser.isSet(*option))
            continue;
        const QString value = parser.value(*option);
        if (value.isEmpty()) {
            return badUsage(QCoreApplication::translate("QCommandLineParser", "Missing value after '%1'.")
                                .arg(name));
        }
        *target = QDir::cleanPath(QDir::current().absoluteFilePath(value));
    }
    if (parser.isSet(printDataDir))
        c.action = CommandLine::Action::PrintDataDir;
    if (parser.isSet(classStatus))
        c.action = CommandLine::Action::ClassStatus;
    return c;
}
