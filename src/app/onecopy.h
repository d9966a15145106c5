#pragma once

#include <QObject>
#include <QString>

class DataFolderLock;
class QLocalServer;

// Copies of one user on one machine that start on the same data folder find
// each other through a local socket named after the folder: the copy that
// shows the folder listens, and a later start asks it to bring its window
// to the front instead of opening a second one.
class FrontDoor final : public QObject
{
public:
    explicit FrontDoor(const QString &name);

    QString name() const { return m_name; }
    // Listens, taking the name over from a copy that was killed.
    bool open();
    // Asks the copy listening under name to show its window, trying for up
    // to patienceMs while nobody listens yet; false when nobody answered.
    static bool knock(const QString &name, int patienceMs);

private:
    void answer();

    QString m_name;
    QLocalServer *m_server = nullptr;
};

// What a start does with its data folder before any window shows: holds it
// and completes a change a kill interrupted, then listens at the door; or,
// when another copy holds the folder, brings that copy's window to the front
// or says which machine holds it. False when this start is to end, with the
// exit code: 0 after handing over, 1 when the folder could not be opened.
bool OpenDataFolderOrHandOver(DataFolderLock &lock, FrontDoor &door, int *exitCode = nullptr);
