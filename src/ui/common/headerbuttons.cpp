#include "headerbuttons.h"

#include "store/prompter.h"
#include "texts.h"

#include <QHeaderView>
#include <QTreeView>

void SetHeaderButtons(QTreeView *listView, int mode)
{
    if (mode != 0 && mode != 1) {
        prompter().message(Prompter::Icon::Exclamation, texts::ErrorTitle,
                           texts::HeaderStyleFailed);
        return;
    }
    listView->header()->setSectionsClickable(mode == 0);
}
