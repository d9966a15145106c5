#pragma once

#include <QString>

// The folder tree's fixed nodes, by the 1-based index the click handler
// dispatches on.
namespace Node {
inline constexpr int Root = 1;
inline constexpr int LocalFolders = 2;
inline constexpr int Inbox = 3;
inline constexpr int Outbox = 4;
inline constexpr int SentItems = 5;
inline constexpr int DeletedItems = 6;
inline constexpr int Drafts = 7;
inline constexpr int Count = 7;
}  // namespace Node

// What a folder node shows for its unread count. Every place that changes
// a count (start-up, reading, deleting, receiving) goes through this one
// rule: the plain name below 1, else the name with "(n)" appended, bold.
struct NodeCaption
{
    QString text;
    bool bold = false;
};
NodeCaption unreadCaption(const QString &name, int unread);
