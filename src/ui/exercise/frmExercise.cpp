#include "frmExercise.h"

#include "sendrecv/classroom.h"
#include "store/errors.h"
#include "store/mailstore.h"
#include "texts.h"
#include "ui/common/fonts.h"
#include "ui/common/scaffold.h"
#include "ui/common/twips.h"
#include "ui/common/widgets.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QShortcut>
#include <QListWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {
namespace t = texts::exercise;

constexpr int Gap = 4;  // pixels between the two windows
// The window's width when there is room for it, and the least it keeps.
constexpr int WidthTwips = 4500;
constexpr int NarrowestTwips = 3300;

// A green tick for a task done, the same space left empty for one open, so
// that the texts line up. Drawn at the screen's pixel ratio.
QIcon mark(bool done)
{
    const qreal ratio = qGuiApp->devicePixelRatio();
    QPixmap pm(QSize(16, 16) * ratio);
    pm.setDevicePixelRatio(ratio);
    pm.fill(Qt::transparent);
    if (done) {
        QPainter p(&pm);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(QPen(QColor(0x2e, 0x8b, 0x3a), 2.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.drawPolyline(QPolygonF({QPointF(2.5, 8.5), QPointF(6.5, 12.5), QPointF(13.5, 3.5)}));
    }
    return QIcon(pm);
}

QString nameOf(int folder)
{
    switch (folder) {
    case FolderFile::Inbox: return texts::InboxName;
    case FolderFile::Outbox: return texts::OutboxName;
    case FolderFile::SentItems: return texts::SentItemsName;
    case FolderFile::DeletedItems: return texts::DeletedItemsName;
    case FolderFile::Drafts: return texts::DraftsName;
    default: return t::AccountsName;
    }
}
}  // namespace

SideBySide PlaceSideBySide(const QRect &area, const QRect &mainFrame, int narrowestMain,
                           int exerciseWidth, int narrowestExercise)
{
    SideBySide p{mainFrame, QRect()};
    const int top = mainFrame.top();
    const int height = std::min(mainFrame.height(), area.bottom() + 1 - top);
    if (area.right() - mainFrame.right() - Gap >= exerciseWidth) {
        p.exercise = QRect(mainFrame.right() + 1 + Gap, top, exerciseWidth, height);
        return p;
    }
    const int width = std::min(mainFrame.width(), std::max(narrowestMain, area.width() - Gap - exerciseWidth));
    p.main = QRect(area.left(), top, width, mainFrame.height());
    const int left = std::min(p.main.right() + 1 + Gap, area.right() + 1 - narrowestExercise);
    p.exercise = QRect(left, top, std::min(exerciseWidth, area.right() + 1 - left), height);
    return p;
}

frmExercise::frmExercise()
{
    setObjectName(u"frmExercise"_s);
    setWindowTitle(t::Caption);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setFont(fonts::uiFont());

    Title = named(wrapped(new QLabel(this)), u"Title"_s);
    QFont big = Title->font();
    big.setPointSize(11);
    big.setBold(true);
    Title->setFont(big);

    Tasks = named(new QListWidget(this), u"Tasks"_s);
    speak(Tasks, t::TaskList, t::TaskListHelp);
    // Long tasks wrap to the window's width, laid out afresh as it changes.
    Tasks->setWordWrap(true);
    Tasks->setTextElideMode(Qt::ElideNone);
    Tasks->setResizeMode(QListView::Adjust);
    Tasks->setSpacing(2);
    Tasks->setSelectionMode(QAbstractItemView::NoSelection);
    Tasks->setIconSize(QSize(16, 16));
    Tasks->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    Progress = named(new QLabel(this), u"Progress"_s);
    Note = named(wrapped(new QLabel(this)), u"Note"_s);
    Note->hide();

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(Title);
    layout->addWidget(Tasks, 1);
    layout->addWidget(Progress);
    layout->addWidget(Note);

    // CTRL+E opens the window from the main window and closes it from here;
    // so does Escape, as in every dialog.
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_E), this), &QShortcut::activated, this,
            &QWidget::close);
    connect(&storeEvents(), &StoreEvents::folderChanged, this, &frmExercise::folderChanged);
    connect(&storeEvents(), &StoreEvents::accountsChanged, this, &frmExercise::accountsChanged);
    scaffold::loadOnShow(this, [this] { Form_Load(); });
}

frmExercise::~frmExercise()
{
    classroom::SetExerciseProgress({});
}

