#pragma once

#include <QtGlobal>

// A whole number in low..high from a generator seeded once per run from the
// clock, drawn in single precision: floor((high - low + 1) * r + low).
qint32 RandomBetween(qint32 low, qint32 high);
