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
    // Only the wizard's finish sets Changed, but storing the new account
    // rebuilds the dialog, and the rebuild clears Changed again: a finished
    // wizard therefore ends the caller's command too, and the user sends
    // again with the new account in place.
    const bool abandon = !dialog->Changed;
    // The window goes; the object and its fields stay for the next opening.
    dialog->close();
    return abandon;
}
