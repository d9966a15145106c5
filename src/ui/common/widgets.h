#pragma once

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QString>

// Every named widget carries its name as objectName(), so that other code
// and the tests find it with findChild.

template <class W>
W *named(W *widget, const QString &name)
{
    widget->setObjectName(name);
    return widget;
}

// A menu entry carrying its name.
inline QAction *menuItem(QMenu *menu, const QString &name, const QString &caption)
{
    return named(menu->addAction(caption), name);
}

// A label whose text wraps at its width.
inline QLabel *wrapped(QLabel *label)
{
    label->setWordWrap(true);
    return label;
}

// What a screen reader says of a control that has no caption of its own.
inline void speak(QWidget *control, const QString &name, const QString &description = QString())
{
    control->setAccessibleName(name);
    control->setAccessibleDescription(description);
}
