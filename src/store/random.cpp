#include "random.h"

#include <QDateTime>
#include <QElapsedTimer>

#include <cmath>
#include <random>

qint32 RandomBetween(qint32 low, qint32 high)
{
    // Seeded on the first call of a run, from the clock, so two runs of the
    // program give different ids.
    static bool seeded = false;
    static std::mt19937 generator;
    if (!seeded) {
        QElapsedTimer timer;
        timer.start();
        const quint64 now = quint64(QDateTime::currentMSecsSinceEpoch());
        std::seed_seq seq{quint32(now), quint32(now >> 32), quint32(timer.nsecsElapsed())};
        generator.seed(seq);
        seeded = true;
    }

    const qint64 span = qint64(high) - qint64(low) + 1;

    // A single-precision draw in [0, 1): 24 random bits, exactly representable.
    const float r = float(generator() >> 8) / 16777216.0f;
    return qint32(std::floor(double(span) * double(r) + double(low)));
}
