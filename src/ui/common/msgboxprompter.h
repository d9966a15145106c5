#pragma once

#include "store/prompter.h"

#include <QMessageBox>

// The prompter the running program installs: a QMessageBox with the text,
// title and icon as given, OK for messages and Yes/No for questions.
class MessageBoxPrompter final : public Prompter
{
public:
    void message(Icon icon, const QString &title, const QString &text) override;
    bool confirm(Icon icon, const QString &title, const QString &text, Default answer) override;

    // The QMessageBox icon a Prompter icon is shown with. Exclamation and
    // Warning look the same: the toolkit has a single warning sign.
    static QMessageBox::Icon boxIcon(Icon icon);
};
