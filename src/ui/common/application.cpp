#include "application.h"

#include "store/errors.h"
#include "store/prompter.h"
#include "texts.h"

#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <exception>

ChineseSystemLocale::ChineseSystemLocale()
{
    const bool wasSet = qEnvironmentVariableIsSet("LC_ALL");
    const QByteArray was = qgetenv("LC_ALL");
    qputenv("LC_ALL", "zh_CN.UTF-8");
    QLocale::system();  // read now, and kept
    if (wasSet)
        qputenv("LC_ALL", was);
    else
        qunsetenv("LC_ALL");
}

QuillpostApplication::QuillpostApplication(int &argc, char **argv) : QApplication(argc, argv) {}

QString QuillpostApplication::abandonedText(const QString &reason)
{
    return texts::OperationAbandoned + u"\r\r" + reason;
}

bool QuillpostApplication::notify(QObject *receiver, QEvent *event)
{
    // Every store operation loads, changes memory and saves only at its end,
    // so an operation stopped here has written nothing and the program can
    // carry on.
    try {
        return QApplication::notify(receiver, event);
    } catch (const StoreError &error) {
        prompter().message(Prompter::Icon::Exclamation, texts::AppTitle, ErrorBoxText(error));
    } catch (const std::exception &error) {
        prompter().message(Prompter::Icon::Exclamation, texts::AppTitle,
                           abandonedText(QString::fromLocal8Bit(error.what())));
    }
    return false;
}

bool InstallChineseTranslations()
{
    // The program speaks Chinese whatever the machine's language is: the
    // toolkit's own texts, and the dates, sizes and file types its windows
    // show (the file chooser's list: see ChineseSystemLocale).
    QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China));
    static QTranslator *translator = nullptr;
    if (translator)
        return true;
    auto *t = new QTranslator(qApp);
    if (!t->load(QLocale(QLocale::Chinese, QLocale::China), QStringLiteral("qtbase"),
                 QStringLiteral("_"), QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        delete t;
        return false;
    }
    QCoreApplication::installTranslator(t);
    translator = t;
    return true;
}
