#include "accountgate.h"

#include "ui/accounts/ensuremailbox.h"

bool NoAccountToSendFrom()
{
    // With no account on file the user is led through the new-account
    // wizard; the command is abandoned either way.
    return EnsureMailBox();
}
