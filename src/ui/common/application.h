#pragma once

#include <QApplication>

// The program's QApplication. Its event guard ends an operation that the
// store abandoned (a 102nd message, damaged stored content, a file that
// cannot be written) with an error box instead of ending the program.
class QuillpostApplication : public QApplication
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
