#pragma once

// Tiny timing helpers shared by the benchmarks. Each benchmark executable
// prints rows of one table; scripts/run-benchmarks prints its header once.

#include <QElapsedTimer>
#include <QFile>
#include <QList>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace bench {

// Median wall time of fn in milliseconds over runs calls (after one warm-up).
inline double medianMs(int runs, const std::function<void()> &fn)
{
    fn();
    QList<double> times;
    times.reserve(runs);
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer t;
        t.start();
        fn();
        times.append(double(t.nsecsElapsed()) / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times.at(times.size() / 2);
}

// One row: name, median; with a floor (> 0) also the floor and the ratio.
inline void printRow(const char *name, double ms, double floorMs = 0.0)
{
    if (floorMs > 0.0)
        std::printf("%-44s %10.3f %10.3f %8.2fx\n", name, ms, floorMs, ms / floorMs);
    else
        std::printf("%-44s %10.3f %10s %9s\n", name, ms, "-", "-");
    std::fflush(stdout);
}

// A field of /proc/self/status in KiB ("VmRSS:", "VmHWM:"); 0 when unknown.
inline qint64 statusKib(const char *key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.mid(qstrlen(key)).trimmed().split(' ').first().toLongLong();
    }
    return 0;
}

}  // namespace bench
