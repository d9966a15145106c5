#pragma once

// The account check run before mail is sent: true when there is no account
// to send from and the command is to be abandoned, false otherwise. Both
// the main window's send commands and the compose window go through here,
// so the check lives in one place.
bool NoAccountToSendFrom();
