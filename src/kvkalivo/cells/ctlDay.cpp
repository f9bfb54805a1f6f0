#include "ctlDay.h"

#include "ctlDayAccessible.h"
#include "kvErrorReporting.h"
#include "kvFaultSite.h"
#include "kvFormat.h"
#include "kvIconCatalogue.h"
#include "kvInt16.h"
#include "kvOleColor.h"
#include "kvPropertyBag.h"
#include "kvRuntimeError.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QToolTip>
#include <QWheelEvent>

#include <cmath>
#include <limits>

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

// To the nearest integer, halves to the even neighbour; out of range is error 6 ("Überlauf").
qint32 CLng(double value)
{
    const double rounded = std::nearbyint(value);
    if (!std::isfinite(rounded) || rounded < std::numeric_limits<qint32>::min()
        || rounded > std::numeric_limits<qint32>::max()) {
        throw kvRuntimeError::overflow();
    }
    return qint32(rounded);
}

QString entryKey(int index)
{
    return QString::number(index) + u'_';
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

    m_vScroll = new QScrollBar(Qt::Vertical, this);
    m_vScroll->setObjectName(QStringLiteral("VScroll"));
    m_vScroll->setRange(0, 0);
    m_vScroll->setSingleStep(1);
    m_vScroll->setPageStep(1);
    m_vScroll->resize(style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, m_vScroll),
                      m_vScroll->height());
    m_vScroll->hide();
    // Clicks, keys and dragging all scroll the rows; valueChanged covers every one of them.
    connect(m_vScroll, &QScrollBar::valueChanged, this, [this] {
        reportFailures(FailureCode, [this] { Scrolling(); });
    });
}

ctlDay::~ctlDay()
{
    reportFailures(TerminationFailureCode, [this] {
        KV_FAULT_SITE("ctlDay.Terminate", 0);
        ReleaseCapture();
        UnloadRows();
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
        OnEntryMouseUp(index, button, shift, x, y);
    });
    connect(row, &ctlEntry::DblClick, this, [this, index] {
        reportFailures(FailureCode, [this, index] { Q_EMIT EntryDblClick(index); });
    });
    connect(row, &ctlEntry::MouseMove, this, [this, index](qint16, qint16, float x, float y) {
        OnEntryPointer(index, x, y, false);
    });
    connect(row, &ctlEntry::MouseDown, this, [this, index](qint16, qint16, float x, float y) {
        OnEntryPointer(index, x, y, true);
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
        m_lastRowIndex = kvInt16::add(m_lastRowIndex, 1);
        if (m_lastRowIndex == m_reservedRowIndex)
            m_lastRowIndex = kvInt16::add(m_lastRowIndex, 1);
        const qint16 index = m_lastRowIndex;

        ctlEntry *row = m_rows.Load(index);
        if (!m_entries)
            m_entries.emplace();
        m_entries->rows.append(row);
        m_entries->byKey.insert(entryKey(index), row);

        if (m_rows.Count() >= 3) {
            qint16 previous = kvInt16::subtract(index, 1);
            if (previous == m_reservedRowIndex)
                previous = kvInt16::subtract(index, 2);
            m_rows(previous)->setShowLineSeperator(true);
        }

        row->Init(dateId, index, Format(dateBegin, QStringLiteral("hh:nn")), dateBegin, dateEnd,
                  text, remark, document, imgId, backColor, foreColor);
        row->Move(0, m_nextRowTop, InnerWidth(), row->Height());
        row->setVisible(true);
        m_nextRowTop += row->Height();

        if (m_nextRowTop > InnerHeight()) {
            m_vScroll->setVisible(true);
            m_vScroll->setMaximum(kvInt16::add(m_vScroll->maximum(), 1));
            m_vScroll->raise();
        }
        if (imgId > 0)
            AddIcon(imgId);
        update();
    });
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
        UnloadRows();
        m_entries.reset();
        SetFocusEntry(0);
        m_lastRowIndex = 0;
        m_reservedRowIndex = 0;
        m_nextRowTop = m_header->Height();
        m_vScroll->hide();
        m_vScroll->setMaximum(0);
        while (m_images.size() > 1)
            m_images.removeLast();
        update();
    });
}

void ctlDay::UnloadRows()
{
    // An unloaded row lets go of the mouse, as a destroyed window loses its capture.
    ReleaseCapture();
    m_pressCapture.reset();
    if (!m_entries)
        return;
    const QList<ctlEntry *> rows = m_entries->rows;
    m_entries->rows.clear();
    m_entries->byKey.clear();
    for (ctlEntry *row : rows)
        m_rows.Unload(row->property("Index").toInt());
}

