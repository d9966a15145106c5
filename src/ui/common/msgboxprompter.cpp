#include "msgboxprompter.h"

#include "texts.h"

#include <QAbstractButton>
#include <QApplication>

namespace {
// The boxes' texts part a headline from its reason with CR characters; the
// label breaks lines at LF.
QString shown(const QString &text)
{
    QString s = text;
    s.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    s.replace(u'\r', u'\n');
    return s;
}
}  // namespace

QMessageBox::Icon MessageBoxPrompter::boxIcon(Icon icon)
{
    switch (icon) {
    case Icon::Information: return QMessageBox::Information;
    case Icon::Exclamation: return QMessageBox::Warning;
    case Icon::Warning: return QMessageBox::Warning;
    case Icon::Question: return QMessageBox::Question;
    case Icon::Critical: return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

void MessageBoxPrompter::message(Icon icon, const QString &title, const QString &text)
{
    QMessageBox box(boxIcon(icon), title, shown(text), QMessageBox::Ok, QApplication::activeWindow());
    // The program's own buttons read Chinese even where the toolkit's
    // translations are not installed.
    box.button(QMessageBox::Ok)->setText(texts::ButtonOk);
    box.exec();
}

bool MessageBoxPrompter::confirm(Icon icon, const QString &title, const QString &text,
                                 Default answer)
{
    QMessageBox box(boxIcon(icon), title, shown(text), QMessageBox::Yes | QMessageBox::No,
                    QApplication::activeWindow());
    box.button(QMessageBox::Yes)->setText(texts::ButtonYes);
    box.button(QMessageBox::No)->setText(texts::ButtonNo);
    box.setDefaultButton(answer == Default::Yes ? QMessageBox::Yes : QMessageBox::No);
    box.setEscapeButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}
