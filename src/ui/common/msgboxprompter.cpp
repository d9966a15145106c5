#include "msgboxprompter.h"

#include <QApplication>

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
    QMessageBox box(boxIcon(icon), title, text, QMessageBox::Ok, QApplication::activeWindow());
    box.exec();
}

bool MessageBoxPrompter::confirm(Icon icon, const QString &title, const QString &text)
{
    QMessageBox box(boxIcon(icon), title, text, QMessageBox::Yes | QMessageBox::No,
                    QApplication::activeWindow());
    box.setDefaultButton(QMessageBox::Yes);
    return box.exec() == QMessageBox::Yes;
}
