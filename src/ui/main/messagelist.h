#pragma once

#include "store/mailstore.h"

#include <QAbstractItemModel>
#include <QFont>
#include <QIcon>

// The main window's message list: one row per message of the folder shown,
// in file order, never sorted, so that a row's number is the message's
// position. Received mail (the Inbox style) shows the sender, marks unread
// rows bold and an attachment with its icon; other mail shows the
// recipient, never bold. The rows are made as the view asks for them, so
// a folder of any size costs what its visible rows cost.
// The same message after a refresh: every field but the read mark, which
// opening it changes.
bool SameMessage(const EmailRec &a, const EmailRec &b);

class MessageListModel final : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column { ColAttachment, ColFlag, ColPerson, ColSubject, ColTime, ColAccount, ColumnCount };

    explicit MessageListModel(QObject *parent = nullptr);

    // Shows a folder's messages. The same folder shown again in the same
    // style keeps the rows before and after what changed, and only the
    // rows that went or came are removed or inserted (a read mark, a
    // message deleted, mail received at the end); another folder or style
    // starts afresh.
    void show(int folder, bool inboxStyle, const MailList &mails);
    const MailList &mails() const { return m_mails; }
    int folder() const { return m_folder; }
    bool inboxStyle() const { return m_inboxStyle; }
    // The font of the view, made bold for unread rows.
    void setFont(const QFont &font);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    const EmailRec &mailAt(int row) const;

    int m_folder = -1;
    bool m_inboxStyle = false;
    MailList m_mails;
    // While rows go and come: the first row that changed, the rows of the
    // old list still shown from there (in m_old), and the new rows not yet
    // shown.
    int m_head = 0;
    int m_removed = 0;
    int m_inserted = 0;
    MailList m_old;
    QIcon m_attachment;
    QFont m_bold;
};
