#pragma once

// Makes sure there is an account to send from. With none on file it leads
// the user through the new-account wizard. Returns true when the caller must
// abandon its command: there was no account and the wizard was cancelled.
bool EnsureMailBox();
