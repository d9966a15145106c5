#include "onecopy.h"

#include "store/appdir.h"
#include "store/errors.h"
#include "store/folderlock.h"
#include "store/prompter.h"
#include "texts.h"
#include "ui/main/frmMain.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QThread>

namespace {

constexpr char Request[] = "show\n";
constexpr char Answer[] = "shown\n";

void bringToFront(QWidget *window)
{
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
}

void say(const QString &text)
{
    prompter().message(Prompter::Icon::Exclamation, texts::AppTitle, text);
}

}  // namespace

FrontDoor::FrontDoor(const QString &name) : m_name(name) {}

bool FrontDoor::open()
{
    if (!m_server) {
        m_server = new QLocalServer(this);
        m_server->setSocketOptions(QLocalServer::UserAccessOption);
        connect(m_server, &QLocalServer::newConnection, this, &FrontDoor::answer);
    }
    // Only the copy that shows the folder gets here, so a socket of the
    // name is a killed copy's.
    QLocalServer::removeServer(m_name);
    return m_server->listen(m_name);
}

void FrontDoor::answer()
{
    while (QLocalSocket *caller = m_server->nextPendingConnection()) {
        connect(caller, &QLocalSocket::disconnected, caller, &QObject::deleteLater);
        connect(caller, &QLocalSocket::readyRead, caller, [caller] {
            if (!caller->canReadLine())
                return;
            if (caller->readLine() == Request) {
                // The main window, and a box or dialog it waits for above it.
                bringToFront(forms::Main());
                if (QWidget *modal = QApplication::activeModalWidget())
                    bringToFront(modal);
            }
            caller->write(Answer);
            caller->disconnectFromServer();
        });
    }
}

bool FrontDoor::knock(const QString &name, int patienceMs)
{
    QElapsedTimer waited;
    waited.start();
    for (;;) {
        QLocalSocket door;
        door.connectToServer(name);
        if (door.waitForConnected(1000)) {
            // The answer says that the copy took the request, not only that
            // the request was sent.
            door.write(Request);
            return door.waitForBytesWritten(2000) && door.waitForReadyRead(5000)
                && door.readAll() == Answer;
        }
        // Nobody listens yet, or a copy that was killed left its socket; a
        // socket of another user's is no copy of ours to wait for.
        const bool mayComeYet = door.error() == QLocalSocket::ServerNotFoundError
            || door.error() == QLocalSocket::ConnectionRefusedError;
        if (!mayComeYet || waited.elapsed() >= patienceMs)
            return false;
        QThread::msleep(100);
    }
}

bool OpenDataFolderOrHandOver(DataFolderLock &lock, FrontDoor &door, int *exitCode)
{
    if (exitCode)
        *exitCode = 0;
    using State = DataFolderLock::State;
    const QString folder = QDir::toNativeSeparators(AppDir());
    State state = State::Unavailable;
    bool declined = false;
    if (!DataReadOnly()) {
        try {
            state = OpenDataFolder(lock);
            if (state == State::StaleElsewhere) {
                declined = !prompter().confirm(
                    Prompter::Icon::Warning, texts::AppTitle,
                    texts::lock::AskTakeOver.arg(folder, lock.holderMachine())
                        .arg(lock.minutesUnrenewed()),
                    Prompter::Default::No);
                if (!declined)
                    state = OpenDataFolder(lock, true);
            }
        } catch (const StoreError &error) {
            // A change a kill interrupted that cannot be completed, or whose
            // journal cannot be read, ends the start: every look at a folder
            // would meet half of it.
            say(ErrorBoxText(error) + u"\r\r" + texts::StartUpStopped);
            if (exitCode)
                *exitCode = 1;
            return false;
        }
    }

    if (lock.isHeld()) {
        QObject::connect(&lock, &DataFolderLock::lost, &lock, &say);
    } else if (declined) {
        return false;
    } else if (state == State::HeldHere) {
        // Started a second time by a hasty double-click, most likely: the
        // copy that runs comes to the front. It may be between taking the
        // folder and opening its door; a few seconds are allowed for that.
        if (!FrontDoor::knock(door.name(), 5000))
            say(texts::lock::HeldHereNoAnswer.arg(folder).arg(lock.holderPid()));
        return false;
    } else if (state == State::HeldElsewhere || state == State::StaleElsewhere) {
        say(texts::lock::HeldElsewhere.arg(folder, lock.holderMachine()));
        return false;
    } else {
        // A folder this copy cannot write needs no lock: the copy changes
        // nothing in it, and could not make one. A folder it could write
        // but not lock is opened read-only, since it cannot know who else
        // writes there. Either way only one window per user shows it here.
        if (FrontDoor::knock(door.name(), 0))
            return false;
        if (!DataReadOnly()) {
            SetDataReadOnly(true);
            say(texts::lock::Unavailable.arg(folder));
        }
    }
    door.open();
    return true;
}
