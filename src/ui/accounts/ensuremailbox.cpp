#include "ensuremailbox.h"

#include "frmMailBox.h"

#include "store/mailboxes.h"

bool EnsureMailBox()
{
    MailBoxArray accounts;
    MailCount count = 0;
    LoadMailBoxes(accounts, count);
    if (count >= 1)
        return false;

    frmMailBox *dialog = forms::MailBox();
    dialog->mnuEmail_Click();
    // Changed is true only when the wizard was finished and the account
    // stored; a cancelled wizard leaves it false and ends the command.
    const bool abandon = !dialog->Changed;
    // The window goes; the object and its fields stay for the next opening.
    dialog->close();
    return abandon;
}
