#include "frmPicSelector.h"

#include "kvIconCatalogue.h"

#include <QCoreApplication>
#include <QFrame>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionTabWidgetFrame>
#include <QTabBar>

#include <algorithm>

namespace {

const char *const tabCaptions[] = { "Business", "Sport", "Freizeit", "Reise", "Symbol",
                                    "Sonstige" };

// The fixed binding of the categories 1 .. 6 to the picture arrays Img1 .. Img6.
constexpr std::array<int, frmPicSelector::CategoryCount> imageArrayOfCategory = {
    1, 3, 4, 6, 2, 5
};

QPointer<frmPicSelector> &threadPicker()
{
    thread_local QPointer<frmPicSelector> picker;
    return picker;
}

int categoryOfImageArray(int number)
{
    const auto it = std::find(imageArrayOfCategory.begin(), imageArrayOfCategory.end(), number);
    return int(it - imageArrayOfCategory.begin()) + 1;
}

kvIconCatalogue &icons()
{
    return kvIconCatalogue::ThreadInstance();
}

} // namespace

frmPicSelector::frmPicSelector()
    : m_tabInfos(CategoryCount)
{
    setObjectName(QStringLiteral("frmPicSelector"));
    setWindowTitle(QStringLiteral("Symbol auswählen"));
    setModal(true);
    CreateControls();
    LayoutControls();
    // Form_Load: the built-in set; loadPics() arranges it as well.
    loadPics(QString());
}

// The icons go with the picker: whoever needs them next gets the built-in set, as a new picker shows.
frmPicSelector::~frmPicSelector()
{
    kvIconCatalogue::Unload();
}

frmPicSelector &frmPicSelector::ThreadInstance()
{
    QPointer<frmPicSelector> &picker = threadPicker();
    if (!picker) {
        picker = new frmPicSelector;
        // A top-level dialog without a parent: the application tears it down at exit.
        QObject::connect(qApp, &QCoreApplication::aboutToQuit, picker, &QObject::deleteLater);
    }
    return *picker;
}

bool frmPicSelector::HasThreadInstance()
{
    return !threadPicker().isNull();
}

// --- Controls ---------------------------------------------------------------------------------

void frmPicSelector::CreateControls()
{
    m_tabStrip = new QTabBar(this);
    m_tabStrip->setObjectName(QStringLiteral("TabStrip"));
    for (const char *caption : tabCaptions)
        m_tabStrip->addTab(QString::fromLatin1(caption));
    m_tabStrip->setDrawBase(false);
    m_tabStrip->setExpanding(false);
    m_tabStrip->setUsesScrollButtons(false);
    m_tabStrip->setElideMode(Qt::ElideNone);

    m_picFrame = new QFrame(this);
    m_picFrame->setObjectName(QStringLiteral("PicFrame"));
    m_picFrame->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);

    m_vScroll = new QScrollBar(Qt::Vertical, m_picFrame);
    m_vScroll->setObjectName(QStringLiteral("VScroll"));
    m_vScroll->setRange(1, 1);
    m_vScroll->setSingleStep(1);
    m_vScroll->setPageStep(VisibleRows);

    m_picContainer = std::make_unique<kvControlArray<QWidget>>(
            QStringLiteral("PicContainer"), [this](int index) { return CreateContainer(index); });
    for (int tab = 1; tab <= CategoryCount; ++tab)
        m_picContainer->Load(tab);

    for (int number = 1; number <= CategoryCount; ++number) {
        const int category = categoryOfImageArray(number);
        m_img[number - 1] = std::make_unique<kvControlArray<QToolButton>>(
                QStringLiteral("Img") + QString::number(number),
                [this, category](int) { return CreatePictureControl(category); });
    }

    connect(m_tabStrip, &QTabBar::currentChanged, this, &frmPicSelector::TabStrip_Click);
    connect(m_vScroll, &QScrollBar::valueChanged, this, &frmPicSelector::VScroll_Change);
}

QWidget *frmPicSelector::CreateContainer(int index)
{
    auto *container = new QWidget(m_picFrame);
    container->setBackgroundRole(QPalette::Base);
    container->setAutoFillBackground(true);
    container->installEventFilter(this);
    container->setVisible(index == 1);
    return container;
}

