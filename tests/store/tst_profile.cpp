// The profile-file reader must answer every query as the platform's profile
// reader would, for hand-edited and damaged files too. Each row is a
// hand-made file and one query.

#include "store/commit.h"
#include "store/profile.h"
#include "testsupport.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using testsupport::gb;

class tst_profile : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void missingFileReadsEmpty();
    void writerEmitsGb18030WithCrLf();
    void writerReplacesFileWhole();
};

void tst_profile::reads_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("section");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<int>("buffer");
    QTest::addColumn<QString>("expected");

    auto row = [](const char *name, const QByteArray &file, const QByteArray &section,
                  const QByteArray &key, const QString &expected, int buffer = 256) {
        QTest::newRow(name) << file << section << key << buffer << expected;
    };

    // Names
    row("section name ignores letter case", "[EMail]\r\nnumber=3\r\n", "email", "number", u"3"_s);
    row("key name ignores letter case", "[email]\r\nNumBer=3\r\n", "email", "number", u"3"_s);
    row("query case does not matter", "[email]\r\nnumber=3\r\n", "EMAIL", "NUMBER", u"3"_s);
    row("first section of a name is searched", "[a]\r\nk=1\r\n[A]\r\nk=2\r\n", "a", "k", u"1"_s);
    row("later section of a name is not merged in", "[a]\r\nk=1\r\n[a]\r\nj=2\r\n", "a", "j", QString());
    row("first matching key wins", "[a]\r\nk=1\r\nK=2\r\n", "a", "k", u"1"_s);
    row("other sections are not searched", "[a]\r\nk=1\r\n[b]\r\n", "b", "k", QString());

    // Blanks
    row("blanks around section name dropped", "[ \t a \v]\r\nk=1\r\n", "a", "k", u"1"_s);
    row("blanks around key dropped", "[a]\r\n \t k \v=1\r\n", "a", "k", u"1"_s);
    row("blanks around value dropped, inner kept", "[a]\r\nk= \t v  1 \v\r\n", "a", "k", u"v  1"_s);
    row("blank lines ignored", "[a]\r\n\r\n \t \r\nk=1\r\n", "a", "k", u"1"_s);
    row("blank header line before section", "  [a]\r\nk=1\r\n", "a", "k", u"1"_s);

    // Comments
    row("semicolon line is a comment", "[a]\r\n;k=1\r\nk=2\r\n", "a", "k", u"2"_s);
    row("semicolon after blanks is a comment", "[a]\r\n  ;k=1\r\n", "a", "k", QString());
    row("semicolon inside value is text", "[a]\r\nk=x;y\r\n", "a", "k", u"x;y"_s);
    row("semicolon inside key is text", "[a]\r\nk;x=1\r\n", "a", "k;x", u"1"_s);

    // Headers
    row("rest of header line ignored", "[a] junk=1\r\nk=2\r\n", "a", "k", u"2"_s);
    row("header without closing bracket", "[ a \r\nk=1\r\n", "a", "k", u"1"_s);
    row("header name ends at first bracket", "[a]b]\r\nk=1\r\n", "a", "k", u"1"_s);
    row("trail byte 0x5D does not end a name", "[x" + gb(u"匽"_s) + "y]\r\nk=1\r\n",
        "x" + gb(u"匽"_s) + "y", "k", u"1"_s);
    row("lines before the first header are never found", "k=1\r\n[a]\r\n", "", "k", QString());
    row("key before first header not in first section", "k=1\r\n[a]\r\n", "a", "k", QString());

    // Keys and values
    row("first equals sign separates", "[a]\r\nk=a=b\r\n", "a", "k", u"a=b"_s);
    row("line without equals gives no value", "[a]\r\nk\r\n", "a", "k", QString());
    row("line without equals hides a later key", "[a]\r\nk\r\nk=2\r\n", "a", "k", QString());
    row("empty value", "[a]\r\nk=\r\n", "a", "k", QString());
    row("missing key", "[a]\r\nj=1\r\n", "a", "k", QString());
    row("missing section", "[a]\r\nk=1\r\n", "b", "k", QString());
    row("empty file", "", "a", "k", QString());

    // Quotes
    row("double quotes stripped", "[a]\r\nk=\"a b\"\r\n", "a", "k", u"a b"_s);
    row("single quotes stripped", "[a]\r\nk='a'\r\n", "a", "k", u"a"_s);
    row("blanks inside quotes kept", "[a]\r\nk=\" a \"\r\n", "a", "k", u" a "_s);
    row("blanks outside quotes dropped first", "[a]\r\nk=  'a'  \r\n", "a", "k", u"a"_s);
    row("mismatched quotes kept", "[a]\r\nk=\"a'\r\n", "a", "k", u"\"a'"_s);
    row("lone quote kept", "[a]\r\nk=\"\r\n", "a", "k", u"\""_s);
    row("two quotes give empty", "[a]\r\nk=''\r\n", "a", "k", QString());
    row("only one pair stripped", "[a]\r\nk=\"\"a\"\"\r\n", "a", "k", u"\"a\""_s);
    row("quote at one end only kept", "[a]\r\nk=\"abc\r\n", "a", "k", u"\"abc"_s);

    // Line ends
    row("LF alone ends a line", "[a]\nj=0\nk=1\n", "a", "k", u"1"_s);
    row("CR alone ends a line", "[a]\rj=0\rk=1\r", "a", "k", u"1"_s);
    row("mixed line ends", "[a]\r\nj=0\rk=1\nl=2", "a", "l", u"2"_s);
    row("missing last line end", "[a]\r\nk=1", "a", "k", u"1"_s);
    row("CR LF is one line end, not two", "[a]\r\nk=1\r\n", "a", "k", u"1"_s);

    // Buffer limits
    const QByteArray x300(300, 'x');
    row("value cut to 255 bytes", "[a]\r\nk=" + x300 + "\r\n", "a", "k", QString(255, u'x'));
    row("value of 255 bytes kept whole", "[a]\r\nk=" + QByteArray(255, 'x') + "\r\n", "a", "k",
        QString(255, u'x'));
    row("content buffer keeps 2047 bytes",
        "[a]\r\nk=" + QByteArray(2100, 'x') + "\r\n", "a", "k", QString(2047, u'x'), 2048);
    row("two-byte characters not split",
        "[a]\r\nk=" + gb(QString(200, u'中')) + "\r\n", "a", "k", QString(127, u'中'));
    row("two-byte characters fill 255 exactly",
        "[a]\r\nk=x" + gb(QString(200, u'中')) + "\r\n", "a", "k", u"x"_s + QString(127, u'中'));
    row("four-byte characters not split",
        "[a]\r\nk=xx" + gb(u"𠀀"_s.repeated(100)) + "\r\n",
        "a", "k", u"xx"_s + u"𠀀"_s.repeated(63));
    row("quotes stripped before the cut",
        "[a]\r\nk=\"" + x300 + "\"\r\n", "a", "k", QString(255, u'x'));
    row("Chinese value decoded from GB18030", "[a]\r\nk=" + gb(u"收件箱 测试"_s) + "\r\n", "a", "k",
        u"收件箱 测试"_s);
}

