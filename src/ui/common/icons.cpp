#include "icons.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

// The images are compiled into this static library; nothing else refers
// to them, so the linker keeps them only when they are registered by hand.
void registerImages()
{
    static const bool once = [] {
        Q_INIT_RESOURCE(resources);
        return true;
    }();
    Q_UNUSED(once);
}

QIcon appIcon(const QString &name)
{
    registerImages();
    QIcon icon;
    for (const char *size : {"16x16", "22x22", "24x24", "32x32"}) {
        const QString path = u":/icons/"_s + QLatin1StringView(size) + u'/' + name + u".png"_s;
        if (QFile::exists(path))
            icon.addFile(path);
    }
    return icon;
}
