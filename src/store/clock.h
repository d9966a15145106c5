#pragma once

#include <QDateTime>
#include <QString>

#include <functional>

// The present time as every part of the program sees it. Tests fix it so
// that stamps in the files are known in advance.
QDateTime Now();
// The present time as it is stored in a message: "yy-mm-dd hh:mm".
QString NowStamp();
// Replaces the clock; an empty function goes back to the system clock.
void SetClock(std::function<QDateTime()> now);
