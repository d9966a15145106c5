#include "frmSendAndReceive.h"

#include "sendrecv/classroom.h"
#include "sendrecv/engine.h"
#include "store/prompter.h"
#include "texts.h"
#include "ui/common/icons.h"
#include "ui/common/scaffold.h"
#include "ui/common/twips.h"
#include "ui/common/widgets.h"

#include <QCloseEvent>
#include <QEventLoop>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

// Where everything sits, in twips from the dialog's top-left corner. The
// bar lies over its trough, so both share a left edge and a height.
constexpr int BarLeft = 840;
constexpr int BarTop = 600;
constexpr int BarHeight = 330;
constexpr int ButtonTop = 1260;
constexpr int ButtonHeight = 420;

}  // namespace

frmSendAndReceive::frmSendAndReceive(QWidget *parent) : QDialog(parent)
{
    setObjectName(u"frmSendAndReceive"_s);
    setWindowTitle(texts::AppTitle);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    Image1 = named(new QLabel(this), u"Image1"_s);
    Image1->setPixmap(appIcon(u"mail-send-receive"_s).pixmap(QSize(32, 32)));
    Image1->setGeometry(twips::toPixels(180, 180, 480, 480));

    Label1 = named(new QLabel(texts::sendreceive::Connecting, this), u"Label1"_s);
    Label1->setGeometry(twips::toPixels(BarLeft, 180, DesignWidth - BarLeft - 180, 330));

    Text1 = named(new QLineEdit(this), u"Text1"_s);
    Text1->setReadOnly(true);
    Text1->setFocusPolicy(Qt::NoFocus);
    Text1->setGeometry(twips::toPixels(BarLeft, BarTop, 14 * BarStep, BarHeight));

    Text2 = named(new QLineEdit(this), u"Text2"_s);
    Text2->setReadOnly(true);
    Text2->setFocusPolicy(Qt::NoFocus);
    Text2->setFrame(false);
    Text2->setStyleSheet(u"QLineEdit#Text2 { background: #0a246a; border: none; }"_s);
    setText2Width(0);

    // The buttons fill the bar's width: hide, stop, details.
    Command1 = named(new QPushButton(texts::sendreceive::Hide, this), u"Command1"_s);
    Command2 = named(new QPushButton(texts::sendreceive::Stop, this), u"Command2"_s);
    Command3 = named(new QPushButton(texts::sendreceive::Details, this), u"Command3"_s);
    Command1->setGeometry(twips::toPixels(BarLeft, ButtonTop, 1500, ButtonHeight));
    Command2->setGeometry(twips::toPixels(BarLeft + 1620, ButtonTop, 1500, ButtonHeight));
    Command3->setGeometry(twips::toPixels(BarLeft + 3240, ButtonTop, 2360, ButtonHeight));
    for (QPushButton *b : {Command1, Command2, Command3})
        b->setAutoDefault(false);

    Timer2 = named(new QTimer(this), u"Timer2"_s);
    Timer2->setInterval(150);
    Timer1 = named(new QTimer(this), u"Timer1"_s);
    Timer1->setInterval(5);
    connect(Timer2, &QTimer::timeout, this, &frmSendAndReceive::Timer2_Timer);
    connect(Timer1, &QTimer::timeout, this, &frmSendAndReceive::Timer1_Timer);

    setFixedSize(twips::toPixels(DesignWidth), twips::toPixels(DesignHeight));
    scaffold::loadOnShow(this, [this] { Form_Load(); });
}

frmSendAndReceive::~frmSendAndReceive() = default;

void frmSendAndReceive::setText2Width(int tw)
{
    m_text2Width = tw;
    Text2->setGeometry(twips::toPixels(BarLeft, BarTop, tw, BarHeight));
    Text2->setVisible(tw > 0);
}

