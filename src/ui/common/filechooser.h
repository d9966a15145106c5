#pragma once

#include <QList>
#include <QString>

class QFileDialog;
class QWidget;

// The open and save file dialogs, behind a port so that no test ever blocks
// on a real modal dialog. An empty result means the user cancelled. A
// filter is written in the windows' own "description|pattern|" form.
class FileChooser
{
public:
    virtual ~FileChooser() = default;
    virtual QString openFileName(QWidget *parent, const QString &title,
                                 const QString &filter) = 0;
    virtual QString saveFileName(QWidget *parent, const QString &title,
                                 const QString &suggestedName, const QString &filter) = 0;
};

// The real dialogs.
class DialogFileChooser final : public FileChooser
{
public:
    QString openFileName(QWidget *parent, const QString &title, const QString &filter) override;
    QString saveFileName(QWidget *parent, const QString &title, const QString &suggestedName,
                         const QString &filter) override;
};

// A "description|pattern|..." filter in the form Qt's dialogs read:
// "All Files(*.*)|*.*|" becomes "All Files(*.*)"; a description without
// its pattern in brackets gets it appended.
QString dialogFilter(const QString &barFilter);

// The installed chooser; the real dialogs until another is installed.
FileChooser &fileChooser();
// Installs c (not owned); nullptr goes back to the real dialogs.
void setFileChooser(FileChooser *c);

// Sizes the toolkit's file dialog for the Chinese texts of its columns.
void PrepareFileDialog(QFileDialog *dialog);