ctlEntry *ctlDay::Entries(qint16 index) const
{
    if (m_entries) {
        if (ctlEntry *row = m_entries->byKey.value(entryKey(index)))
            return row;
    }
    throw unknownKey();
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
        setContentsMargins(border, border, border, border);
        Resize(); // the inner area changed size although the cell did not
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

QPointF ctlDay::ToInner(QPointF widgetPos) const
{
    return widgetPos - QPointF(contentsRect().topLeft());
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
        Resize();
}

void ctlDay::resizeEvent(QResizeEvent *)
{
    reportFailures(FailureCode, [this] { SyncLayout(); });
}

void ctlDay::Resize()
{
    m_laidOutSize = size();
    const int innerWidth = InnerWidth();
    const int innerHeight = InnerHeight();
    m_header->Move(0, 0, innerWidth, m_header->Height());
    m_nextRowTop = m_header->Height();
    m_vScroll->setMaximum(0);

    for (qsizetype i = 0; i < EntriesCount(); ++i) {
        ctlEntry *row = m_entries->rows.at(i);
        row->setTop(m_nextRowTop);
        row->setWidth(innerWidth);
        row->setHeight(RowHeight);
        m_nextRowTop += row->Height();
        if (m_nextRowTop > innerHeight)
            m_vScroll->setMaximum(kvInt16::add(m_vScroll->maximum(), 1));
    }

    // Rows that overflow the cell show the bar; an empty cell lower than its header never
    // shows it, though its header alone overflows.
    PlaceScrollBar(m_nextRowTop > innerHeight && EntriesCount() > 0);
    m_header->setWidth(innerWidth);

    const int width = m_images.constFirst().Geometry.width();
    for (qsizetype k = 1; k < m_images.size(); ++k)
        m_images[k].Geometry.moveLeft(IconsLeft + int(k) * width);
    update();
}

void ctlDay::PlaceScrollBar(bool visible)
{
    const QRect inner = contentsRect();
    const int width = m_vScroll->width();
    // A cell too low for the bar gets one of height 0 rather than a failure.
    m_vScroll->setGeometry(inner.left() + inner.width() - width, inner.top() + ScrollBarTop,
                           width, qMax(0, inner.height() - 16 - 1));
    m_vScroll->setVisible(visible);
}

void ctlDay::Scrolling()
{
    const qint16 headerHeight = kvInt16::fromInt(m_header->Height());
    if (!m_entries) {
        m_vScroll->hide();
        return;
    }
    if (m_entries->rows.isEmpty())
        return;
    const qint16 rowHeight = kvInt16::fromInt(Entries(1)->Height());
    const qint16 offset = kvInt16::multiply(m_vScroll->value(), rowHeight);
    for (qsizetype i = 0; i < m_entries->rows.size(); ++i) {
        const qint16 top = kvInt16::add(kvInt16::multiply(int(i), rowHeight), headerHeight);
        m_entries->rows.at(i)->setTop(kvInt16::subtract(top, offset));
    }
    update();
}

// --- Mouse -----------------------------------------------------------------------------------

//! What lies under \a innerPos, topmost first: icons, the header, the rows, the background.
ctlDay::MouseTarget ctlDay::HitTest(QPointF innerPos) const
{
    for (qsizetype k = m_images.size() - 1; k >= 1; --k) {
        const Image &icon = m_images.at(k);
        if (icon.Visible && QRectF(icon.Geometry).contains(innerPos))
            return {Area::Icon, {}};
    }
    const auto over = [innerPos](const ctlEntry *row) {
        return row->Visible()
            && row->HitTest(innerPos - QPointF(row->geometry().topLeft())) != ctlEntry::Part::None;
    };
    if (over(m_header))
        return {Area::Header, m_header};
    if (m_entries) {
        for (ctlEntry *row : m_entries->rows) {
            if (over(row))
                return {Area::Row, row};
        }
    }
    return {Area::Background, {}};
}

//! A captured mouse goes to its row whatever lies under it.
ctlDay::MouseTarget ctlDay::TargetAt(QPointF innerPos) const
{
    if (m_rowCapture)
        return *m_rowCapture;
    if (m_pressCapture)
        return *m_pressCapture;
    return HitTest(innerPos);
}

/*!
    The first button pressed fixes the target that gets every move and release until the last
    button is released: the row or cell under a pressed button keeps the mouse.
*/
ctlDay::MouseTarget ctlDay::PressTarget(QMouseEvent *event, QPointF innerPos)
{
    const bool firstButton = (event->buttons() & ~event->button()) == Qt::NoButton;
    if (firstButton || !m_pressCapture)
        m_pressCapture = m_rowCapture ? *m_rowCapture : HitTest(innerPos);
    return *m_pressCapture;
}

void ctlDay::mousePressEvent(QMouseEvent *event)
{
    reportFailures(FailureCode, [this, event] {
        const QPointF pos = ToInner(event->position());
        const MouseTarget target = PressTarget(event, pos);
        if (target.area == Area::Row || target.area == Area::Header) {
            ctlEntry *row = target.row;
            if (row)
                row->HandleMousePress(pos - QPointF(row->geometry().topLeft()), event->button(),
                                      event->modifiers());
        }
    });
}

void ctlDay::mouseReleaseEvent(QMouseEvent *event)
{
    reportFailures(FailureCode, [this, event] {
        const QPointF pos = ToInner(event->position());
        const MouseTarget target = TargetAt(pos);
        if (event->buttons() == Qt::NoButton)
            m_pressCapture.reset();
        switch (target.area) {
        case Area::Row:
        case Area::Header:
            if (ctlEntry *row = target.row)
                row->HandleMouseRelease(pos - QPointF(row->geometry().topLeft()), event->button(),
                                        event->modifiers());
            break;
        case Area::Background:
            SetFocusEntry(0);
            Q_EMIT DayMouseUp(ctlEntry::VbButton(event->button()),
                              ctlEntry::VbShift(event->modifiers()), float(pos.x()), float(pos.y()));
            break;
        case Area::Icon:
            break;
        }
    });
}

void ctlDay::mouseMoveEvent(QMouseEvent *event)
{
    reportFailures(FailureCode, [this, event] {
        if (event->buttons() == Qt::NoButton)
            m_pressCapture.reset(); // a release that never reached the cell
        const QPointF pos = ToInner(event->position());
        const MouseTarget target = TargetAt(pos);
        if (target.area != Area::Row)
            return;
        if (ctlEntry *row = target.row)
            row->HandleMouseMove(pos - QPointF(row->geometry().topLeft()), event->buttons(),
                                 event->modifiers());
    });
}

void ctlDay::mouseDoubleClickEvent(QMouseEvent *event)
{
    reportFailures(FailureCode, [this, event] {
        const QPointF pos = ToInner(event->position());
        const MouseTarget target = PressTarget(event, pos); // it is the second press
        switch (target.area) {
        case Area::Row:
        case Area::Header:
            if (ctlEntry *row = target.row)
                row->HandleDoubleClick(pos - QPointF(row->geometry().topLeft()));
            break;
        case Area::Background:
        case Area::Icon:
            Q_EMIT DayDblClick();
            break;
        }
    });
}

//! The wheel anywhere over the cell scrolls it as over VScroll: by whole rows.
void ctlDay::wheelEvent(QWheelEvent *event)
{
    if (m_vScroll->isVisible())
        QCoreApplication::sendEvent(m_vScroll, event);
    else
        event->ignore();
}

void ctlDay::OnEntryMouseUp(qint16 index, qint16 button, qint16 shift, float x, float y)
{
    reportFailures(FailureCode, [&] {
        m_activeEntryIndex = index;
        SetFocusEntry(index);
        Q_EMIT EntryMouseUp(index, button, shift, x, y);
    });
}

//! EntryMouseMove and EntryMouseDown: the position in the cell and the row's rectangle.
void ctlDay::OnEntryPointer(qint16 index, float x, float y, bool pressed)
{
    reportFailures(FailureCode, [&] {
        const ctlEntry *row = m_rows(index);
        const qint32 cellX = CLng(row->Left() + double(x));
        const qint32 cellY = CLng(row->Top() + double(y));
        const qint32 left = CLng(row->Left());
        const qint32 top = CLng(row->Top());
        const qint32 width = CLng(row->Width());
        const qint32 height = CLng(row->Height());
        if (pressed)
            Q_EMIT EntryMouseDown(index, cellX, cellY, left, top, width, height);
        else
            Q_EMIT EntryMouseMove(index, cellX, cellY, left, top, width, height);
    });
}

void ctlDay::SetCapture(qint16 entryIndex)
{
    reportFailures(FailureCode, [this, entryIndex] {
        m_rowCapture = MouseTarget{Area::Row, m_rows(entryIndex)};
        if (isVisible())
            grabMouse();
    });
}

void ctlDay::ReleaseCapture()
{
    if (!m_rowCapture)
        return;
    m_rowCapture.reset();
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
            ScrollIntoView(index);
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

//! Scrolls by whole rows until row \a index lies wholly below the header.
void ctlDay::ScrollIntoView(qint16 index)
{
    if (!m_vScroll->isVisible())
        return;
    const int rowHeight = std::max(1, Entries(1)->Height());
    const int headerHeight = m_header->Height();
    const int shownRows = std::max(1, (InnerHeight() - headerHeight) / rowHeight);
    const int top = index - 1;
    int value = m_vScroll->value();
    if (top < value)
        value = top;
    else if (top >= value + shownRows)
        value = top - shownRows + 1;
    m_vScroll->setValue(value);
}

void ctlDay::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    if (m_focusEntryIndex > 0)
        AnnounceFocus(); // the widget's own announcement names the day
}

//! The focus frames: round the day, and round its selected row.
void ctlDay::PaintFocusFrames(QPainter &painter) const
{
    painter.save();
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(0, 0, InnerWidth(), InnerHeight()).adjusted(1, 1, -1, -1));
    if (m_focusEntryIndex > 0 && m_focusEntryIndex <= EntriesCount()) {
        const QRect row = Entries(m_focusEntryIndex)->geometry();
        const QRect belowHeader(0, m_header->Height(), InnerWidth(), InnerHeight());
        painter.setClipRect(belowHeader, Qt::IntersectClip);
        painter.drawRect(QRectF(row).adjusted(1, 1, -1, -1));
    }
    painter.restore();
}

