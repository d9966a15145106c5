#include <QTest>
class tst_profile : public QObject { Q_OBJECT private slots: void t() {} };
QTEST_GUILESS_MAIN(tst_profile)
#include "tst_profile.moc"
