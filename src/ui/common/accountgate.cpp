#include "accountgate.h"

#include "store/mailboxes.h"

bool NoAccountToSendFrom()
{
    // Until the accounts dialog can offer to set one up, an empty account
    // file simply abandons the command.
    MailBoxArray accounts;
    MailCount count = 0;
    LoadMailBoxes(accounts, count);
    return count == 0;
}
