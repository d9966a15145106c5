#include "accountsfixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace accountstest {

MailBoxRec account(int k)
{
    const QString n = QString::number(k);
    return {u"office "_s + n, u"pop"_s + n + u".example.com"_s, u"smtp"_s + n + u".example.com"_s,
            u"logon"_s + n, u"pw"_s + n, u"user"_s + n + u"@example.com"_s};
}

QList<MailBoxRec> accounts(int n)
{
    QList<MailBoxRec> list;
    for (int k = 1; k <= n; ++k)
        list.append(account(k));
    return list;
}

QByteArray accountFile(const QList<MailBoxRec> &records)
{
    QStringList lines{u"[mailbox]"_s, u"number="_s + QString::number(records.size()), QString()};
    for (int i = 0; i < records.size(); ++i) {
        const MailBoxRec &r = records[i];
        lines << u"[mailbox-%1]"_s.arg(i + 1) << u"name="_s + r.name << u"pop="_s + r.pop
              << u"smtp="_s + r.smtp << u"username="_s + r.username
              << u"userpassword="_s + r.userpassword << u"address="_s + r.address << QString();
    }
    return testsupport::crlfLines(lines);
}

void writeAccounts(const testsupport::DataDir &dir, const QList<MailBoxRec> &records)
{
    dir.writeBytes(MailBoxFileName, accountFile(records));
}

MailBoxRec storedRecord(const WizardAnswers &a)
{
    return {a.displayName.toLower(), a.incoming.toLower(), a.outgoing.toLower(),
            a.logon.toLower(),       a.password.toLower(), a.address.toLower()};
}

ModalScript &ModalScript::on(const QString &window, Step step)
{
    m_steps.append({window, std::move(step)});
    return *this;
}

void ModalScript::start()
{
    QTimer::singleShot(0, this, &ModalScript::poll);
}

QByteArray ModalScript::report() const
{
    if (!m_failure.isEmpty())
        return m_failure.toUtf8();
    return m_steps.isEmpty() ? QByteArray("ok") : QByteArray("never saw ") + m_steps.first().first.toUtf8();
}

void ModalScript::poll()
{
    if (m_steps.isEmpty())
        return;
    // A new single shot each time: a timer does not fire again inside a
    // nested loop that its own handler started.
    QTimer::singleShot(5, this, &ModalScript::poll);
    QWidget *active = QApplication::activeModalWidget();
    if (active && active->objectName() == m_steps.first().first) {
        m_idlePolls = 0;
        m_steps.takeFirst().second(active);
        return;
    }
    if (++m_idlePolls < 400)
        return;
    m_failure = u"waited for %1 under %2"_s.arg(m_steps.first().first,
                                                 active ? active->objectName() : u"nothing"_s);
    m_steps.clear();
    for (QWidget *w : QApplication::topLevelWidgets())
        if (auto *d = qobject_cast<QDialog *>(w); d && d->isVisible() && d->isModal())
            d->done(QDialog::Rejected);
}

QString pageName(int page)
{
    return u"frmMainBoxAdd"_s + QString::number(page);
}

void type(QWidget *window, const QString &box, const QString &text)
{
    QTest::keyClicks(window->findChild<QLineEdit *>(box), text);
}

void erase(QWidget *window, const QString &box)
{
    auto *edit = window->findChild<QLineEdit *>(box);
    edit->end(false);
    while (!edit->text().isEmpty())
        QTest::keyClick(edit, Qt::Key_Backspace);
}

void click(QWidget *window, const QString &button)
{
    auto *b = window->findChild<QAbstractButton *>(button);
    QVERIFY2(b, qPrintable(button));
    // Check boxes and option buttons answer only on their mark and text.
    const bool marked = qobject_cast<QCheckBox *>(b) || qobject_cast<QRadioButton *>(b);
    QTest::mouseClick(b, Qt::LeftButton, {}, marked ? QPoint(6, b->height() / 2) : QPoint());
}

void walkWizard(ModalScript &script, const WizardAnswers &a, int lastPage, bool pressLast)
{
    const QList<QStringList> typing = {{a.displayName}, {a.address}, {a.incoming, a.outgoing},
                                       {a.logon, a.password}, {}};
    for (int page = 1; page <= lastPage; ++page) {
        const QStringList texts = typing[page - 1];
        const bool press = page < lastPage || pressLast;
        script.on(pageName(page), [texts, press, page](QWidget *w) {
            for (int i = 0; i < texts.size(); ++i)
                type(w, u"Text%1"_s.arg(i + 1), texts[i]);
            if (press)
                click(w, page == 5 ? u"btnOK"_s : u"btnForWard"_s);
        });
    }
}

}  // namespace accountstest
