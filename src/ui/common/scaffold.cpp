#include "scaffold.h"

#include "forms.h"
#include "icons.h"
#include "twips.h"

#include "store/errors.h"
#include "store/prompter.h"
#include "texts.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMainWindow>
#include <QPointer>
#include <QEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QToolBar>
#include <QWidget>

namespace scaffold {

QToolBar *fixedToolBar(QMainWindow *window)
{
    auto *bar = new QToolBar(window);
    bar->setObjectName(QStringLiteral("Toolbar1"));
    bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    bar->setIconSize(QSize(22, 22));
    bar->setMovable(false);
    bar->setFloatable(false);
    bar->toggleViewAction()->setEnabled(false);
    window->addToolBar(Qt::TopToolBarArea, bar);
    return bar;
}

QList<QAction *> addTools(QToolBar *bar, std::initializer_list<Tool> tools,
                          std::function<void(int)> clicked)
{
    QList<QAction *> actions;
    for (const Tool &t : tools) {
        QAction *a = t.caption ? bar->addAction(appIcon(QLatin1StringView(t.icon)), *t.caption)
                               : bar->addSeparator();
        a->setObjectName(QLatin1StringView(t.name));
        if (t.caption)
            a->setToolTip(t.tip ? *t.tip : *t.caption);
        actions.append(a);
        const int position = int(actions.size());
        QObject::connect(a, &QAction::triggered, bar, [clicked, position] { clicked(position); });
    }
    return actions;
}

void addMenus(QMenuBar *bar, std::initializer_list<Entry> entries)
{
    QMenu *menu = nullptr;
    QMenu *submenu = nullptr;
    for (auto it = entries.begin(); it != entries.end(); ++it) {
        const Entry &e = *it;
        const QString name = QLatin1StringView(e.name);
        if (e.depth == 0) {
            menu = bar->addMenu(*e.caption);
            menu->setObjectName(name);
            continue;
        }
        QMenu *into = e.depth == 1 ? menu : submenu;
        if (!e.caption) {
            into->addSeparator();
            continue;
        }
        const bool opensSubmenu = e.depth == 1 && it + 1 != entries.end() && (it + 1)->depth == 2;
        QAction *a = nullptr;
        if (opensSubmenu) {
            submenu = into->addMenu(*e.caption);
            submenu->setObjectName(name);
            a = submenu->menuAction();
        } else {
            a = into->addAction(*e.caption);
            a->setObjectName(name);
        }
        if (e.icon)
            a->setIcon(appIcon(QLatin1StringView(e.icon)));
    }
}

QAction *action(const QWidget *window, const char *name)
{
    return window->findChild<QAction *>(QLatin1StringView(name));
}

namespace {
// Calls the load handler on every show that the program asks for (an
// un-minimised window comes back without one).
class ShowWatcher final : public QObject
{
public:
    ShowWatcher(QWidget *window, std::function<void()> load)
        : QObject(window), m_load(std::move(load))
    {
        window->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show && !event->spontaneous() && watched == parent())
            m_load();
        return false;
    }

private:
    std::function<void()> m_load;
};
}  // namespace

void loadOnShow(QWidget *window, std::function<void()> load)
{
    new ShowWatcher(window, std::move(load));
}

void placeOnFreeSpace(QWidget *window, QSize windowTwips, int share, int parts)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect area = screen->geometry();
    // Whole twips first, as the window and screen sizes are kept; the
    // multiplied free space is then divided with truncation.
    const auto tw = [](int px) { return int(twips::fromPixels(px) + 0.5); };
    const int left = (share * (tw(area.width()) - windowTwips.width())) / parts;
    const int top = (share * (tw(area.height()) - windowTwips.height())) / parts;
    window->move(area.topLeft() + QPoint(twips::toPixels(left), twips::toPixels(top)));
}

QSize frameTwips(const QWidget *window)
{
    const QSize frame = window->frameGeometry().size();
    return QSize(int(twips::fromPixels(frame.width()) + 0.5),
                 int(twips::fromPixels(frame.height()) + 0.5));
}

void placeBeside(QWidget *window, const QWidget *mainWindow)
{
    const QScreen *screen = mainWindow->screen();
    if (!screen)
        return;
    // Below the main window's tool bar and right of its folder tree's edge,
    // so that the window it came from stays recognisable.
    const QPoint offset(twips::toPixels(1800), twips::toPixels(1170));
    QRect r(mainWindow->frameGeometry().topLeft() + offset, window->frameGeometry().size());
    const QRect free = screen->availableGeometry();
    r.moveRight(qMin(r.right(), free.right()));
    r.moveBottom(qMin(r.bottom(), free.bottom()));
    r.moveLeft(qMax(r.left(), free.left()));
    r.moveTop(qMax(r.top(), free.top()));
    window->move(r.topLeft());
}

void bringUp(QWidget *window, const std::function<void()> &load)
{
    if (window->isVisible()) {
        load();
    } else {
        if (const QWidget *main = forms::mainWindow(); main && main->isVisible())
            placeBeside(window, main);
        window->show();
    }
    window->raise();
    window->activateWindow();
}

namespace {
class AltKeyEater final : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
            return false;
        const auto *key = static_cast<QKeyEvent *>(event);
        // AltGr reaches the program as Control and Alt together and types
        // characters on some keyboards; it is left alone.
        const Qt::KeyboardModifiers mods = key->modifiers();
        if (!(mods & Qt::AltModifier) || (mods & Qt::ControlModifier) || key->text().isEmpty())
            return false;
        // Shortcuts and mnemonics were offered the key before it came here;
        // what is left would only type.
        return watched->inherits("QLineEdit") || watched->inherits("QTextEdit")
            || watched->inherits("QPlainTextEdit") || watched->inherits("QComboBox")
            || watched->inherits("QAbstractItemView");
    }
};
}  // namespace

void installKeyboardRules()
{
    static QPointer<AltKeyEater> eater;
    if (!eater && qApp) {
        eater = new AltKeyEater(qApp);
        qApp->installEventFilter(eater);
    }
}

bool guarded(const std::function<void()> &command)
{
    try {
        command();
        return true;
    } catch (const StoreError &error) {
        prompter().message(Prompter::Icon::Exclamation, texts::AppTitle, ErrorBoxText(error));
    }
    return false;
}

}  // namespace scaffold
