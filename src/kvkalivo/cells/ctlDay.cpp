#include "ctlDay.h"

#include "ctlDayAccessible.h"
#include "kvDayCellPainter.h"
#include "kvDayMouseRouter.h"
#include "kvDayRowScroller.h"
#include "kvErrorReporting.h"
#include "kvFaultSite.h"
#include "kvIconCatalogue.h"
#include "kvInt16.h"
#include "kvPropertyBag.h"
#include "kvRuntimeError.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QScrollBar>

namespace {

constexpr int FailureCode = 200;
constexpr int TerminationFailureCode = 100;

// Runs one member routine of the cell: a failure ends the routine and is reported under the
// cell's code (200, or 100 while it is destroyed); nothing propagates.
template <typename Work>
void reportFailures(int code, Work &&work) noexcept
{
    try {
        work();
    } catch (...) {
        kvErrorReporting::ReportFromDayCell(code, kvErrorReporting::DescribeCurrentException());
    }
}

// The row collection raises error 5 for a key it does not hold.
kvRuntimeError unknownKey()
{
    return kvRuntimeError(5, QStringLiteral("Ungültiger Prozeduraufruf oder ungültiges Argument"));
}

} // namespace

ctlDay::ctlDay(QWidget *parent)
    : QWidget(parent)
    , m_header(new ctlEntry(this))
    , m_rows(QStringLiteral("ctlEntry"), [this](int index) { return CreateRow(index); })
    , m_mouse(std::make_unique<kvDayMouseRouter>(*this))
    , m_scroller(std::make_unique<kvDayRowScroller>(*this))
{
    setObjectName(QStringLiteral("ctlDay"));
    ctlDayAccessible::Install();
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    QFont cellFont = font();
    cellFont.setPixelSize(FontPixelSize);
    setFont(cellFont);

    m_header->setObjectName(QStringLiteral("ctlHeader"));
    m_header->setFont(font());
    ConnectHeader();

    m_images.append(Image{QPixmap(), QRect(0, 0, IconSize, IconSize), false});

    m_vScroll = m_scroller->CreateScrollBar();
    // Clicks, keys and dragging all scroll the rows; valueChanged covers every one of them.
    connect(m_vScroll, &QScrollBar::valueChanged, this, [this] {
        reportFailures(FailureCode, [this] { m_scroller->Scrolling(); });
    });
}

ctlDay::~ctlDay()
{
    reportFailures(TerminationFailureCode, [this] {
        KV_FAULT_SITE("ctlDay.Terminate", 0);
        DetachRows(); // the row array deletes the rows
    });
}

// --- Rows and icons --------------------------------------------------------------------------

ctlEntry *ctlDay::CreateRow(int index)
{
    auto *row = new ctlEntry(this);
    row->setFont(font());
    if (index > 0)
        ConnectRow(row, qint16(index));
    return row;
}

void ctlDay::ConnectRow(ctlEntry *row, qint16 index)
{
    connect(row, &ctlEntry::MouseUp, this, [this, index](qint16 button, qint16 shift, float x, float y) {
        reportFailures(FailureCode, [&] { m_mouse->RowMouseUp(index, button, shift, x, y); });
    });
    connect(row, &ctlEntry::DblClick, this, [this, index] {
        reportFailures(FailureCode, [this, index] { Q_EMIT EntryDblClick(index); });
    });
    connect(row, &ctlEntry::MouseMove, this, [this, index](qint16, qint16, float x, float y) {
        reportFailures(FailureCode, [&] { m_mouse->RowPointer(index, x, y, false); });
    });
    connect(row, &ctlEntry::MouseDown, this, [this, index](qint16, qint16, float x, float y) {
        reportFailures(FailureCode, [&] { m_mouse->RowPointer(index, x, y, true); });
    });
}

//! The header's own row events: its MouseUp becomes DayMouseUp, its DblClick DayDblClick.
void ctlDay::ConnectHeader()
{
    connect(m_header, &ctlEntry::MouseUp, this, [this](qint16 button, qint16 shift, float x, float y) {
        reportFailures(FailureCode, [&] {
            SetFocusEntry(0);
            Q_EMIT DayMouseUp(button, shift, x, y);
        });
    });
    connect(m_header, &ctlEntry::DblClick, this, [this] {
        reportFailures(FailureCode, [this] { Q_EMIT DayDblClick(); });
    });
}

