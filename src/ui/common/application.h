#pragma once

#include <QApplication>

// Makes the toolkit's idea of the system's language Chinese before the
// application object exists. QLocale::setDefault reaches the windows, but
// the standard file chooser's list formats its sizes and dates with the
// system locale, which Qt reads once from LC_ALL, LC_TIME and LANG when it
// is first asked. The variables name Chinese only for that first reading
// and are put back, so that the C library and any child keep the user's.
struct ChineseSystemLocale
{
    ChineseSystemLocale();
};

// The program's QApplication. Its event guard ends an operation that the
// store abandoned (a 102nd message, damaged stored content, a file that
// cannot be written) with an error box instead of ending the program.
class QuillpostApplication : private ChineseSystemLocale, public QApplication
{
public:
    QuillpostApplication(int &argc, char **argv);

    bool notify(QObject *receiver, QEvent *event) override;

    // The error box's text for a reason: the headline, CR CR, the reason.
    static QString abandonedText(const QString &reason);
};

// Loads the toolkit's own Simplified Chinese texts (standard dialogs,
// context menus, buttons) where they are installed; false when they are
// not, and the toolkit then speaks English in its own dialogs only.
bool InstallChineseTranslations();
