#pragma once

#include <QString>

// The port through which the store and the windows tell the user something.
// The application installs a message-box implementation; tests install a
// scripted one, so no test ever blocks on a real modal box.
class Prompter
{
public:
    enum class Icon { Information, Exclamation, Warning, Question, Critical };
    // The answer Enter gives. A question whose Yes destroys something (a
    // message, an account, a text being written) defaults to No.
    enum class Default { Yes, No };

    virtual ~Prompter() = default;

    // A box with an OK button.
    virtual void message(Icon icon, const QString &title, const QString &text) = 0;
    // A box with Yes and No buttons; true when the user answered Yes.
    virtual bool confirm(Icon icon, const QString &title, const QString &text, Default answer) = 0;
};

// The installed prompter. Until one is installed a silent one answers No.
Prompter &prompter();
// Installs p (not owned); nullptr goes back to the silent one.
void setPrompter(Prompter *p);
