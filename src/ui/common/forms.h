#pragma once

#include <QPointer>
#include <QWidget>

// One live instance per window class, created on first use and reused, so
// that windows can hand values to each other through public fields that
// outlive the window on screen.
//
// A window joins the registry with one line below its class, in its own
// header:
//     namespace forms { inline frmMailRead *MailRead() { return instance<frmMailRead>(); } }
// and callers write forms::MailRead()->show().
namespace forms {

namespace detail {
void remember(QWidget *form);
}

template <class Form>
Form *instance()
{
    static QPointer<Form> live;
    if (!live) {
        live = new Form;
        detail::remember(live);
    }
    return live;
}

// The main window, which the windows it opens place themselves beside;
// registered by whoever makes it. Null while there is none.
void setMainWindow(QWidget *window);
QWidget *mainWindow();

// Deletes every instance, so that the next use builds a fresh window; for
// tests, between cases.
void destroyAll();

}  // namespace forms
