#include "foldernodes.h"

using namespace Qt::Literals::StringLiterals;

NodeCaption unreadCaption(const QString &name, int unread)
{
    if (unread < 1)
        return {name, false};
    return {name + u'(' + QString::number(unread) + u')', true};
}