// Tab c shows category c, so the pictures of a category live in the container of that tab.
QToolButton *frmPicSelector::CreatePictureControl(int category)
{
    auto *picture = new QToolButton((*m_picContainer)(category));
    picture->setAutoRaise(true);
    picture->setToolButtonStyle(Qt::ToolButtonIconOnly);
    picture->setIconSize(icons().BigIcons().ImageSize());
    picture->resize(PictureControlSize, PictureControlSize);
    picture->hide();
    connect(picture, &QToolButton::clicked, this, [this, picture] { Img_Click(picture); });
    return picture;
}

void frmPicSelector::LayoutControls()
{
    const int margin = style()->pixelMetric(QStyle::PM_LayoutLeftMargin, nullptr, this);
    const QSize tabSize = m_tabStrip->sizeHint();
    m_tabStrip->setGeometry(QRect(QPoint(margin, margin), tabSize));

    const int frameWidth = m_picFrame->frameWidth();
    const QSize viewSize(Columns * RowHeight + 1, VisibleRows * RowHeight + 1);
    const int scrollWidth = m_vScroll->sizeHint().width();
    const QSize frameSize(viewSize.width() + scrollWidth + 2 * frameWidth,
                          viewSize.height() + 2 * frameWidth);
    for (int index : m_picContainer->indexes())
        (*m_picContainer)(index)->setGeometry(QRect(QPoint(frameWidth, frameWidth), viewSize));
    m_vScroll->setGeometry(frameWidth + viewSize.width(), frameWidth,
                           scrollWidth, viewSize.height());

    const int paneWidth = std::max(tabSize.width(), frameSize.width() + 2 * margin);
    const int paneHeight = frameSize.height() + 2 * margin;
    setFixedSize(paneWidth + 2 * margin, PaneTop() + paneHeight + margin);
    const QRect pane = PaneRect();
    m_picFrame->setGeometry(QRect(QPoint(pane.x() + (pane.width() - frameSize.width()) / 2,
                                         pane.y() + margin),
                                  frameSize));
}

int frmPicSelector::PaneTop() const
{
    return m_tabStrip->geometry().bottom() + 1
            - style()->pixelMetric(QStyle::PM_TabBarBaseOverlap, nullptr, m_tabStrip);
}

QRect frmPicSelector::PaneRect() const
{
    const int margin = m_tabStrip->x();
    return QRect(margin, PaneTop(), width() - 2 * margin, height() - margin - PaneTop());
}

bool frmPicSelector::eventFilter(QObject *watched, QEvent *event)
{
    // The wheel over the pictures turns the shared scroll bar.
    if (event->type() == QEvent::Wheel) {
        QCoreApplication::sendEvent(m_vScroll, event);
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void frmPicSelector::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (m_tabStrip && (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange))
        LayoutControls();
}

void frmPicSelector::paintEvent(QPaintEvent *)
{
    QStyleOptionTabWidgetFrame pane;
    pane.initFrom(this);
    pane.rect = PaneRect();
    pane.shape = m_tabStrip->shape();
    pane.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
    pane.tabBarSize = m_tabStrip->size();
    pane.tabBarRect = m_tabStrip->geometry();
    pane.selectedTabRect = m_tabStrip->tabRect(m_tabStrip->currentIndex())
                                   .translated(m_tabStrip->pos());
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_FrameTabWidget, &pane, &painter, this);
}

// --- Loading ----------------------------------------------------------------------------------

void frmPicSelector::loadPics(const QString &folder)
{
    UnloadPictureControls();
    icons().Load(folder);
    arrangePics();
}

void frmPicSelector::UnloadPictureControls()
{
    for (const auto &pictures : m_img) {
        for (int index : pictures->indexes()) {
            if (index > 0)
                pictures->Unload(index);
        }
    }
}

void frmPicSelector::arrangePics()
{
    icons().RefillSmallIcons();
    for (int category = 1; category <= CategoryCount; ++category)
        ArrangeCategory(category, m_tabInfos[category - 1]);
    // The tabs start at row 1 again; the shared scroll bar must say so too.
    ShowTab(SelectedTab());
}

