// The profile-file reader must answer every query as the platform's profile
// reader would, for hand-edited and damaged files too, whatever encoding a
// text editor saved them in. Each row is a hand-made file and one query.

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
    row("first section of a name is searched", "[a]\r\nk=1\r\n[A]\r\nk=2\r\n", "a", "k", u"1"_s);
    row("later section of a name is not merged in", "[a]\r\nk=1\r\n[a]\r\nj=2\r\n", "a", "j", QString());
    row("first matching key wins", "[a]\r\nk=1\r\nK=2\r\n", "a", "k", u"1"_s);

    // Blanks
    row("blanks around section name dropped", "[ \t a \v]\r\nk=1\r\n", "a", "k", u"1"_s);
    row("blanks around key dropped", "[a]\r\n \t k \v=1\r\n", "a", "k", u"1"_s);
    row("blanks around value dropped, inner kept", "[a]\r\nk= \t v  1 \v\r\n", "a", "k", u"v  1"_s);
    row("blank lines ignored", "[a]\r\n\r\n \t \r\nk=1\r\n", "a", "k", u"1"_s);

    // Comments
    row("semicolon line is a comment", "[a]\r\n;k=1\r\nk=2\r\n", "a", "k", u"2"_s);
    row("semicolon after blanks is a comment", "[a]\r\n  ;k=1\r\n", "a", "k", QString());
    row("semicolon inside value is text", "[a]\r\nk=x;y\r\n", "a", "k", u"x;y"_s);

    // Headers
    row("rest of header line ignored", "[a] junk=1\r\nk=2\r\n", "a", "k", u"2"_s);
    row("header without closing bracket", "[ a \r\nk=1\r\n", "a", "k", u"1"_s);
    row("header name ends at first bracket", "[a]b]\r\nk=1\r\n", "a", "k", u"1"_s);
    row("trail byte 0x5D does not end a name", "[x" + gb(u"匽"_s) + "y]\r\nk=1\r\n",
        "x" + gb(u"匽"_s) + "y", "k", u"1"_s);
    row("lines before the first header are never found", "k=1\r\n[a]\r\n", "", "k", QString());

    // Keys and values
    row("first equals sign separates", "[a]\r\nk=a=b\r\n", "a", "k", u"a=b"_s);
    row("line without equals gives no value", "[a]\r\nk\r\n", "a", "k", QString());
    row("line without equals hides a later key", "[a]\r\nk\r\nk=2\r\n", "a", "k", QString());
    row("missing key", "[a]\r\nj=1\r\n", "a", "k", QString());
    row("empty file", "", "a", "k", QString());

    // Quotes
    row("double quotes stripped", "[a]\r\nk=\"a b\"\r\n", "a", "k", u"a b"_s);
    row("single quotes stripped", "[a]\r\nk='a'\r\n", "a", "k", u"a"_s);
    row("blanks inside quotes kept", "[a]\r\nk=\" a \"\r\n", "a", "k", u" a "_s);
    row("blanks outside quotes dropped first", "[a]\r\nk=  'a'  \r\n", "a", "k", u"a"_s);
    row("mismatched quotes kept", "[a]\r\nk=\"a'\r\n", "a", "k", u"\"a'"_s);
    row("two quotes give empty", "[a]\r\nk=''\r\n", "a", "k", QString());
    row("only one pair stripped", "[a]\r\nk=\"\"a\"\"\r\n", "a", "k", u"\"a\""_s);
    row("quote at one end only kept", "[a]\r\nk=\"abc\r\n", "a", "k", u"\"abc"_s);

    // Line ends
    row("LF alone ends a line", "[a]\nj=0\nk=1\n", "a", "k", u"1"_s);
    row("CR alone ends a line", "[a]\rj=0\rk=1\r", "a", "k", u"1"_s);
    row("mixed line ends", "[a]\r\nj=0\rk=1\nl=2", "a", "l", u"2"_s);
    row("missing last line end", "[a]\r\nk=1", "a", "k", u"1"_s);

    // Buffer limits
    const QByteArray x300(300, 'x');
    row("value cut to 255 bytes", "[a]\r\nk=" + x300 + "\r\n", "a", "k", QString(255, u'x'));
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

    // Encodings a text editor may have saved the file in
    const QString inbox = u"收件箱 é"_s;
    const auto utf16 = [](const QString &text, bool littleEndian) {
        QByteArray out = littleEndian ? "\xFF\xFE" : "\xFE\xFF";
        for (QChar c : text) {
            const char hi = char(c.unicode() >> 8), lo = char(c.unicode() & 0xFF);
            out.append(littleEndian ? lo : hi).append(littleEndian ? hi : lo);
        }
        return out;
    };
    row("UTF-8 with a byte-order mark", "\xEF\xBB\xBF[a]\r\nk=" + inbox.toUtf8(), "a", "k", inbox);
    row("UTF-8 without a mark, Chinese text", "[a]\r\nk=" + inbox.toUtf8(), "a", "k", inbox);
    row("UTF-16 little-endian", utf16(u"[a]\r\nk="_s + inbox, true), "a", "k", inbox);
    row("UTF-16 big-endian", utf16(u"[a]\r\nk="_s + inbox, false), "a", "k", inbox);
    row("GB18030 that is also valid UTF-8 stays GB18030", "[a]\r\nk=" + gb(u"隆"_s), "a", "k",
        u"隆"_s);
    row("UTF-8 Latin text without Chinese stays GB18030", "[a]\r\nk=\xC3\xA9", "a", "k",
        u"茅"_s);
    row("UTF-8 cut as the GB18030 it becomes",
        "[a]\r\nk=" + QString(200, u'中').toUtf8(), "a", "k", QString(127, u'中'));
}

void tst_profile::reads()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, section);
    QFETCH(QByteArray, key);
    QFETCH(int, buffer);
    QFETCH(QString, expected);

    QCOMPARE(ProfileFile::parse(file).value(section, key, buffer), expected);
}

QTEST_GUILESS_MAIN(tst_profile)
#include "tst_profile.moc"
