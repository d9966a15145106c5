#include "filechooser.h"

#include <QFileDialog>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace {
DialogFileChooser dialogs;
FileChooser *installed = &dialogs;
}  // namespace

FileChooser &fileChooser()
{
    return *installed;
}

void setFileChooser(FileChooser *c)
{
    installed = c ? c : &dialogs;
}

QString dialogFilter(const QString &barFilter)
{
    if (!barFilter.contains(u'|'))
        return barFilter;
    const QStringList parts = barFilter.split(u'|');
    QStringList filters;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        const QString &description = parts.at(i);
        const QString &pattern = parts.at(i + 1);
        if (description.isEmpty() && pattern.isEmpty())
            continue;
        filters << (description.endsWith(u'(' + pattern + u')')
                        ? description
                        : description + u" ("_s + pattern + u')');
    }
    return filters.join(u";;"_s);
}

QString DialogFileChooser::openFileName(QWidget *parent, const QString &title,
                                        const QString &filter)
{
    return QFileDialog::getOpenFileName(parent, title, QString(), dialogFilter(filter));
}

QString DialogFileChooser::saveFileName(QWidget *parent, const QString &title,
                                        const QString &suggestedName, const QString &filter)
{
    // The program asks itself what to do with a file that is there: it adds
    // to it rather than replacing it.
    return QFileDialog::getSaveFileName(parent, title, suggestedName, dialogFilter(filter), nullptr,
                                        QFileDialog::DontConfirmOverwrite);
}
