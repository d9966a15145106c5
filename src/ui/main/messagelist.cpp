#include "messagelist.h"

#include "texts.h"
#include "ui/common/icons.h"

using namespace Qt::Literals::StringLiterals;

bool SameMessage(const EmailRec &a, const EmailRec &b)
{
    return SameText(a.id, b.id) && SameText(a.from, b.from) && SameText(a.to, b.to)
        && SameText(a.alsoto, b.alsoto) && SameText(a.subject, b.subject)
        && SameText(a.content, b.content) && SameText(a.datetime, b.datetime)
        && SameText(a.attachment, b.attachment);
}

MessageListModel::MessageListModel(QObject *parent)
    : QAbstractItemModel(parent), m_attachment(appIcon(u"mail-attachment"_s))
{
}

void MessageListModel::setFont(const QFont &font)
{
    m_bold = font;
    m_bold.setBold(true);
}

void MessageListModel::show(int folder, bool inboxStyle, const MailList &mails)
{
    if (folder != m_folder || inboxStyle != m_inboxStyle) {
        beginResetModel();
        m_folder = folder;
        m_inboxStyle = inboxStyle;
        m_mails = mails;
        endResetModel();
        emit headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1);
        return;
    }
    // A command changes a few rows of a folder: the rows before and after
    // the change stay.
    const qsizetype before = m_mails.size(), after = mails.size();
    // Rows a command did not touch hold the very records shown.
    const auto same = [&](qsizetype was, qsizetype is) {
        return m_mails.isSameRecord(was, mails, is) || SameMessage(m_mails.at(was), mails.at(is));
    };
    qsizetype head = 0, tail = 0;
    while (head < qMin(before, after) && same(head, head))
        ++head;
    while (tail < qMin(before, after) - head && same(before - 1 - tail, after - 1 - tail))
        ++tail;
    const MailList old = m_mails;
    m_old = std::exchange(m_mails, mails);
    m_head = int(head);
    m_removed = int(before - tail - head);
    m_inserted = int(after - tail - head);
    if (m_removed > 0) {
        beginRemoveRows({}, m_head, m_head + m_removed - 1);
        m_removed = 0;
        endRemoveRows();
    }
    m_removed = 0;
    m_old.clear();
    if (m_inserted > 0) {
        beginInsertRows({}, m_head, m_head + m_inserted - 1);
        m_inserted = 0;
        endInsertRows();
    }
    m_inserted = 0;
    // Read marks may have changed in the rows that stayed: only the rows
    // whose mark did are told, since a view asks for the place of every
    // cell of a range it is told of, and a folder may hold 20,000 rows.
    const auto markChanged = [&](qsizetype row, qsizetype oldRow) {
        return !m_mails.isSameRecord(row, old, oldRow)
            && !SameText(old.at(oldRow).isnew, m_mails.at(row).isnew);
    };
    const auto tell = [this](qsizetype first, qsizetype last) {
        emit dataChanged(index(int(first), 0), index(int(last), ColumnCount - 1));
    };
    const auto tellChanged = [&](qsizetype from, qsizetype to, qsizetype shift) {
        for (qsizetype row = from; row < to; ++row) {
            if (!markChanged(row, row - shift))
                continue;
            qsizetype last = row;
            while (last + 1 < to && markChanged(last + 1, last + 1 - shift))
                ++last;
            tell(row, last);
            row = last;
        }
    };
    tellChanged(0, head, 0);
    tellChanged(after - tail, after, after - before);
}

const EmailRec &MessageListModel::mailAt(int row) const
{
    if (row < m_head)
        return m_mails.at(row);
    if (row < m_head + m_removed)
        return m_old.at(row);
    return m_mails.at(row - m_removed + m_inserted);
}

QModelIndex MessageListModel::index(int row, int column, const QModelIndex &parent) const
{
    if (parent.isValid() || row < 0 || row >= rowCount() || column < 0 || column >= ColumnCount)
        return {};
    return createIndex(row, column);
}

QModelIndex MessageListModel::parent(const QModelIndex &) const
{
    return {};
}

int MessageListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_mails.size()) - m_inserted + m_removed;
}

int MessageListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

bool MessageListModel::hasChildren(const QModelIndex &parent) const
{
    return !parent.isValid() && rowCount() > 0;
}

QVariant MessageListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const EmailRec &m = mailAt(index.row());
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
        switch (column) {
        case ColPerson: return m_inboxStyle ? m.from : m.to;
        case ColSubject: return m.subject;
        case ColTime: return m.datetime;
        default: return QString();
        }
    case Qt::DecorationRole:
        if (column == ColAttachment && m_inboxStyle && !m.attachment.isEmpty())
            return m_attachment;
        return {};
    case Qt::FontRole:
        if (m_inboxStyle && m.isUnread() && column >= ColPerson && column <= ColTime)
            return m_bold;
        return {};
    default:
        return {};
    }
}

QVariant MessageListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::DecorationRole && section == ColAttachment)
        return m_attachment;
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
    case ColPerson: return m_inboxStyle ? texts::ColumnFrom : texts::ColumnTo;
    case ColSubject: return texts::ColumnSubject;
    case ColTime: return m_inboxStyle ? texts::ColumnReceived : texts::ColumnSent;
    case ColAccount: return m_inboxStyle ? QString() : texts::ColumnAccount;
    default: return QString();
    }
}
