#pragma once

#include <QList>
#include <QString>

class QBoxLayout;
class QDialog;
class QLabel;
class QPushButton;
class QWidget;

// What the five pages of the new-account wizard have in common: their
// frame, their placement and the two ways out (finish and cancel).
namespace wizard {

// A page's fixed size in twips.
inline constexpr int PageWidthTw = 7800;
inline constexpr int PageHeightTw = 5100;

QLabel *label(QWidget *page, const QString &name, const QString &text, bool wrap = false);
QPushButton *button(QWidget *page, const QString &name, const QString &text);

// Captions the page, fixes its size and puts the buttons in a row along its
// foot; returns the layout that takes the page's own controls.
QBoxLayout *frame(QDialog *page, const QList<QPushButton *> &buttons);

// Centres a page on the screen by the whole-twips rule.
void centre(QDialog *page);

// Cancel on page n: asks whether to leave the wizard and, on Yes, closes
// page n and every page below it.
void cancelFrom(int n);

// Finish: tells the accounts dialog to store the account, then closes the
// pages from 5 down to 1.
void finish();

}  // namespace wizard
