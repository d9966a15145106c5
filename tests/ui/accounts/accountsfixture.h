#pragma once

// Shared ground of the accounts tests: account files written and expected
// byte for byte, a driver for the nested modal windows, and a test main that
// runs under the program's own application object, so that a store error
// shows the program's error box.

#include "store/records.h"
#include "testsupport.h"

#include <QObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

namespace accountstest {

// Account k of a fixture: display name and logon name differ, so a test can
// tell which of them a window shows.
MailBoxRec account(int k);
QList<MailBoxRec> accounts(int n);

// mailbox.dat as the program writes it for these records.
QByteArray accountFile(const QList<MailBoxRec> &records);
void writeAccounts(const testsupport::DataDir &dir, const QList<MailBoxRec> &records);

// Acts on modal windows as they come up: each step waits until the window
// of that objectName is the active modal one, then runs. Steps may open
// further modal windows; the driver keeps going inside their loops.
class ModalScript : public QObject
{
public:
    using Step = std::function<void(QWidget *)>;

    ModalScript &on(const QString &window, Step step);
    void start();
    bool finished() const { return m_steps.isEmpty() && m_failure.isEmpty(); }
    // What went wrong, for QVERIFY2; a script that stalls closes every
    // dialog so that the test does not hang.
    QByteArray report() const;

private:
    void poll();

    struct Pending
    {
        QString window;
        Step step;
    };
    QList<Pending> m_steps;
    QString m_failure;
    int m_idlePolls = 0;
};

// What a user types into the wizard, page by page.
struct WizardAnswers
{
    QString displayName = QStringLiteral("New Office");
    QString address = QStringLiteral("New.Office@Example.com");
    QString incoming = QStringLiteral("POP.example.com");
    QString outgoing = QStringLiteral("SMTP.example.com");
    QString logon = QStringLiteral("NewLogon");
    QString password = QStringLiteral("Secret");
};
// The record the accounts dialog stores for these answers, as read back.
MailBoxRec storedRecord(const WizardAnswers &a);

// Steps that fill pages 1 to `lastPage` and press Next on each of them (on
// page 5: Finish), stopping before the Next of page `lastPage` when
// `pressLast` is false.
void walkWizard(ModalScript &script, const WizardAnswers &a, int lastPage = 5,
                bool pressLast = true);

QString pageName(int page);
void type(QWidget *window, const QString &box, const QString &text);
void erase(QWidget *window, const QString &box);
void click(QWidget *window, const QString &button);
bool enabled(QWidget *window, const QString &widget);

}  // namespace accountstest

// A test main under the program's application object.
#define ACCOUNTS_TEST_MAIN(TestClass)                                  \
    int main(int argc, char *argv[])                                   \
    {                                                                  \
        QuillpostApplication app(argc, argv);                          \
        TestClass tc;                                                  \
        QTEST_SET_MAIN_SOURCE_PATH                                     \
        return QTest::qExec(&tc, argc, argv);                          \
    }