void tst_profile::reads()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, section);
    QFETCH(QByteArray, key);
    QFETCH(int, buffer);
    QFETCH(QString, expected);

    testsupport::DataDir dir;
    dir.writeBytes(u"t.dat"_s, file);
    QCOMPARE(ProfileFile::load(dir.filePath(u"t.dat"_s)).value(section, key, buffer), expected);
}

void tst_profile::missingFileReadsEmpty()
{
    testsupport::DataDir dir;
    QCOMPARE(ProfileFile::load(dir.filePath(u"none.dat"_s)).value("a", "k"), QString());
}

void tst_profile::writerEmitsGb18030WithCrLf()
{
    ProfileWriter w;
    w.line(u"[a]"_s);
    w.line(u"k", u"收件箱"_s);
    w.line(QString());
    QCOMPARE(w.bytes(), QByteArray("[a]\r\nk=" + gb(u"收件箱"_s) + "\r\n\r\n"));
    QCOMPARE(gb(u"收"_s), QByteArray("\xca\xd5"));  // GBK-compatible bytes
}

void tst_profile::writerReplacesFileWhole()
{
    testsupport::DataDir dir;
    dir.writeBytes(u"t.dat"_s, QByteArray(5000, 'z'));
    FileCommit c;
    c.add(u"t.dat"_s, "[a]\r\n");
    c.run();
    QCOMPARE(dir.readBytes(u"t.dat"_s), QByteArray("[a]\r\n"));
}

QTEST_GUILESS_MAIN(tst_profile)
#include "tst_profile.moc"
