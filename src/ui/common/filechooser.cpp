#include "filechooser.h"

#include <QFileDialog>

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

QString DialogFileChooser::openFileName(QWidget *parent, const QString &title,
                                        const QString &filter)
{
    return QFileDialog::getOpenFileName(parent, title, QString(), filter);
}

QString DialogFileChooser::saveFileName(QWidget *parent, const QString &title,
                                        const QString &suggestedName, const QString &filter)
{
    return QFileDialog::getSaveFileName(parent, title, suggestedName, filter);
}

ScriptedFileChooser::ScriptedFileChooser() : m_previous(&fileChooser())
{
    setFileChooser(this);
}

ScriptedFileChooser::~ScriptedFileChooser()
{
    setFileChooser(m_previous == this ? nullptr : m_previous);
}

QString ScriptedFileChooser::next(const QString &title)
{
    ++m_asked;
    m_lastTitle = title;
    return m_answers.isEmpty() ? QString() : m_answers.takeFirst();
}

QString ScriptedFileChooser::openFileName(QWidget *, const QString &title, const QString &)
{
    return next(title);
}

QString ScriptedFileChooser::saveFileName(QWidget *, const QString &title, const QString &,
                                          const QString &)
{
    return next(title);
}
