#include "store/errors.h"
#include "store/state.h"

#include <QTest>

#include <climits>

class tst_random : public QObject
{
    Q_OBJECT

private slots:
    void messageIdsHaveEightDigits()
    {
        QSet<qint32> seen;
        for (int i = 0; i < 20000; ++i) {
            const qint32 id = RandomBetween(10000000, 99999999);
            QVERIFY(id >= 10000000 && id <= 99999999);
            QCOMPARE(QString::number(id).size(), 8);
            seen.insert(id);
        }
        QVERIFY(seen.size() > 19000);  // draws differ, not one value repeated
    }

    void rangeOfOneGivesItsValue() { QCOMPARE(RandomBetween(7, 7), 7); }

    void smallRangeReachesBothEnds()
    {
        QSet<qint32> seen;
        for (int i = 0; i < 1000; ++i)
            seen.insert(RandomBetween(1, 3));
        QCOMPARE(seen, (QSet<qint32>{1, 2, 3}));
    }

    void spanBeyond32BitsOverflows()
    {
        QVERIFY_THROWS_EXCEPTION(OverflowError, RandomBetween(INT_MIN, INT_MAX));
        QVERIFY_THROWS_EXCEPTION(OverflowError, RandomBetween(0, INT_MAX));
    }
};

QTEST_GUILESS_MAIN(tst_random)
#include "tst_random.moc"
