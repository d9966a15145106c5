#include "ensuremailbox.h"

#include "frmMailBox.h"

#include "store/mailstore.h"

bool EnsureMailBox()
{
    if (!store::Accounts().isEmpty())
        return false;

    frmMailBox *dialog = forms::MailBox();
    // A cancelled wizard, or an account that could not be stored, ends
    // the command.
    const bool abandon = !dialog->mnuEmail_Click();
    // The window goes; the object and its fields stay for the next opening.
    dialog->close();
    return abandon;
}
