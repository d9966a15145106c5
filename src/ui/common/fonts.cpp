#include "fonts.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace fonts {

QString uiFamily()
{
    static const QStringList preferred = {
        u"宋体"_s, u"SimSun"_s, u"NSimSun"_s,
        u"WenQuanYi Micro Hei"_s, u"WenQuanYi Zen Hei"_s,
        u"Noto Sans CJK SC"_s, u"Noto Serif CJK SC"_s, u"AR PL UMing CN"_s,
    };
    const QStringList installed = QFontDatabase::families();
    for (const QString &family : preferred) {
        if (installed.contains(family, Qt::CaseInsensitive))
            return family;
    }
    return QGuiApplication::font().family();
}

QFont uiFont(int pointSize)
{
    QFont font(uiFamily(), pointSize);
    font.setStyleStrategy(QFont::PreferAntialias);
    return font;
}

}  // namespace fonts
