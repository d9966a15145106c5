#include "icons.h"


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
    // Every image comes in all four sizes; giving the size spares reading
    // each file's header when the icon is made, which start-up notices.
    QIcon icon;
    for (int size : {16, 22, 24, 32}) {
        icon.addFile(u":/icons/%1x%1/"_s.arg(size) + name + u".png"_s, QSize(size, size));
    }
    return icon;
}
