#pragma once

#include <QList>

#include <functional>

class QBoxLayout;
class QDialog;
class QPushButton;

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

// Captions the page, fixes its size and puts the buttons in a row along its
// foot; returns the layout that takes the page's own controls.
QBoxLayout *frame(QDialog *page, const QList<QPushButton *> &buttons);

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
