#include "wizard.h"

#include "store/prompter.h"
#include "texts.h"
#include "ui/common/scaffold.h"
#include "ui/common/twips.h"

#include <QBoxLayout>
#include <QDialog>
#include <QEvent>
#include <QFrame>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QTimer>

namespace wizard {

namespace {
// The pages whose exec() is still on the stack.
QSet<QDialog *> &running()
{
    static QSet<QDialog *> pages;
    return pages;
}

// Cancel, Escape and the title bar's close button ask before the wizard
// is left; Yes closes this page and, as their loops end, those below.
void askCancel(QDialog *page)
{
    if (prompter().confirm(Prompter::Icon::Warning, texts::accounts::WizardCaption,
                           texts::accounts::AskQuitWizard, Prompter::Default::No))
        page->done(Cancelled);
}

class CancelWatcher final : public QObject
{
public:
    explicit CancelWatcher(QDialog *page) : QObject(page), m_page(page)
    {
        page->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched != m_page)
            return false;
        const bool escape = event->type() == QEvent::KeyPress
            && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape;
        if (escape || event->type() == QEvent::Close) {
            event->ignore();
            askCancel(m_page);
            return true;
        }
        return false;
    }

private:
    QDialog *m_page;
};
}  // namespace

std::tuple<QPushButton *, QPushButton *, QPushButton *> buttons(QDialog *page, bool last)
{
    namespace t = texts::accounts;
    const auto button = [page](const QString &caption, const QString &name) {
        auto *b = new QPushButton(caption, page);
        b->setObjectName(name);
        return b;
    };
    return {button(t::Back, QStringLiteral("btnBackWard")),
            last ? button(t::Finish, QStringLiteral("btnOK")) : button(t::Next, QStringLiteral("btnForWard")),
            button(t::Cancel, QStringLiteral("btnCancel"))};
}

QLineEdit *box(QDialog *page, const QString &name, QLabel *caption)
{
    auto *b = new QLineEdit(page);
    b->setObjectName(name);
    caption->setBuddy(b);
    return b;
}

QGridLayout *grid(const QList<QPair<QLabel *, QWidget *>> &rows)
{
    auto *g = new QGridLayout;
    g->setColumnMinimumWidth(0, 24);
    for (int row = 0; row < rows.size(); ++row) {
        if (rows[row].first)
            g->addWidget(rows[row].first, row, 1);
        g->addWidget(rows[row].second, row, 2);
    }
    g->setColumnStretch(2, 1);
    return g;
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

void wire(const Page &p)
{
    QDialog *page = p.dialog;
    p.forward->setDefault(true);
    scaffold::loadOnShow(page, [page, load = p.load] {
        scaffold::placeOnFreeSpace(page, scaffold::frameTwips(page), 1, 2);
        load();
    });
    new CancelWatcher(page);
    QObject::connect(p.cancel, &QPushButton::clicked, page, [page] { askCancel(page); });
    if (!p.first)
        QObject::connect(p.back, &QPushButton::clicked, page, [page] { page->done(Back); });
    if (!p.next) {
        QObject::connect(p.forward, &QPushButton::clicked, page, [page] { page->done(Finished); });
        return;
    }
    QObject::connect(p.forward, &QPushButton::clicked, page,
                     [page, forward = p.forward, store = p.store, next = p.next] {
        // Back hides the next page at once, but its exec() returns only when
        // control gets back to it; a Next typed ahead in that moment waits
        // for it rather than being lost.
        QDialog *nextPage = next();
        if (running().contains(nextPage)) {
            QTimer::singleShot(0, forward, [page, forward] {
                if (page->isVisible())
                    forward->click();
            });
            return;
        }
        store();
        running().insert(nextPage);
        const int result = nextPage->exec();
        running().remove(nextPage);
        if (result == Finished || result == Cancelled)
            page->done(result);
    });
}

}  // namespace wizard
