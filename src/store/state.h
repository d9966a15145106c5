#pragma once

#include <QtGlobal>

namespace Main {
// What the compose window opens when it loads; whoever opens it sets the
// mode, and a saved new message turns it into Reopen.
namespace ComposeModes {
inline constexpr qint16 Reopen = 0;  // the stored message it was opened on
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
