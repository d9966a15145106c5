#include "commands.h"

#include "store/random.h"
#include "texts.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

// Two records are the same message when every stored field agrees; where
// a record was loaded from is not part of it.
bool sameMessage(const EmailRec &a, const EmailRec &b)
{
    return a.id == b.id && a.from == b.from && a.to == b.to && a.alsoto == b.alsoto
        && a.subject == b.subject && a.content == b.content && a.datetime == b.datetime
        && a.attachment == b.attachment && a.isnew == b.isnew;
}

// The stored message of a compose window: found by its position while the
// id there is its own, else by the id.
int locateStored(const MailList &folder, const StoredMail &stored)
{
    if (stored.index >= 0 && stored.index < folder.size() && folder.at(stored.index).id == stored.id)
        return stored.index;
    for (int i = 0; i < folder.size(); ++i) {
        if (folder.at(i).id == stored.id)
            return i;
    }
    return -1;
}

// How the box of a change that could not be saved names the message.
QString subjectOf(const EmailRec &m)
{
    const QString subject = m.subject.trimmed();
    return subject.isEmpty() ? texts::unsaved::NoSubject : subject;
}

EmailRec withId(EmailRec m, const QString &id)
{
    m.id = id;
    return m;
}

// A compose window's message stored over the message it opened: the
// stored section's other lines (a key the window does not show, a value
// longer than it shows) stay, and only the fields the user changed are
// written anew.
EmailRec replacing(const EmailRec &message, const QString &id, const EmailRec &stored)
{
    EmailRec m = withId(message, id);
    m.origin = stored.origin;
    return m;
}

// Moves or replaces the stored message, or adds the message anew: the
// common ground of send now and send later. `movesFrom` are the folders
// whose message leaves for the Outbox. The compose window holds the only
// other copy of the message: it waits until the disk has it.
void storeInOutbox(const EmailRec &message, const StoredMail &stored,
                   std::initializer_list<int> movesFrom)
{
    FolderSet set;
    set.describe(texts::unsaved::Outbox.arg(subjectOf(message)));
    if (stored.isSet()) {
        const int at = locateStored(set.read(stored.folder), stored);
        if (at >= 0 && stored.folder == FolderFile::Outbox) {
            MailList &outbox = set.change(FolderFile::Outbox);
            outbox[at] = replacing(message, stored.id, outbox.at(at));
            set.commitAndWait();
            return;
        }
        if (at >= 0 && std::find(movesFrom.begin(), movesFrom.end(), stored.folder) != movesFrom.end()) {
            AppendMail(set.change(FolderFile::Outbox),
                       replacing(message, stored.id, set.read(stored.folder).at(at)));
            set.change(stored.folder).removeAt(at);
            set.commitAndWait();
            return;
        }
    }
    AppendMail(set.change(FolderFile::Outbox), withId(message, NewMailId()));
    set.commitAndWait();
}

}  // namespace

int LocateMail(const MailList &folder, const MailRef &ref)
{
    if (ref.index >= 0 && ref.index < folder.size() && sameMessage(folder.at(ref.index), ref.shown))
        return ref.index;
    for (int i = 0; i < folder.size(); ++i) {
        if (sameMessage(folder.at(i), ref.shown))
            return i;
    }
    return -1;
}

bool MoveToDeletedItems(const MailRef &ref)
{
    FolderSet set;
    const int at = LocateMail(set.read(ref.folder), ref);
    if (at < 0)
        return false;
    const EmailRec moved = set.read(ref.folder).at(at);
    AppendMail(set.change(FolderFile::DeletedItems), moved);
    set.change(ref.folder).removeAt(at);
    set.describe(texts::unsaved::Move.arg(subjectOf(moved)));
    set.commit();
    return true;
}

bool DeleteForGood(const MailRef &ref)
{
    FolderSet set;
    const int at = LocateMail(set.read(FolderFile::DeletedItems), ref);
    if (at < 0)
        return false;
    set.describe(texts::unsaved::DeleteForGood.arg(subjectOf(set.read(FolderFile::DeletedItems).at(at))));
    set.change(FolderFile::DeletedItems).removeAt(at);
    set.commit();
    return true;
}

bool MarkRead(const MailRef &ref)
{
    FolderSet set;
    const int at = LocateMail(set.read(ref.folder), ref);
    if (at < 0 || !set.read(ref.folder).at(at).isUnread())
        return false;
    set.change(ref.folder)[at].isnew = u"0"_s;
    set.describe(texts::unsaved::MarkRead.arg(subjectOf(ref.shown)));
    set.commit();
    return true;
}

StoredMail SaveDraft(const EmailRec &message, const StoredMail &stored, bool *created)
{
    FolderSet set;
    StoredMail result = stored;
    const int at = stored.isSet() ? locateStored(set.read(stored.folder), stored) : -1;
    if (at >= 0) {
        result.index = at;
        result.record = replacing(message, stored.id, set.read(stored.folder).at(at));
        set.change(stored.folder)[at] = result.record;
        *created = false;
    } else {
        result.folder = FolderFile::Drafts;
        result.id = stored.isSet() ? stored.id : NewMailId();
        result.record = withId(message, result.id);
        MailList &drafts = set.change(FolderFile::Drafts);
        AppendMail(drafts, result.record);
        result.index = int(drafts.size() - 1);
        *created = true;
    }
    set.describe(texts::unsaved::Draft.arg(subjectOf(message)));
    set.commitAndWait();
    return result;
}

void StoreForSend(const EmailRec &message, const StoredMail &stored)
{
    storeInOutbox(message, stored, {FolderFile::Drafts});
}

void StoreForSendLater(const EmailRec &message, const StoredMail &stored)
{
    storeInOutbox(message, stored, {FolderFile::Drafts, FolderFile::DeletedItems});
}

QString NewMailId()
{
    return QString::number(RandomBetween(10000000, 99999999));
}
