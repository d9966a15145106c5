// The exact texts the compose window stores: prefixes, the quoted block,
// the attachment field and the record's lower-casing and stamp.

#include "store/clock.h"
#include "mail/composerules.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace compose;

namespace {
EmailRec quoted()
{
    EmailRec m;
    m.from = u"  lilei@example.com  "_s;
    m.to = u"hanmeimei@example.com  "_s;
    m.alsoto = u"cc@example.com"_s;
    m.subject = u"hello  "_s;
    m.datetime = u"24-07-09 14:05 "_s;
    m.content = u"line one\r\nline two  "_s;
    return m;
}
}  // namespace

class tst_composerules : public QObject
{
    Q_OBJECT

private slots:
    void quotedBlock_data()
    {
        QTest::addColumn<bool>("reply");
        QTest::addColumn<QString>("fromLine");
        QTest::newRow("reply trims the sender on both sides") << true << u"From:lilei@example.com"_s;
        QTest::newRow("forward trims the sender on the right only")
            << false << u"From:  lilei@example.com"_s;
    }

    void quotedBlock()
    {
        QFETCH(bool, reply);
        QFETCH(QString, fromLine);
        // Two empty lines, the header block without blanks after the colons,
        // an empty line, "> " before the first body line only, the body
        // untrimmed, and never the copy line.
        QCOMPARE(QuotedBlock(quoted(), reply),
                 u"\r\n\r\n-----Original Message-----\r\n"_s + fromLine
                     + u"\r\nTo:hanmeimei@example.com\r\nSent:24-07-09 14:05\r\n"
                       u"Subject:hello\r\n\r\n> line one\r\nline two  "_s);
    }

    void joinAttachments_data()
    {
        QTest::addColumn<QStringList>("items");
        QTest::addColumn<QString>("field");
        QTest::newRow("no item gives an empty field") << QStringList{} << QString();
        QTest::newRow("two items: leading blank, one blank between, lower case")
            << QStringList{u"a.txt(1.00KB)"_s, u"B.TXT(2.00KB)"_s}
            << u" a.txt(1.00kb) b.txt(2.00kb)"_s;
        QTest::newRow("a blank inside a name stays")
            << QStringList{u"my file.txt(1.00KB)"_s} << u" my file.txt(1.00kb)"_s;
    }

    void joinAttachments()
    {
        QFETCH(QStringList, items);
        QFETCH(QString, field);
        QCOMPARE(JoinAttachments(items), field);
    }

    void attachmentPieces_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("last");
        QTest::newRow("field as read back from the file")
            << u"a.txt(1.00kb) b.txt(2.00kb)"_s << 2 << u"b.txt(2.00kb)"_s;
        QTest::newRow("leading blank shows nothing") << u" a.txt(1.00kb)"_s << 0 << QString();
        QTest::newRow("a name with a blank splits in two")
            << u"my file.txt(1.00kb)"_s << 2 << u"file.txt(1.00kb)"_s;
        QTest::newRow("double blank stops at the empty piece") << u"a  b"_s << 1 << u"a"_s;
        QTest::newRow("character 0 stops the list") << u"a \u0000b c"_s << 1 << u"a"_s;
        QTest::newRow("empty field shows nothing") << QString() << 0 << QString();
        QTest::newRow("at most 21 pieces")
            << QStringList(QList<QString>(30, u"x"_s)).join(u' ') << 21 << u"x"_s;
    }

    void attachmentPieces()
    {
        QFETCH(QString, field);
        QFETCH(int, count);
        QFETCH(QString, last);
        const QStringList pieces = AttachmentPieces(field);
        QCOMPARE(pieces.size(), count);
        if (count > 0)
            QCOMPARE(pieces.last(), last);
    }

    void attachmentItemText_data()
    {
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("12.5 KB") << qint64(12800) << u"report.doc(12.50KB)"_s;
        QTest::newRow("leading zero below 1 KB") << qint64(512) << u"report.doc(0.50KB)"_s;
        QTest::newRow("empty file") << qint64(0) << u"report.doc(0.00KB)"_s;
    }

    void attachmentItemText()
    {
        QFETCH(qint64, bytes);
        QFETCH(QString, text);
        QCOMPARE(AttachmentItemText(u"report.doc"_s, bytes), text);
    }

    void buildRecordLowersEverythingAndStamps()
    {
        SetClock([] { return QDateTime(QDate(2024, 7, 9), QTime(14, 5, 59)); });
        const EmailRec m = BuildRecord(
            u"12345678"_s, {u"Li@Example.COM"_s, u"Han@Example.com"_s, u"Cc@X.COM   "_s,
                            u"Test"_s, u"Hello World\r\n你好 ABC  "_s, u" a.txt(1.00kb)"_s});
        SetClock({});
        QCOMPARE(m.id, u"12345678"_s);
        QCOMPARE(m.from, u"li@example.com"_s);
        QCOMPARE(m.to, u"han@example.com"_s);
        QCOMPARE(m.alsoto, u"cc@x.com"_s);
        QCOMPARE(m.subject, u"test"_s);
        QCOMPARE(m.content, u"hello world\r\n你好 abc  "_s);
        QCOMPARE(m.datetime, u"24-07-09 14:05"_s);
        QCOMPARE(m.attachment, u" a.txt(1.00kb)"_s);
        QCOMPARE(m.isnew, u"0"_s);
    }
};

QTEST_GUILESS_MAIN(tst_composerules)
#include "tst_composerules.moc"
