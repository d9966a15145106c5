#pragma once

#include "exercise/exercise.h"
#include "ui/common/forms.h"

#include <QDialog>
#include <QRect>
#include <QSet>

class QLabel;
class QListWidget;

// Where the exercise window goes beside the main window on a screen's free
// area, both as frame rectangles. Right of the main window when there is
// room; otherwise the main window moves to the left edge and gives up
// width, never below narrowestMain (its whole tool bar in view), and the
// exercise window takes the rest of the screen's width. Only a screen too
// small for both lets the exercise window cover the main window's right edge.
struct SideBySide
{
    QRect main;
    QRect exercise;
};
SideBySide PlaceSideBySide(const QRect &area, const QRect &mainFrame, int narrowestMain,
                           int exerciseWidth, int narrowestExercise);

// The exercise beside the main window: its title, its tasks, each ticked
// as soon as the files show it done, and how many are done. It learns of
// every change from the store's signals, the same that redraw the main
// window, and never reads the disk on a timer. It only reads.
class frmExercise final : public QDialog
{
    Q_OBJECT

public:
    frmExercise();
    ~frmExercise() override;

    void setExercise(const exercise::Exercise &exercise);
    bool hasExercise() const { return !m_exercise.tasks.isEmpty(); }
    // Shows the window beside mainWindow (see PlaceSideBySide) on the free
    // area of its screen, or on area when given; with activate it takes the
    // keyboard.
    void openBeside(QWidget *mainWindow, int narrowestMain, bool activate,
                    const QRect &area = QRect());

    // The exercise's title and the tasks the files show done now, shown or
    // not: for the class folder's overview of this machine.
    exercise::Progress progress();

    QLabel *Title = nullptr;
    QListWidget *Tasks = nullptr;  // one row per task, a tick on the done ones
    QLabel *Progress = nullptr;    // "已完成 N/M"
    QLabel *Note = nullptr;        // a folder that cannot be read just now

private:
    void Form_Load();
    void checkAll();
    void folderChanged(int folder);
    void accountsChanged();
    // Checks the tasks of a folder (-1: the accounts) against what the
    // store holds now.
    void check(int source);
    void showProgress();

    exercise::Exercise m_exercise;
    QList<bool> m_done;  // by task, as shown
    QSet<int> m_unreadable;  // folders, and -1 for the accounts
};

namespace forms {
inline frmExercise *Exercise() { return instance<frmExercise>(); }
}  // namespace forms
