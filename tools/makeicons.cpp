// quillpost_makeicons OUTDIR SIZE...
// Draws the program's logo as OUTDIR/SIZExSIZE/apps/NAME.png for each size,
// the layout of the hicolor icon theme, so that the menu shows the same
// picture as the about box. NAME is the compiled-in application id.

#include "ui/common/logo.h"

#include <QDir>
#include <QString>

#include <cstdio>
#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

int main(int argc, char *argv[])
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s OUTDIR SIZE...\n", argv[0]);
        return 2;
    }
    const QDir out(QString::fromLocal8Bit(argv[1]));
    for (int i = 2; i < argc; ++i) {
        const int side = std::atoi(argv[i]);
        const QString dir = u"%1x%1/apps"_s.arg(side);
        const QString file = out.filePath(dir + u"/"_s + QStringLiteral(QUILLPOST_APP_ID) + u".png"_s);
        if (side <= 0 || !out.mkpath(dir) || !logoImage(side).save(file, "PNG")) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
            return 1;
        }
    }
    return 0;
}