void frmExercise::setExercise(const exercise::Exercise &exercise)
{
    m_exercise = exercise;
    Title->setText(exercise.title);
    Tasks->clear();
    m_done = QList<bool>(exercise.tasks.size(), false);
    for (const exercise::Task &task : exercise.tasks)
        Tasks->addItem(t::TaskLine.arg(task.number).arg(task.text));
    if (isVisible())
        Form_Load();
    // The trainer's overview of the class shows how far this machine is.
    classroom::SetExerciseProgress([this] {
        const exercise::Progress p = progress();
        return classroom::ExerciseProgress{p.title, QString::number(p.done) + u'/' + QString::number(p.tasks)};
    });
}

void frmExercise::openBeside(QWidget *mainWindow, int narrowestMain, bool activate, const QRect &area)
{
    const QRect mainFrame = mainWindow->frameGeometry();
    const QRect free = area.isNull() ? mainWindow->screen()->availableGeometry() : area;
    const SideBySide p = PlaceSideBySide(free, mainFrame, narrowestMain, twips::toPixels(WidthTwips),
                                         twips::toPixels(NarrowestTwips));
    // This window's frame is not known before the desktop has shown it; it
    // is taken to be the main window's.
    const QSize frame = mainFrame.size() - mainWindow->size();
    if (p.main != mainFrame) {
        // A maximised window would keep the whole screen.
        mainWindow->setWindowState(mainWindow->windowState() & ~(Qt::WindowMaximized | Qt::WindowFullScreen));
        mainWindow->move(p.main.topLeft());
        mainWindow->resize(p.main.size() - frame);
    }
    move(p.exercise.topLeft());
    resize(p.exercise.size() - frame);
    // At start-up the trainee's keys stay with the main window.
    setAttribute(Qt::WA_ShowWithoutActivating, !activate);
    show();
    if (activate) {
        raise();
        activateWindow();
        Tasks->setFocus();
    }
}

void frmExercise::Form_Load()
{
    checkAll();
}

exercise::Progress frmExercise::progress()
{
    // A closed window is not kept up to date.
    if (!isVisible())
        checkAll();
    return {m_exercise.title, int(m_done.count(true)), int(m_done.size())};
}

void frmExercise::checkAll()
{
    m_unreadable.clear();
    QList<int> sources;
    for (const exercise::Task &task : m_exercise.tasks) {
        if (!sources.contains(task.folder))
            sources.append(task.folder);
    }
    for (int source : sources)
        check(source);
    showProgress();
}

void frmExercise::folderChanged(int folder)
{
    if (isVisible()) {
        check(folder);
        showProgress();
    }
}

void frmExercise::accountsChanged()
{
    folderChanged(-1);
}

void frmExercise::check(int source)
{
    QList<int> indices;
    QList<exercise::Task> tasks;
    for (int i = 0; i < m_exercise.tasks.size(); ++i) {
        if (m_exercise.tasks.at(i).folder == source) {
            indices.append(i);
            tasks.append(m_exercise.tasks.at(i));
        }
    }
    if (tasks.isEmpty())
        return;
    QList<bool> done(tasks.size(), false);
    try {
        if (source < 0) {
            const AccountList accounts = store::Accounts();
            for (int k = 0; k < tasks.size(); ++k)
                done[k] = exercise::TaskDone(tasks.at(k), accounts);
        } else {
            done = exercise::TasksDone(tasks, store::Folder(source));
        }
        m_unreadable.remove(source);
    } catch (const StoreError &) {
        // The main window's box has said why; the tasks wait until the
        // folder can be read.
        m_unreadable.insert(source);
    }
    for (int k = 0; k < indices.size(); ++k) {
        m_done[indices.at(k)] = done.at(k);
        QListWidgetItem *row = Tasks->item(indices.at(k));
        row->setIcon(mark(done.at(k)));
        row->setData(Qt::AccessibleTextRole, QString((done.at(k) ? t::SaidDone : t::SaidOpen) + row->text()));
    }
}

void frmExercise::showProgress()
{
    Progress->setText(t::Progress.arg(m_done.count(true)).arg(m_done.size()));

    QList<int> unreadable = m_unreadable.values();
    std::sort(unreadable.begin(), unreadable.end());
    QStringList notes;
    for (int folder : unreadable)
        notes.append(t::Unreadable.arg(nameOf(folder)));
    Note->setText(notes.join(u'\n'));
    Note->setVisible(!notes.isEmpty());
}