void ctlDay::Init(const kvDate &datDay, const QString &text, const QString &remark,
                  uint headerBackColor, uint headerForeColor)
{
    reportFailures(FailureCode, [&] {
        SyncLayout();
        m_datDay = datDay;
        m_headerBackColor = headerBackColor;
        m_headerForeColor = headerForeColor;
        m_header->Init(0, 0, QString::number(datDay.day()), datDay, datDay, text, remark,
                       QString(), 0, headerBackColor, headerForeColor);
        m_header->Move(0, 0, InnerWidth(), m_header->Height());
        m_nextRowTop = m_header->Height();
        m_header->setVisible(true);
        update();
    });
}

void ctlDay::AddDate(qint32 dateId, const kvDate &dateBegin, const kvDate &dateEnd,
                     const QString &text, const QString &remark, const QString &document,
                     qint16 imgId, uint backColor, uint foreColor)
{
    reportFailures(FailureCode, [&] {
        KV_FAULT_SITE("ctlDay.AddDate", 0);
        SyncLayout();
        m_lastRowIndex = kvInt16::add(m_lastRowIndex, 1); // a 16-bit index: overflow is error 6

        if (!m_entries)
            m_entries.emplace();
        QList<kvDayRow> &rows = m_entries->rows;
        if (!rows.isEmpty())
            rows.last().setShowLineSeperator(true); // every row but the last has a separator
        // The row is as high as its Init makes it.
        const QRect place(0, m_nextRowTop, InnerWidth(), ctlEntry::InitHeight);
        rows.append(kvDayRow({dateId, dateBegin, dateEnd, text, remark, document, imgId,
                              backColor, foreColor}, place));
        m_nextRowTop += place.height();

        if (m_nextRowTop > InnerHeight()) {
            if (m_vScroll->isHidden()) {
                m_vScroll->setVisible(true);
                m_vScroll->raise();
            }
            m_vScroll->setMaximum(kvInt16::add(m_vScroll->maximum(), 1));
        }
        if (imgId > 0)
            AddIcon(imgId);
        if (imgId > 0 || place.top() < InnerHeight())
            update(); // a row added below the cell's edge changes nothing that shows
    });
}

/*!
    The ctlEntry of the row at \a position (0 = the first added), made now if it is not yet.
    Row i of the collection is the row with the index and key i.
*/
ctlEntry *ctlDay::MadeRow(qsizetype position) const
{
    kvDayRow &row = m_entries->rows[position];
    if (!row.entry()) {
        const qint16 index = qint16(position + 1);
        row.Attach(TakeRow(index), index);
    }
    return row.entry();
}

//! Row \a index as new: one that an earlier fill left behind, or one loaded now.
ctlEntry *ctlDay::TakeRow(qint16 index) const
{
    if (!m_rows.isLoaded(index))
        return m_rows.Load(index);
    ctlEntry *row = m_rows(index);
    row->setIsContinuedDate(false); // its Init puts back the time
    row->setShowLineSeperator(false);
    return row;
}

void ctlDay::AddIcon(qint16 imgId)
{
    const Image &model = m_images.constFirst();
    const int k = int(m_images.size());
    // An ImgId without a picture still gets its (empty) icon: icon k stays the k-th appointment
    // with an ImgId above 0.
    Image icon{kvIconCatalogue::ThreadInstance().SmallPicture(imgId), model.Geometry, true};
    icon.Geometry.moveLeft(IconsLeft + k * model.Geometry.width());
    m_images.append(icon);
}

void ctlDay::ClearDates()
{
    reportFailures(FailureCode, [this] {
        DetachRows();
        m_entries.reset();
        m_activeEntryIndex = 0;
        SetFocusEntry(0);
        m_lastRowIndex = 0;
        m_nextRowTop = m_header->Height();
        m_vScroll->hide();
        m_vScroll->setMaximum(0);
        while (m_images.size() > 1)
            m_images.removeLast();
        update();
    });
}

/*!
    The rows leave the cell's collection but their ctlEntry objects stay loaded, hidden, for
    the next fill to reuse. A row that leaves lets go of the mouse, as a destroyed window loses
    its capture.
*/
void ctlDay::DetachRows()
{
    ReleaseCapture();
    m_mouse->ForgetPress();
    if (!m_entries)
        return;
    for (const kvDayRow &row : std::as_const(m_entries->rows)) {
        if (ctlEntry *entry = row.entry())
            entry->setVisible(false);
    }
    m_entries->rows.clear();
    if (!m_trimPending && m_rows.UBound() > MinimumKeptRows) {
        // Later, not now: the cell may be cleared from within a signal of one of its rows.
        m_trimPending = true;
        QMetaObject::invokeMethod(this, [this] {
            reportFailures(FailureCode, [this] { TrimRows(); });
        }, Qt::QueuedConnection);
    }
}

