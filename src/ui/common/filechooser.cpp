#include "filechooser.h"

#include "twips.h"

#include <QFileDialog>
#include <QHeaderView>
#include <QTreeView>
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

void PrepareFileDialog(QFileDialog *dialog)
{
    // Wide enough for the Chinese column headings and file types, whose
    // columns would otherwise be cut to "…".
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->resize(twips::toPixels(11400), twips::toPixels(6900));
    if (auto *details = dialog->findChild<QTreeView *>(u"treeView"_s)) {
        QHeaderView *header = details->header();
        header->setStretchLastSection(false);
        header->setSectionResizeMode(0, QHeaderView::Stretch);
        for (int column = 1; column < header->count(); ++column)
            header->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    }
}

namespace {
QString chosen(QFileDialog &dialog)
{
    PrepareFileDialog(&dialog);
    return dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()
        ? dialog.selectedFiles().first()
        : QString();
}
}  // namespace

QString DialogFileChooser::openFileName(QWidget *parent, const QString &title,
                                        const QString &filter)
{
    QFileDialog dialog(parent, title, QString(), dialogFilter(filter));
    dialog.setFileMode(QFileDialog::ExistingFile);
    return chosen(dialog);
}

QString DialogFileChooser::saveFileName(QWidget *parent, const QString &title,
                                        const QString &suggestedName, const QString &filter)
{
    QFileDialog dialog(parent, title, QString(), dialogFilter(filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.selectFile(suggestedName);
    // The program asks itself what to do with a file that is there: it adds
    // to it rather than replacing it.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    return chosen(dialog);
}
