#pragma once

#include "ui/common/forms.h"

#include <QDialog>

#include <memory>

class QLabel;
class QLineEdit;
class QPushButton;
class QTimer;
namespace classroom {
class ClassRun;
}

// The progress dialog of a send-and-receive run. All moving of mail happens
// while it loads; its two timers then only animate the bar, bring the main
// window up to date and unload the dialog. It cannot be stopped or hidden:
// the three buttons are there for show.
class frmSendAndReceive final : public QDialog
{
    Q_OBJECT

public:
    // The dialog's size, in twips; the centring works on these.
    static constexpr int DesignWidth = 7200;
    static constexpr int DesignHeight = 2040;
    // Text2's full width: fourteen steps of 400 twips from nothing.
    static constexpr int BarStep = 400;
    static constexpr int BarGrowsBelow = 5400;
    static constexpr int BarFinishesAt = 5500;

    explicit frmSendAndReceive(QWidget *parent = nullptr);
    ~frmSendAndReceive() override;

    // Runs the dialog in a mode (see SendReceiveModes): modeless, as the
    // main window's commands do, or modal, returning when the run is over.
    // Asked while a run is going on, it runs once that one is over: two
    // runs never overlap.
    static void start(qint16 mode, bool modal);

    // Set before showing: 0 send and receive, 1 receive only, 2 send only.
    qint16 SendReceiveMode = 0;
    // Whether the send step found a message it may not send; read by the
    // caller after the run.
    bool SendFailed = false;

    // A run that ends without its bar (a send that failed its recipient
    // check with nothing after it, or a step that a store error ended)
    // closes the dialog as soon as it stands and says why. The program's
    // closing, which cannot wait for that, ends it here and now.
    void endFailedRun();

    // Text2's width in twips: the bar's progress. Kept in twips because 400
    // twips is no whole number of pixels.
    int Text2Width() const { return m_text2Width; }

    // The two timers' ticks, public so that a run can be stepped through.
    void Timer2_Timer();
    void Timer1_Timer();

    QLabel *Label1 = nullptr;
    QLineEdit *Text1 = nullptr;
    QLineEdit *Text2 = nullptr;
    QPushButton *Command1 = nullptr;
    QPushButton *Command2 = nullptr;
    QPushButton *Command3 = nullptr;
    QLabel *Image1 = nullptr;
    QTimer *Timer1 = nullptr;
    QTimer *Timer2 = nullptr;

    // Whether a run is shown or still at work.
    bool running() const;

signals:
    // A run ended and none is waiting to follow it.
    void runsOver();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void Form_Load();
    void setText2Width(int tw);
    void tellWhy();
    void ended();

    int m_text2Width = 0;
    // The boxes a run owes its user once the dialog has gone: why the send
    // or a step failed, what the class folder said. Empty when all went well.
    struct Why
    {
        bool isError;
        QString title;
        QString text;
    };
    QList<Why> m_why;
    // With a class folder, the part of the run that goes on in it.
    std::unique_ptr<classroom::ClassRun> m_classRun;
    // The mode of a run asked for while this one goes on; -1: none.
    qint16 m_followUp = -1;
};

namespace forms {
inline frmSendAndReceive *SendAndReceive() { return instance<frmSendAndReceive>(); }
}  // namespace forms
