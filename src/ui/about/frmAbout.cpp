#include "frmAbout.h"

#include "store/appdir.h"
#include "texts.h"
#include "ui/common/logo.h"
#include "ui/common/scaffold.h"
#include "ui/common/widgets.h"

#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {
// The banner: the program's name on a blue band, drawn here so that the box
// needs no image file. Drawn at the screen's pixel ratio, so it stays crisp
// at 144 dpi.
QPixmap banner(QSize size, qreal ratio)
{
    QPixmap pm(size * ratio);
    pm.setDevicePixelRatio(ratio);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient g(0, 0, size.width(), 0);
    g.setColorAt(0, QColor(0x1f, 0x4e, 0x8c));
    g.setColorAt(1, QColor(0x6f, 0x9f, 0xd8));
    p.fillRect(QRect(QPoint(0, 0), size), g);
    QFont f = p.font();
    f.setPixelSize(size.height() * 2 / 5);
    f.setBold(true);
    p.setFont(f);
    p.setPen(Qt::white);
    p.drawText(QRect(size.height() / 3, 0, size.width(), size.height()),
               Qt::AlignVCenter | Qt::AlignLeft, texts::AppTitle);
    return pm;
}
}  // namespace

frmAbout::frmAbout(QWidget *parent) : QDialog(parent)
{
    setObjectName(u"frmAbout"_s);
    setWindowTitle(texts::about::Caption);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    Image1 = new QLabel(this);
    Image1->setObjectName(u"Image1"_s);
    Image2 = new QLabel(this);
    Image2->setObjectName(u"Image2"_s);
    Label1 = new QLabel(texts::about::Version, this);
    Label1->setObjectName(u"Label1"_s);
    Label2 = new QLabel(texts::about::Copyright, this);
    Label2->setObjectName(u"Label2"_s);
    Label3 = new QLabel(texts::about::DesignsNotice, this);
    Label3->setObjectName(u"Label3"_s);
    Label4 = new QLabel(texts::about::StationeryNotice, this);
    Label4->setObjectName(u"Label4"_s);
    for (QLabel *l : {Label3, Label4})
        l->setWordWrap(true);

    ListView1 = new QTreeWidget(this);
    speak(ListView1, texts::a11y::Components);
    ListView1->setObjectName(u"ListView1"_s);
    ListView1->setRootIsDecorated(false);
    ListView1->setHeaderLabels({texts::about::ColumnFile, texts::about::ColumnVersion,
                                texts::about::ColumnPath});
    ListView1->header()->setSectionsClickable(false);

    Command1 = new QPushButton(texts::about::Ok, this);
    Command1->setObjectName(u"Command1"_s);
    Command1->setDefault(true);

    auto *text = new QVBoxLayout;
    text->addWidget(Label1);
    text->addWidget(Label2);
    text->addStretch();
    auto *head = new QHBoxLayout;
    head->addWidget(Image2, 0, Qt::AlignTop);
    head->addLayout(text, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command1);
    auto *body = new QVBoxLayout;
    body->setContentsMargins(12, 8, 12, 12);
    body->addLayout(head);
    body->addWidget(ListView1, 1);
    body->addWidget(Label3);
    body->addWidget(Label4);
    body->addLayout(buttons);
    auto *root = new QVBoxLayout(this);
    root->setContentsMargins(0, 0, 0, 0);
    root->addWidget(Image1);
    root->addLayout(body, 1);

    connect(Command1, &QPushButton::clicked, this, &frmAbout::Command1_Click);

    const int unit = fontMetrics().height();
    resize(unit * 40, unit * 30);
    scaffold::loadOnShow(this, [this] { Form_Load(); });
}

void frmAbout::Form_Load()
{
    const qreal ratio = devicePixelRatioF();
    const int unit = fontMetrics().height();
    Image1->setPixmap(banner(QSize(width(), unit * 3), ratio));
    Image2->setPixmap(QPixmap::fromImage(logoImage(unit * 3, ratio)));
    // The folder is chosen at start-up (beside the program, per user or
    // named on the command line); here a trainer can look it up.
    const QString folder = QDir::toNativeSeparators(AppDir());
    Label1->setToolTip(DataReadOnly() ? texts::datadir::AboutTipReadOnly.arg(folder)
                                      : texts::datadir::AboutTip.arg(folder));

    // Cleared first: the box is shown again and again from one instance.
    ListView1->clear();
    for (const texts::about::Component &c : texts::about::Components) {
        auto *item = new QTreeWidgetItem(ListView1);
        item->setText(0, QString::fromUtf16(c.file));
        item->setText(1, c.version ? QString::fromUtf16(c.version) : texts::about::UnknownVersion);
        item->setText(2, QString::fromUtf16(c.path));
    }
    for (int column = 0; column < ListView1->columnCount(); ++column)
        ListView1->resizeColumnToContents(column);
}

void frmAbout::Command1_Click()
{
    close();
}