/*!
    After a busy day the cell would keep thousands of rows that the days after need no more:
    it keeps those the cell can show at once, or the rows it has, whichever are more.
*/
void ctlDay::TrimRows()
{
    m_trimPending = false;
    const int shown = InnerHeight() / RowHeight + 1;
    const int kept = std::max({MinimumKeptRows, shown, EntriesCount()});
    for (int index = m_rows.UBound(); index > kept; --index) {
        if (m_rows.isLoaded(index))
            m_rows.Unload(index);
    }
}

ctlEntry *ctlDay::Entries(qint16 index) const
{
    if (index < 1 || index > EntriesCount())
        throw unknownKey();
    return MadeRow(index - 1);
}

int ctlDay::EntriesCount() const
{
    return m_entries ? int(m_entries->rows.size()) : 0;
}

const ctlDay::Image &ctlDay::imgDateImage(int index) const
{
    if (index < 0 || index >= m_images.size())
        throw kvRuntimeError::controlArrayElementMissing(index);
    return m_images.at(index);
}

// --- Properties ------------------------------------------------------------------------------

void ctlDay::setBackColor(uint color)
{
    m_backColor = color;
    update();
    Q_EMIT PropertyChanged(QStringLiteral("BackColor"));
}

void ctlDay::setDayHeaderColor2(uint color)
{
    m_dayHeaderColor2 = color;
    m_header->setBackColor(color);
    update();
    Q_EMIT PropertyChanged(QStringLiteral("DayHeaderColor2"));
}

void ctlDay::setDayHeaderForeColor(uint color)
{
    m_dayHeaderForeColor = color;
    m_header->setForeColor(color);
    update();
    Q_EMIT PropertyChanged(QStringLiteral("DayHeaderForeColor"));
}

void ctlDay::setTodayHeaderColor(uint color)
{
    m_todayHeaderColor = color;
    Q_EMIT PropertyChanged(QStringLiteral("TodayHeaderColor"));
}

void ctlDay::setIsToday(bool isToday)
{
    if (!isToday)
        return; // intended: the header keeps its colour until DayHeaderColor2 is written
    m_header->setBackColor(m_todayHeaderColor);
    update();
}

void ctlDay::setIsActualDay(bool isActualDay)
{
    m_isActualDay = isActualDay;
    m_header->setIsActualDay(isActualDay);
    update();
    Q_EMIT PropertyChanged(QStringLiteral("IsActualDay"));
}

QString ctlDay::PublicHolidayName() const
{
    return m_header->PublicHolidayName();
}

void ctlDay::setPublicHolidayName(const QString &name)
{
    m_header->setPublicHolidayName(name);
    update();
}

void ctlDay::setBorderVisible(bool visible)
{
    reportFailures(FailureCode, [this, visible] {
        m_borderVisible = visible;
        const int border = visible ? 1 : 0;
        const QMargins margins(border, border, border, border);
        if (contentsMargins() == margins)
            return; // the grid writes it on every arrangement: nothing to lay out again
        setContentsMargins(margins);
        m_scroller->Resize(); // the inner area changed size although the cell did not
    });
}

void ctlDay::InitProperties()
{
    m_backColor = DefaultBackColor;
    m_dayHeaderColor2 = DefaultDayHeaderColor2;
    m_dayHeaderForeColor = DefaultDayHeaderForeColor;
    m_todayHeaderColor = DefaultTodayHeaderColor;
    m_isActualDay = DefaultIsActualDay;
    update();
}

//! Shows what was read, without notifying: nothing was changed by the host.
void ctlDay::ReadProperties(const kvPropertyBag &bag)
{
    m_backColor = uint(bag.ReadLong(QStringLiteral("BackColor"), qint32(DefaultBackColor)));
    m_dayHeaderColor2 = uint(bag.ReadLong(QStringLiteral("DayHeaderColor2"),
                                          qint32(DefaultDayHeaderColor2)));
    m_isActualDay = bag.ReadBoolean(QStringLiteral("IsActualDay"), DefaultIsActualDay);
    m_header->setBackColor(m_dayHeaderColor2);
    m_header->setIsActualDay(m_isActualDay);
    update();
}

