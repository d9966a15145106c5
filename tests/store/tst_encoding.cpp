// The byte-level rules under every data file: which encoding a file's bytes
// are taken for, where a value may be cut, what the writer drops or changes,
// and which bytes make a file binary.

#include "store/profile.h"
#include "store/textutil.h"

#include <QTest>

#include <cstring>

using namespace Qt::Literals::StringLiterals;

class tst_encoding : public QObject
{
    Q_OBJECT

private slots:
    // Bytes without a byte-order mark are UTF-8 only when they are strict
    // UTF-8 and read as Chinese text; control bytes other than the blanks, line
    // ends and end-of-file mark make a file binary.
    void takenFor_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("utf8");
        QTest::addColumn<bool>("binary");
        QTest::newRow("Chinese") << u"中文"_s.toUtf8() << true << false;
        QTest::newRow("a trail byte at the top of its range") << u"丿"_s.toUtf8() << true << false;
        QTest::newRow("Chinese beyond the plane") << u"中𠀀"_s.toUtf8() << true << false;
        QTest::newRow("Latin-1 letters beside Chinese") << u"中é"_s.toUtf8() << true << false;
        QTest::newRow("full-width forms and punctuation") << u"ＡＢ…、"_s.toUtf8() << true << false;
        QTest::newRow("general punctuation to its last, U+206F") << u"中\u206F"_s.toUtf8() << true << false;
        QTest::newRow("Greek beside Chinese") << u"中α"_s.toUtf8() << false << false;
        QTest::newRow("ASCII with tab, line ends, VT, FF and end-of-file mark") << "a\t\n\v\f\r\x1A"_ba << false << false;
        QTest::newRow("an overlong form") << "\xE0\x80\xAF"_ba << false << false;
        QTest::newRow("an encoded surrogate") << "\xED\xA0\x80"_ba << false << false;
        QTest::newRow("past U+10FFFF") << "\xF4\x90\x80\x80"_ba << false << false;
        QTest::newRow("a character cut short") << u"中"_s.toUtf8().chopped(1) << false << false;
        QTest::newRow("NUL is binary") << QByteArray("a\0", 2) << false << true;
    }
    void takenFor()
    {
        QFETCH(QByteArray, bytes);
        QTEST(!ReadsAsGb18030(bytes), "utf8");
        QTEST(HoldsBinary(bytes), "binary");
    }

    // A cut keeps whole GB18030 characters, one byte short of the bytes
    // given: a two- or four-byte character goes whole, and bytes that make
    // no character (a lead byte without its continuation) one by one.
    void cutToCharacters_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("kept");
        for (const char *c : {"\x81\x40", "\x81\x7E", "\x81\x80", "\xFE\xFE", "\x81\x30\x81\x30", "\xFE\x39\xFE\x39"})
            QTest::addRow("one character: %s", QByteArray(c).toHex(' ').constData()) << QByteArray(c) << 0;
        for (const char *c : {"\x81\x3F", "\x81\x7F", "\x81\xFF", "\x80\x40", "\xFF\x40", "\x81\x30\x81",
                              "\x81\x30\x80\x30", "\x81\x30\xFF\x30", "\x81\x30\x81\x2F", "\x81\x30\x81\x3A",
                              "\x81\x2F\x81\x30"})
            QTest::addRow("bytes of their own: %s", QByteArray(c).toHex(' ').constData())
                << QByteArray(c) << int(strlen(c) - 1);
    }
    void cutToCharacters()
    {
        QFETCH(QByteArray, bytes);
        QTEST(int(::cutToCharacters(bytes, bytes.size() - 1).size()), "kept");
    }

    // What a value becomes in the file: letters lower-cased, control
    // characters dropped, a line break a blank, in a body "\n".
    void writtenValues_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("letters lower-cased, the rest kept") << u"AZaz@[`{~中"_s << "azaz@[`{~\xD6\xD0"_ba
                                                            << "azaz@[`{~\xD6\xD0"_ba;
        QTest::newRow("a terminal's colour code dropped") << u"\x1B[1mX\x01"_s << "[1mx"_ba << "[1mx"_ba;
        QTest::newRow("tab, form feed and the end-of-file mark kept") << u"\t\f\x1A"_s << "\t\f\x1A"_ba << "\t\f\x1A"_ba;
        QTest::newRow("CR LF, CR and LF each one break") << u"a\r\nb\rc\nd"_s << "a  b c d"_ba << "a\\nb\\nc\\nd"_ba;
        QTest::newRow("a CR at the very end") << u"a\r"_s << "a "_ba << "a\\n"_ba;
    }
    void writtenValues()
    {
        QFETCH(QString, value);
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, body);
        ProfileWriter w;
        w.section("s");
        w.line(u"k"_s, value);
        w.bodyLine(u"c"_s, value);
        QCOMPARE(w.bytes(), "[s]\r\nk=" + line + "\r\nc=[" + body + "]\r\n");
    }

    void leadingNumber_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("number");
        QTest::newRow("leading zeros go") << u"007"_s << u"7"_s;
        QTest::newRow("zeros alone are 0") << u"000"_s << u"0"_s;
        QTest::newRow("blanks before, text after") << u" \t\r\n12ab"_s << u"12"_s;
        QTest::newRow("no digits") << u"yes"_s << u"0"_s;
    }
    void leadingNumber()
    {
        QFETCH(QString, text);
        QFETCH(QString, number);
        QCOMPARE(LeadingNumberText(text), number);
        QCOMPARE(LeadingNumber(text), number.toInt());
    }
};

QTEST_GUILESS_MAIN(tst_encoding)
#include "tst_encoding.moc"
