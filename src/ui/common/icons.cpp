#include "icons.h"

#include <QIconEngine>
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
}  // namespace

QIcon appIcon(const QString &name)
{
    registerImages();
    return QIcon(new LazyIconEngine(name));
}
