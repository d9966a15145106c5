#include "store/appdir.h"
#include "store/prompter.h"
#include "ui/common/application.h"
#include "ui/common/fonts.h"
#include "ui/common/msgboxprompter.h"
#include "ui/main/frmMain.h"

int main(int argc, char *argv[])
{
    QuillpostApplication app(argc, argv);
    app.setFont(fonts::uiFont());
    SetAppDir(QCoreApplication::applicationDirPath());

    MessageBoxPrompter boxes;
    setPrompter(&boxes);

    forms::Main()->show();
    const int rc = app.exec();
    forms::destroyAll();
    setPrompter(nullptr);
    return rc;
}
