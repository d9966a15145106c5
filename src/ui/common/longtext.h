#pragma once

#include <QStyledItemDelegate>

class QFont;

// The start of text that a cell width pixels wide shows exactly as it shows
// the whole: as much as fills the width, a good margin more, and nothing
// cut whose look could reach back into what shows (a character the font
// lacks, which calls in another font, or half a surrogate pair). Texts
// that offer no such cut come back whole.
QString VisiblePart(const QString &text, const QFont &font, int width);

// Paints a cell as the style does, handing it only the visible part of a
// long text. The style shapes a cell's whole text at every paint to elide
// it, and the long Chinese senders and subjects of a message list made that
// most of what a repaint cost. Everything read from the model (tooltips, a
// screen reader, the column's size hint) still sees the whole text.
class LongTextDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};
