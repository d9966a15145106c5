#include "icons.h"

#include <QHash>
#include <QIconEngine>
#include <QPolygonF>
#include <QPainter>
#include <QSet>

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

namespace {
constexpr int Sizes[] = {16, 22, 24, 32};

// Decodes a size of an image only when it is first painted. The toolkit's
// own file icons decode every file as soon as it is added, and most of a
// window's icons sit in menus and toolbars' hidden states that start-up
// never paints.
class LazyIconEngine final : public QIconEngine
{
public:
    explicit LazyIconEngine(const QString &name) : m_name(name) {}

    QIconEngine *clone() const override { return new LazyIconEngine(*this); }

    QSize actualSize(const QSize &size, QIcon::Mode, QIcon::State) override
    {
        const int side = fileSize(size);
        return side <= qMin(size.width(), size.height()) ? QSize(side, side) : size;
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return loaded(size).pixmap(size, mode, state);
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        loaded(rect.size() * ratio).paint(painter, rect, Qt::AlignCenter, mode, state);
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        QList<QSize> sizes;
        for (int side : Sizes)
            sizes.append(QSize(side, side));
        return sizes;
    }

    QString key() const override { return u"quillpost-lazy"_s; }

private:
    // The smallest file at least as large as wanted, else the largest.
    static int fileSize(const QSize &wanted)
    {
        const int side = qMax(wanted.width(), wanted.height());
        for (int s : Sizes) {
            if (s >= side)
                return s;
        }
        return Sizes[std::size(Sizes) - 1];
    }

    const QIcon &loaded(const QSize &wanted)
    {
        const int side = fileSize(wanted);
        if (!m_decoded.contains(side)) {
            m_icon.addFile(u":/icons/%1x%1/"_s.arg(side) + m_name + u".png"_s, QSize(side, side));
            m_decoded.insert(side);
        }
        return m_icon;
    }

    QString m_name;
    QIcon m_icon;  // the sizes decoded so far
    QSet<int> m_decoded;
};

// The previous and next arrows, drawn here because the icon set has none;
// every size a tool bar may ask for, so they stay crisp.
QIcon arrowIcon(bool pointsLeft)
{
    QIcon icon;
    for (int side : {16, 22, 24, 32, 33, 48}) {
        QPixmap pm(side, side);
        pm.fill(Qt::transparent);
        QPainter p(&pm);
        p.setRenderHint(QPainter::Antialiasing);
        const double s = side / 22.0;
        QPolygonF arrow({{3, 11}, {11, 3}, {11, 7.5}, {19, 7.5}, {19, 14.5}, {11, 14.5}, {11, 19}});
        for (QPointF &pt : arrow) {
            if (!pointsLeft)
                pt.setX(22 - pt.x());
            pt *= s;
        }
        p.setPen(QPen(QColor(0x20, 0x4a, 0x87), s));
        p.setBrush(QColor(0x72, 0x9f, 0xcf));
        p.drawPolygon(arrow);
        icon.addPixmap(pm);
    }
    return icon;
}
}  // namespace

QIcon appIcon(const QString &name)
{
    // One icon per name for the whole run: a fresh icon on every use would
    // fill the pixmap cache with copies of the same pictures.
    static QHash<QString, QIcon> made;
    auto it = made.constFind(name);
    if (it != made.cend())
        return *it;
    registerImages();
    QIcon icon;
    if (name == u"go-previous" || name == u"go-next")
        icon = arrowIcon(name == u"go-previous");
    else
        icon = QIcon(new LazyIconEngine(name));
    made.insert(name, icon);
    return icon;
}
