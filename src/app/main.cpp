#include "store/appdir.h"
#include "store/commit.h"
#include "store/errors.h"
#include "store/prompter.h"
#include "ui/common/application.h"
#include "ui/common/fonts.h"
#include "ui/common/msgboxprompter.h"
#include "texts.h"
#include "ui/main/frmMain.h"

int main(int argc, char *argv[])
{
    QuillpostApplication app(argc, argv);
    app.setFont(fonts::uiFont());
    InstallChineseTranslations();
    SetAppDir(QCoreApplication::applicationDirPath());
    // A change a kill interrupted is completed before anything is read.
    MessageBoxPrompter boxes;
    setPrompter(&boxes);
    try {
        RecoverDataFolder();
    } catch (const StoreError &error) {
        prompter().message(Prompter::Icon::Exclamation, texts::AppTitle, ErrorBoxText(error));
    }

    forms::Main()->show();
    const int rc = app.exec();
    forms::destroyAll();
    setPrompter(nullptr);
    return rc;
}
