#include "store/appdir.h"

#include <QApplication>
#include <QMainWindow>

using namespace Qt::Literals::StringLiterals;

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    SetAppDir(QCoreApplication::applicationDirPath());

    QMainWindow window;
    window.setWindowTitle(u"Quillpost Express"_s);
    window.resize(800, 600);
    window.show();
    return app.exec();
}
