#include "clock.h"

using namespace Qt::Literals::StringLiterals;

namespace {
std::function<QDateTime()> &installedClock()
{
    static std::function<QDateTime()> now;
    return now;
}
}  // namespace

QDateTime Now()
{
    return installedClock() ? installedClock()() : QDateTime::currentDateTime();
}

QString NowStamp()
{
    return Now().toString(u"yy-MM-dd hh:mm"_s);
}

void SetClock(std::function<QDateTime()> now)
{
    installedClock() = std::move(now);
}
