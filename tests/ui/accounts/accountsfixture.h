#pragma once

// Shared ground of the accounts tests: account files byte for byte, a driver
// for nested modal windows, and a main under the program's own application
// object, whose error guard turns a store error into the error box.

#include "store/records.h"
#include "fixtures.h"

#include <QObject>

#include <functional>

namespace accountstest {

// Account k of a fixture; its display and logon names differ.
MailBoxRec account(int k);
QList<MailBoxRec> accounts(int n);
QByteArray accountFile(const QList<MailBoxRec> &records);  // mailbox.dat as written
void writeAccounts(const testsupport::DataDir &dir, const QList<MailBoxRec> &records);

// Runs each step once the window of that objectName is the active modal
// one; steps may open further modal windows. A stalled script closes every
// modal dialog, so that a failing test does not hang.
class ModalScript : public QObject
{
public:
    using Step = std::function<void(QWidget *)>;
    ModalScript &on(const QString &window, Step step);
    void start();
    bool finished() const { return m_steps.isEmpty() && m_failure.isEmpty(); }
    QByteArray report() const;

private:
    void poll();
    QList<QPair<QString, Step>> m_steps;
    QString m_failure;
    int m_idlePolls = 0;
};

struct WizardAnswers
{
    QString displayName = QStringLiteral("New Office");
    QString address = QStringLiteral("New.Office@Example.com");
    QString incoming = QStringLiteral("POP.example.com");
    QString outgoing = QStringLiteral("SMTP.example.com");
    QString logon = QStringLiteral("NewLogon");
    QString password = QStringLiteral("Secret");
};
MailBoxRec storedRecord(const WizardAnswers &a);  // as mailbox.dat holds it

// Fills pages 1 to lastPage and presses Next (Finish on page 5) on each;
// on lastPage only when pressLast.
void walkWizard(ModalScript &script, const WizardAnswers &a, int lastPage = 5,
                bool pressLast = true);

QString pageName(int page);
void type(QWidget *window, const QString &box, const QString &text);
void erase(QWidget *window, const QString &box);
void click(QWidget *window, const QString &button);

}  // namespace accountstest

#define ACCOUNTS_TEST_MAIN(TestClass)                                  \
    int main(int argc, char *argv[])                                   \
    {                                                                  \
        QuillpostApplication app(argc, argv);                          \
        TestClass tc;                                                  \
        QTEST_SET_MAIN_SOURCE_PATH                                     \
        return QTest::qExec(&tc, argc, argv);                          \
    }
