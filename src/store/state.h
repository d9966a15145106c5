#pragma once

#include <QString>
#include <QtGlobal>

// Module-wide state shared by all windows. Everything starts empty or zero
// when the program starts and lives until it ends.
namespace Main {
extern qint16 gnMailNum;           // records in the shown folder's array
extern qint16 gnMailBoxNum;        // accounts loaded
extern qint16 gnCurrentMailNo;     // selected message, 0-based
extern qint16 sendfolder;          // hand-over between main and message windows
extern QString strID;
extern qint16 UnReadNum;           // Inbox unread (the tree keeps its own)
extern qint16 DelUnReadNum;        // Deleted Items unread
extern qint16 gnSendReceiveType;   // chosen send/receive command
extern bool StopFlag;              // request to stop a run
extern qint16 gnCurrentMailBoxNo;  // selected account, 0-based
extern QString gnCurrentText;
extern bool gbModified;            // the compose window has unsaved changes
extern QString StrName;            // new-account wizard answers (unused: the
extern QString StrAddress;         // wizard pages carry them in their own
extern QString StrPOP3;            // public fields)
extern QString StrSMTP;
extern QString StrUserName;
extern QString StrUserPassword;
extern QString StrPa1;
extern QString StrPa2;
extern QString StrPa31;
extern QString StrPa32;
extern QString StrPa41;
extern QString StrPa42;

// What the compose window opens when it loads.
namespace ComposeModes {
inline constexpr qint16 Reopen = 0;  // the main window's current stored message
inline constexpr qint16 New = 1;
inline constexpr qint16 Reply = 2;
inline constexpr qint16 Forward = 3;
}  // namespace ComposeModes
extern qint16 ComposeMode;

// Back to the start-of-run values; for tests.
void resetState();
}  // namespace Main

// A whole number in low..high from a generator seeded once per run from the
// clock, drawn in single precision: floor((high - low + 1) * r + low).
// Throws OverflowError when high - low + 1 does not fit in 32 bits.
qint32 RandomBetween(qint32 low, qint32 high);
