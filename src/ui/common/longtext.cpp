#include "longtext.h"

#include <QApplication>
#include <QFont>
#include <QRawFont>
#include <QStyle>

QString VisiblePart(const QString &text, const QFont &font, int width)
{
    // Past the width, a quarter more and four of the widest characters
    // cover what kerning and an ellipsis can take back; the eight characters
    // after that keep the shaping of the last ones that show as it was.
    constexpr qsizetype ShortText = 32;
    constexpr qsizetype Beyond = 8;
    if (text.size() <= ShortText)
        return text;
    const QRawFont raw = QRawFont::fromFont(font);
    if (!raw.isValid())
        return text;
    const QList<quint32> glyphs = raw.glyphIndexesForString(text);
    if (glyphs.size() != text.size())
        return text;
    const QList<QPointF> advances = raw.advancesForGlyphIndexes(glyphs);
    const qreal enough = width * 1.25 + 4 * raw.maxCharWidth();
    qreal filled = 0;
    qsizetype cut = 0;
    while (cut < text.size() && filled <= enough)
        filled += advances.at(cut++).x();
    cut += Beyond;
    if (cut >= text.size())
        return text;
    // Every character left out must be one the font itself draws: another
    // font called in for it would change the line's height, and with it
    // where the part that shows is drawn.
    for (qsizetype i = cut; i < text.size(); ++i) {
        if (glyphs.at(i) == 0 || text.at(i).isSurrogate())
            return text;
    }
    return text.left(cut);
}

void LongTextDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    cell.text = VisiblePart(cell.text, cell.font, cell.rect.width());
    const QWidget *widget = option.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, widget);
}
