#pragma once

#include "store/records.h"

#include <QByteArray>
#include <QList>
#include <QString>

// What a data folder knows of its class, kept in class.dat beside the
// folders and replaced in the same unit as the Inbox and the Sent Items
// it goes with:
//  - its member folder in the class folder, and the machine, data folder
//    and class folder it was made for: a copy of the data folder (another
//    path or machine) or another class folder takes a new member folder,
//    so that two copies never write into one;
//  - the outgoing messages not yet in its member folder, numbered from
//    `first` on: a number is given in the same unit as the message leaves
//    the Outbox, and so never to two messages;
//  - for each member folder and each local address, how far the address
//    has looked (numbers below `next` have been considered for it, but
//    those in `retry`, which could not be read);
//  - what each address sent and received, for the trainer's overview;
//  - whether the user was told that the class folder cannot be reached.
namespace classroom {

inline const QString StateFileName = QStringLiteral("class.dat");

struct Cursor
{
    QString member;
    QString address;
    qint64 next = 0;
    QList<qint64> retry;  // ascending
};

struct Tally
{
    QString address;
    qint64 sent = 0;
    qint64 received = 0;
};

struct ClassState
{
    QString member;  // the member folder's name; empty before the first run
    QString machine;
    QString dataDir;
    QString classDir;
    qint64 first = 0;  // the number of outgoing.first(); all below it are published
    MailList outgoing;
    QList<Cursor> cursors;
    QList<Tally> tallies;
    bool awayTold = false;

    qint64 nextNumber() const { return first + outgoing.size(); }
    // The cursor of an address in a member folder, made at 0 when missing.
    Cursor &cursor(const QString &member, const QString &address);
    const Cursor *findCursor(const QString &member, const QString &address) const;
    Tally &tally(const QString &address);

    // Reads the bytes of class.dat; an empty or foreign file is a state
    // without a member folder. Throws FormatError or IndexError for
    // outgoing mail it cannot read, as a folder would.
    static ClassState parse(const QByteArray &bytes);
    QByteArray bytes() const;
};

// The state as class.dat holds it, for the present machine, data folder
// and class folder: when the member folder was made for others it is
// given up (outgoing mail is numbered afresh in the new one; what was
// taken from the class stays taken).
ClassState CurrentState(const QByteArray &stored, const QString &machine, const QString &dataDir,
                        const QString &classDir);

// A member folder's name: the machine's name as a folder name can hold it,
// then "-" and eight random hexadecimal digits.
QString NewMemberName(const QString &machine);
// Whether a folder of the class folder is a member folder by its name.
bool IsMemberName(const QString &name);

}  // namespace classroom
