#pragma once

// Makes sure there is an account to send from. With none on file it leads
// the user through the new-account wizard. Returns true when the caller must
// abandon its command: whenever there was no account, since the accounts
// dialog's rebuild clears Changed after it has stored a finished wizard's
// account.
bool EnsureMailBox();
