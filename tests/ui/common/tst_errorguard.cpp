// The application's event guard: a store error ends the running operation
// with an error box, and the program carries on.

#include "store/errors.h"
#include "testsupport.h"
#include "texts.h"
#include "ui/common/application.h"

#include <QTest>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;
using testsupport::ScriptedPrompter;

namespace {
// An operation that the store abandons while it handles an event.
class Operation : public QObject
{
public:
    enum Fault { None, Index, Format, Other };
    Fault fault = None;
    int completed = 0;

    bool event(QEvent *e) override
    {
        if (e->type() != QEvent::User)
            return QObject::event(e);
        switch (fault) {
        case Index: throw IndexError(texts::TooManyMails);
        case Format: throw FormatError(texts::BadStoredContent);
        case Other: throw std::runtime_error("disk gone");
        case None: break;
        }
        ++completed;
        return true;
    }
};
}  // namespace

class tst_ErrorGuard : public QObject
{
    Q_OBJECT

private slots:
    void abandonsWithABox_data();
    void abandonsWithABox();
};

void tst_ErrorGuard::abandonsWithABox_data()
{
    QTest::addColumn<int>("fault");
    QTest::addColumn<QString>("reason");
    QTest::newRow("a 102nd message") << int(Operation::Index) << texts::TooManyMails;
    QTest::newRow("a damaged stored body") << int(Operation::Format) << texts::BadStoredContent;
    QTest::newRow("any other failure") << int(Operation::Other) << u"disk gone"_s;
}

void tst_ErrorGuard::abandonsWithABox()
{
    QFETCH(int, fault);
    QFETCH(QString, reason);
    ScriptedPrompter boxes;
    boxes.expectMessage(Prompter::Icon::Exclamation, u"Quillpost Express"_s,
                        u"操作未能完成，所有文件保持不变。\r\r"_s + reason);
    Operation op;
    op.fault = Operation::Fault(fault);
    QEvent e(QEvent::User);
    QCOMPARE(QCoreApplication::sendEvent(&op, &e), false);
    QVERIFY2(boxes.done(), boxes.report());

    // The program is still running: the next operation completes.
    op.fault = Operation::None;
    QCOMPARE(QCoreApplication::sendEvent(&op, &e), true);
    QCOMPARE(op.completed, 1);
}

int main(int argc, char *argv[])
{
    QuillpostApplication app(argc, argv);
    tst_ErrorGuard test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_errorguard.moc"