void ctlDay::hideEvent(QHideEvent *)
{
    ReleaseCapture();
}

// --- Events and painting ---------------------------------------------------------------------

bool ctlDay::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip)
        return ShowHoverText(static_cast<QHelpEvent *>(event));
    return QWidget::event(event);
}

//! The hover text of the label under the pointer: a holiday's name over its day number.
bool ctlDay::ShowHoverText(QHelpEvent *event)
{
    const QPointF pos = ToInner(event->pos());
    const MouseTarget target = HitTest(pos);
    if (ctlEntry *row = target.row) {
        const QPointF rowPos = pos - QPointF(row->geometry().topLeft());
        const ctlEntry::Part part = row->HitTest(rowPos);
        const ctlEntry::Label &label =
            part == ctlEntry::Part::TimeLabel ? row->lblTime() : row->lblText();
        if ((part == ctlEntry::Part::TimeLabel || part == ctlEntry::Part::TextLabel)
            && !label.ToolTipText.isEmpty()) {
            const QRect area = label.Geometry.translated(row->geometry().topLeft())
                                   .translated(contentsRect().topLeft());
            QToolTip::showText(event->globalPos(), label.ToolTipText, this, area);
            return true;
        }
    }
    QToolTip::hideText();
    event->ignore();
    return true;
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
    reportFailures(FailureCode, [this, event] {
        QPainter painter(this);
        const QPalette &colours = palette();
        painter.fillRect(event->rect(), kvOleColor::ToQColor(m_backColor, colours));
        if (m_borderVisible) {
            painter.setPen(colours.color(QPalette::Shadow));
            painter.drawRect(rect().adjusted(0, 0, -1, -1));
        }

        const QRect inner = contentsRect();
        painter.setClipRect(inner & event->rect());
        painter.translate(inner.topLeft());
        const QRect dirty = event->rect().translated(-inner.topLeft());
        if (m_entries) {
            for (const ctlEntry *row : m_entries->rows) {
                if (row->geometry().intersects(dirty))
                    row->Paint(painter, colours);
            }
        }
        m_header->Paint(painter, colours); // rows scrolled above it pass beneath the header
        PaintIcons(painter);
        if (hasFocus())
            PaintFocusFrames(painter);
    });
}

//! The icons belong to the header row: a 16-pixel picture is cut to the 15-pixel header
//! rather than spilling onto the first appointment.
void ctlDay::PaintIcons(QPainter &painter) const
{
    if (m_images.size() < 2)
        return;
    painter.save();
    painter.setClipRect(m_header->geometry(), Qt::IntersectClip);
    for (qsizetype k = 1; k < m_images.size(); ++k) {
        const Image &icon = m_images.at(k);
        if (icon.Visible && !icon.Picture.isNull())
            painter.drawPixmap(icon.Geometry.topLeft(), icon.Picture);
    }
    painter.restore();
}
