#include "forms.h"

#include "scaffold.h"

#include <QList>

namespace forms {

namespace {
QList<QPointer<QWidget>> &created()
{
    static QList<QPointer<QWidget>> list;
    return list;
}

QPointer<QWidget> &registeredMain()
{
    static QPointer<QWidget> main;
    return main;
}
}  // namespace

void setMainWindow(QWidget *window)
{
    registeredMain() = window;
}

QWidget *mainWindow()
{
    return registeredMain();
}

void detail::remember(QWidget *form)
{
    scaffold::installKeyboardRules();
    created().append(form);
}

void destroyAll()
{
    // Newest first: a later window may refer to an earlier one while it goes.
    QList<QPointer<QWidget>> forms;
    forms.swap(created());
    for (auto it = forms.rbegin(); it != forms.rend(); ++it)
        delete it->data();
}

}  // namespace forms