void ctlDay::WriteProperties(kvPropertyBag &bag) const
{
    bag.WriteProperty(QStringLiteral("BackColor"), qint32(m_backColor), qint32(DefaultBackColor));
    bag.WriteProperty(QStringLiteral("DayHeaderColor2"), qint32(m_dayHeaderColor2),
                      qint32(DefaultDayHeaderColor2));
    bag.WriteProperty(QStringLiteral("IsActualDay"), m_isActualDay, DefaultIsActualDay);
}

// --- Layout ----------------------------------------------------------------------------------

int ctlDay::InnerWidth() const
{
    return contentsRect().width();
}

int ctlDay::InnerHeight() const
{
    return contentsRect().height();
}

/*!
    A cell is laid out for its new size the moment it is moved, shown or not; Qt holds back
    the resize event of a hidden widget until it is shown. Routines that place rows first
    catch up on a size change that has not been laid out yet, so that a cell filled while
    hidden looks like one filled while shown.
*/
void ctlDay::SyncLayout()
{
    if (m_laidOutSize != size())
        m_scroller->Resize();
}

void ctlDay::resizeEvent(QResizeEvent *)
{
    reportFailures(FailureCode, [this] { SyncLayout(); });
}

// --- Mouse -----------------------------------------------------------------------------------

void ctlDay::mousePressEvent(QMouseEvent *event)
{
    reportFailures(FailureCode, [this, event] { m_mouse->Press(event); });
}

void ctlDay::mouseReleaseEvent(QMouseEvent *event)
{
    reportFailures(FailureCode, [this, event] { m_mouse->Release(event); });
}

void ctlDay::mouseMoveEvent(QMouseEvent *event)
{
    reportFailures(FailureCode, [this, event] { m_mouse->Move(event); });
}

void ctlDay::mouseDoubleClickEvent(QMouseEvent *event)
{
    reportFailures(FailureCode, [this, event] { m_mouse->DoubleClick(event); });
}

void ctlDay::wheelEvent(QWheelEvent *event)
{
    m_scroller->Wheel(event);
}

void ctlDay::SetCapture(qint16 entryIndex)
{
    reportFailures(FailureCode, [this, entryIndex] {
        // A row of the collection is made for it; an index beyond is error 340 unless loaded.
        const bool added = entryIndex >= 1 && entryIndex <= EntriesCount();
        m_mouse->CaptureRow(added ? MadeRow(entryIndex - 1) : m_rows(entryIndex));
        if (isVisible())
            grabMouse();
    });
}

void ctlDay::ReleaseCapture()
{
    if (!m_mouse->ReleaseRowCapture())
        return;
    if (QWidget::mouseGrabber() == this)
        releaseMouse();
}

// --- Keyboard selection ---------------------------------------------------------------------

void ctlDay::SelectEntry(qint16 index)
{
    reportFailures(FailureCode, [this, index] {
        if (index > 0) {
            Entries(index); // an unknown row fails here, as for a click the cell never had
            m_activeEntryIndex = index;
            m_scroller->ScrollIntoView(index);
        }
        SetFocusEntry(index);
    });
}

void ctlDay::SetFocusEntry(qint16 index)
{
    if (m_focusEntryIndex == index)
        return;
    m_focusEntryIndex = index;
    update();
    if (hasFocus())
        AnnounceFocus();
}

//! Tells an assistive tool where the focus is: on the selected row, or on the day itself.
void ctlDay::AnnounceFocus()
{
    QObject *focused = this;
    if (m_focusEntryIndex > 0 && m_focusEntryIndex <= EntriesCount())
        focused = Entries(m_focusEntryIndex);
    QAccessibleEvent event(focused, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

void ctlDay::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    if (m_focusEntryIndex > 0)
        AnnounceFocus(); // the widget's own announcement names the day
}

void ctlDay::hideEvent(QHideEvent *)
{
    ReleaseCapture();
}

// --- Events and painting ---------------------------------------------------------------------

bool ctlDay::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip)
        return m_mouse->ShowHoverText(static_cast<QHelpEvent *>(event));
    return QWidget::event(event);
}

void ctlDay::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange && m_header) {
        reportFailures(FailureCode, [this] {
            m_header->setFont(font());
            for (int index : m_rows.indexes())
                m_rows(index)->setFont(font());
            update();
        });
    }
    QWidget::changeEvent(event);
}

void ctlDay::paintEvent(QPaintEvent *event)
{
    reportFailures(FailureCode, [this, event] { kvDayCellPainter(*this).Paint(event); });
}