void frmSendAndReceive::start(qint16 mode, bool modal)
{
    frmSendAndReceive *run = forms::SendAndReceive();
    if (run->running()) {
        // Two requests that ask for different things together ask for both.
        run->m_followUp = run->m_followUp < 0 || run->m_followUp == mode
                              ? mode
                              : SendReceiveModes::SendAndReceive;
        if (modal) {
            QEventLoop wait;
            connect(run, &frmSendAndReceive::runsOver, &wait, &QEventLoop::quit);
            wait.exec();
        }
        return;
    }
    run->SendReceiveMode = mode;
    if (modal) {
        run->exec();
        return;
    }
    run->show();
    run->raise();
    run->activateWindow();
}

void frmSendAndReceive::Form_Load()
{
    SendFailed = false;
    // Each run starts from the dialog's first look, though the object lives on.
    Timer1->stop();
    Timer2->stop();
    Label1->setText(texts::sendreceive::Connecting);
    setText2Width(0);
    m_why.clear();
    scaffold::placeOnFreeSpace(this, QSize(DesignWidth, DesignHeight), 1, 2);

    // Without a class folder every file is written here, before the dialog
    // is first painted, and the timers only present the run. With one, the
    // local part is written here and the class folder's part goes on behind
    // the bar, which keeps moving until it is done.
    RunResult run;
    m_classRun.reset();
    if (classroom::ClassDir().isEmpty()) {
        run = RunSendReceive(SendReceiveMode);
    } else {
        m_classRun = std::make_unique<classroom::ClassRun>(SendReceiveMode);
        run = m_classRun->begin();
    }
    SendFailed = run.sendFailed();
    if (!run.errorText.isEmpty())
        m_why.append({true, texts::AppTitle, run.errorText});
    else if (SendFailed)
        m_why.append({false, texts::NameCheckTitle, texts::NameCheckFailed});
    if (run.barStarts())
        Timer2->start();
    else
        QTimer::singleShot(0, this, &frmSendAndReceive::endFailedRun);
}

void frmSendAndReceive::endFailedRun()
{
    if (!isVisible() || Timer1->isActive() || Timer2->isActive())
        return;
    close();
    tellWhy();
    ended();
}

bool frmSendAndReceive::running() const
{
    return isVisible() || Timer1->isActive() || Timer2->isActive();
}

void frmSendAndReceive::tellWhy()
{
    const QList<Why> boxes = m_why;
    m_why.clear();
    for (const Why &why : boxes) {
        prompter().message(why.isError ? Prompter::Icon::Exclamation : Prompter::Icon::Information,
                           why.title, why.text);
    }
}

void frmSendAndReceive::ended()
{
    if (m_followUp < 0) {
        emit runsOver();
        return;
    }
    const qint16 mode = m_followUp;
    m_followUp = -1;
    QTimer::singleShot(0, this, [mode] { start(mode, false); });
}

void frmSendAndReceive::Timer2_Timer()
{
    // The first phase is a short pause with an empty bar; one tick is all
    // it takes before the bar starts to grow.
    setText2Width(0);
    Timer2->stop();
    Label1->setText(texts::sendreceive::Working);
    Timer1->start();
}

void frmSendAndReceive::Timer1_Timer()
{
    const bool working = m_classRun && !m_classRun->poll();
    if (m_text2Width < BarGrowsBelow)
        setText2Width(m_text2Width + BarStep);
    if (m_text2Width < BarFinishesAt)
        return;
    // A slow class folder: the bar goes round again until its part is done.
    if (working) {
        setText2Width(0);
        return;
    }

    // The windows showing the folders were brought up to date when the
    // files changed; the run only has to go, and to say why when its send
    // did not go through or the class folder had something to tell.
    Timer1->stop();
    if (m_classRun) {
        if (!m_classRun->result().errorText.isEmpty())
            m_why.append({true, texts::AppTitle, m_classRun->result().errorText});
        for (const QString &notice : m_classRun->notices())
            m_why.append({true, texts::AppTitle, notice});
        m_classRun.reset();
    }
    close();
    tellWhy();
    ended();
}

void frmSendAndReceive::closeEvent(QCloseEvent *event)
{
    Timer1->stop();
    Timer2->stop();
    // Closed before its end, a run leaves its work in the class folder to
    // finish alone; what it found is found again by the next run.
    m_classRun.reset();
    QDialog::closeEvent(event);
}
