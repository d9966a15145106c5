#pragma once

#include <QList>
#include <QPair>

#include <functional>
#include <tuple>

class QBoxLayout;
class QDialog;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QString;
class QWidget;

// What the five pages of the new-account wizard have in common: their
// frame, their placement, and how Back, Next, Finish and Cancel move
// between them. The pages are nested modal loops, page n on top of page
// n - 1; each page only knows the page after it.
namespace wizard {

// A page's fixed size in twips.
inline constexpr int PageWidthTw = 7800;
inline constexpr int PageHeightTw = 5100;

// How a page's loop ends. Back uncovers the page below; Finished and
// Cancelled close every page below as well, each as its loop ends.
enum Result { Back = 0, Finished = 2, Cancelled = 3 };

// The buttons along a page's foot, named: Back, Next (on the last page
// Finish, btnOK) and Cancel.
std::tuple<QPushButton *, QPushButton *, QPushButton *> buttons(QDialog *page, bool last = false);
// Captions the page, fixes its size and puts the buttons in a row along its
// foot; returns the layout that takes the page's own controls.
QBoxLayout *frame(QDialog *page, const QList<QPushButton *> &buttons);
// A box named name (Text1, Text2) that its caption's underlined letter
// reaches.
QLineEdit *box(QDialog *page, const QString &name, QLabel *caption);
// Captions and what they name in two columns, indented under the page's
// introduction; a row without a caption stands under the one before it.
QGridLayout *grid(const QList<QPair<QLabel *, QWidget *>> &rows);

// One page's wiring.
struct Page
{
    QDialog *dialog;
    QPushButton *back;     // does nothing on the first page
    QPushButton *forward;  // Next, or Finish on the last page
    QPushButton *cancel;
    bool first = false;
    // The page's own start-up, run on every showing after the page is
    // centred.
    std::function<void()> load;
    // Next: keeps what the page collected, then the next page's loop runs;
    // nullptr on the last page, whose button finishes.
    std::function<void()> store;
    std::function<QDialog *()> next;
};
// Connects the buttons, Escape and the close button (both ask like
// Cancel) and the start-up.
void wire(const Page &page);

}  // namespace wizard