void frmPicSelector::ArrangeCategory(int category, TabInfo &tab)
{
    const kvIconCatalogue &catalogue = icons();
    const int size = catalogue.CategorySize(category);
    // Division truncates toward zero, so an empty category still has one row.
    const int rowCount = (size - 1) / Columns + 1;
    tab.setRowCount(qint16(rowCount));
    tab.setSrollPosition(1);
    tab.setLinkedCategory(qint16(category));
    tab.setMaxSrollPosition(qint16(rowCount > 5 ? rowCount - 4 : 1));

    kvControlArray<QToolButton> &pictures = CategoryImages(category);
    kvImageList &big = icons().BigIcons();
    const int first = catalogue.PicturesBefore(category);
    for (int i = 1; i <= size; ++i) {
        QToolButton *picture = pictures.isLoaded(i) ? pictures(i) : pictures.Load(i);
        const bool hasPicture = first + i <= big.Count();
        picture->setIcon(hasPicture ? big.ListImage(first + i) : QIcon());
        picture->setEnabled(hasPicture);
        picture->setProperty("Tag", QStringLiteral("%1_%2").arg(category).arg(i));
        picture->setGeometry((i - 1) % Columns * RowHeight, (i - 1) / Columns * RowHeight,
                             PictureControlSize, PictureControlSize);
        picture->show();
    }
}

// --- Tabs, scrolling and choosing -------------------------------------------------------------

int frmPicSelector::SelectedTab() const
{
    return m_tabStrip->currentIndex() + 1;
}

void frmPicSelector::TabStrip_Click()
{
    for (int tab = 1; tab <= CategoryCount; ++tab) {
        QWidget *container = (*m_picContainer)(tab);
        if (!container->isHidden()) {
            m_tabInfos[tab - 1].setSrollPosition(qint16(m_vScroll->value()));
            container->hide();
        }
    }
    ShowTab(SelectedTab());
    update();
}

void frmPicSelector::ShowTab(int tab)
{
    const TabInfo &info = m_tabInfos.at(tab - 1);
    (*m_picContainer)(tab)->show();
    {
        // Narrowing the range would clamp the old tab's value and store it in this tab.
        const QSignalBlocker blocker(m_vScroll);
        m_vScroll->setMaximum(info.MaxSrollPosition());
        m_vScroll->setValue(info.SrollPosition());
    }
    MovePictures(info.LinkedCategory(), m_vScroll->value());
}

void frmPicSelector::VScroll_Change(int value)
{
    TabInfo &tab = m_tabInfos[SelectedTab() - 1];
    tab.setSrollPosition(qint16(value));
    MovePictures(tab.LinkedCategory(), value);
}

void frmPicSelector::MovePictures(int category, int position)
{
    kvControlArray<QToolButton> &pictures = CategoryImages(category);
    for (int i : pictures.indexes()) {
        if (i == 0)
            continue;
        const int row = (i - 1) / Columns + 1;
        QToolButton *picture = pictures(i);
        picture->move(picture->x(), (row - position) * RowHeight);
    }
}

void frmPicSelector::Img_Click(QToolButton *picture)
{
    m_selection = picture->property("Tag").toString();
    accept();
}

// --- Numbering --------------------------------------------------------------------------------

qint16 frmPicSelector::GetImgListIndex() const
{
    if (m_selection.size() < 3)
        return 0;
    const int category = m_selection.at(0).digitValue();
    const int number = QStringView(m_selection).mid(2).toInt();
    return qint16(number + icons().PicturesBefore(category));
}

qint16 frmPicSelector::ImgId() const
{
    if (m_selection.size() < 3)
        return 0;
    return qint16((m_selection.left(1) + m_selection.mid(2)).toInt());
}

qint16 frmPicSelector::ConvertImgID2ImageListIndex(qint16 &imageId) const
{
    return icons().IndexOfImageId(imageId);
}

void frmPicSelector::Reset()
{
    m_selection.clear();
}

// --- Accessors --------------------------------------------------------------------------------

kvImageList &frmPicSelector::ImageListBig()
{
    return icons().BigIcons();
}

kvImageList &frmPicSelector::ImageListSmall()
{
    return icons().SmallIcons();
}

QString frmPicSelector::IconFolder() const
{
    return icons().Folder();
}

QString frmPicSelector::Selection() const
{
    return m_selection;
}

QList<qint16> frmPicSelector::CategorySizes() const
{
    return icons().CategorySizes();
}

const QList<TabInfo> &frmPicSelector::TabInfos() const
{
    return m_tabInfos;
}

QTabBar *frmPicSelector::TabStrip() const
{
    return m_tabStrip;
}

QScrollBar *frmPicSelector::VScroll() const
{
    return m_vScroll;
}

kvControlArray<QWidget> &frmPicSelector::PicContainer()
{
    return *m_picContainer;
}

kvControlArray<QToolButton> &frmPicSelector::Img(int number)
{
    return *m_img.at(number - 1);
}

kvControlArray<QToolButton> &frmPicSelector::CategoryImages(int category)
{
    return Img(imageArrayOfCategory.at(category - 1));
}
