#include "wizard.h"

#include "accountsui.h"
#include "frmMailBox.h"
#include "frmMainBoxAdd1.h"
#include "frmMainBoxAdd2.h"
#include "frmMainBoxAdd3.h"
#include "frmMainBoxAdd4.h"
#include "frmMainBoxAdd5.h"

#include "store/prompter.h"
#include "texts.h"
#include "ui/common/twips.h"

#include <QBoxLayout>
#include <QFrame>
#include <QLabel>
#include <QPushButton>

namespace wizard {

namespace {
QDialog *page(int n)
{
    switch (n) {
    case 1: return forms::MainBoxAdd1();
    case 2: return forms::MainBoxAdd2();
    case 3: return forms::MainBoxAdd3();
    case 4: return forms::MainBoxAdd4();
    default: return forms::MainBoxAdd5();
    }
}

// The pages are nested modal loops, page n on top of page n - 1. done()
// hides a page and ends its loop; the loops below it end as soon as control
// unwinds to them, so closing from the top down leaves no page behind.
void closeFrom(int n)
{
    for (int i = n; i >= 1; --i)
        page(i)->done(QDialog::Rejected);
}
}  // namespace

QLabel *label(QWidget *page, const QString &name, const QString &text, bool wrap)
{
    auto *l = new QLabel(text, page);
    l->setObjectName(name);
    l->setWordWrap(wrap);
    return l;
}

QPushButton *button(QWidget *page, const QString &name, const QString &text)
{
    auto *b = new QPushButton(text, page);
    b->setObjectName(name);
    return b;
}

QBoxLayout *frame(QDialog *page, const QList<QPushButton *> &buttons)
{
    page->setWindowTitle(texts::accounts::WizardCaption);
    page->setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    page->setFixedSize(twips::toPixels(PageWidthTw), twips::toPixels(PageHeightTw));

    auto *body = new QVBoxLayout;
    body->setContentsMargins(24, 20, 24, 8);
    body->setSpacing(8);

    auto *rule = new QFrame(page);
    rule->setFrameShape(QFrame::HLine);
    rule->setFrameShadow(QFrame::Sunken);

    auto *row = new QHBoxLayout;
    row->setContentsMargins(12, 0, 12, 0);
    row->addStretch();
    for (QPushButton *b : buttons) {
        b->setMinimumWidth(84);
        row->addWidget(b);
        // Cancel stands a little apart from the way back and forth.
        if (b == buttons.value(buttons.size() - 2))
            row->addSpacing(8);
    }

    auto *root = new QVBoxLayout(page);
    root->setContentsMargins(0, 0, 0, 12);
    root->setSpacing(10);
    root->addLayout(body, 1);
    root->addWidget(rule);
    root->addLayout(row);
    return body;
}

void centre(QDialog *page)
{
    accountsui::placeOnFreeSpace(page, 1, 2);
}

void cancelFrom(int n)
{
    if (prompter().confirm(Prompter::Icon::Warning, texts::accounts::WizardCaption,
                           texts::accounts::AskQuitWizard))
        closeFrom(n);
}

void finish()
{
    forms::MailBox()->Changed = true;
    closeFrom(5);
}

}  // namespace wizard
