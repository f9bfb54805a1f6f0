#include "ctlEntry.h"

#include "kvOleColor.h"
#include "kvPropertyBag.h"
#include "kvShapedTextCache.h"

#include <QPainter>
#include <QPalette>
#include <QStaticText>

namespace {

// A new row is one pixel high, a placeholder that Init always replaces.
constexpr int CreationHeight = 1;

constexpr int TimeIndent = 1;

// Half-open, so that the pixel column 35 belongs to lblText and not to lblTime as well.
bool containsPoint(const QRect &rect, QPointF point)
{
    return point.x() >= rect.left() && point.x() < rect.left() + rect.width()
        && point.y() >= rect.top() && point.y() < rect.top() + rect.height();
}

} // namespace

ctlEntry::ctlEntry(QObject *parent)
    : QObject(parent)
{
    m_lblTime.Geometry = QRect(0, 0, TimeColumnWidth, LabelHeight);
    m_lblText.Geometry = QRect(TimeColumnWidth, 0, 0, LabelHeight);
    m_lblTime.BackColor = m_lblText.BackColor = m_backColor;
    m_lblTime.ForeColor = m_lblText.ForeColor = m_foreColor;
    m_linSeperator = Line{0, SeparatorY, 0, SeparatorY, false};
    m_geometry = QRect(0, 0, 0, CreationHeight);
}

ctlEntry::~ctlEntry() = default;

void ctlEntry::Init(qint32 dateId, qint16 listindex, const QString &time, const kvDate &dateBegin,
                    const kvDate &dateEnd, const QString &text, const QString &remark,
                    const QString &document, qint16 imgId, uint backColor, uint foreColor)
{
    m_backColor = backColor;
    m_remark = remark;
    m_document = document;
    m_dateBegin = dateBegin;
    m_dateEnd = dateEnd;
    m_text = text;
    m_imgId = imgId;

    m_lblTime.Caption = time == MidnightTime ? QString() : time;
    m_rowBackColor = backColor;
    // setSize() lays out only on a real change of size; laying out on an unchanged height as
    // well keeps a second Init of the same row from showing the previous caption.
    if (!setSize(Width(), m_lblText.Geometry.height() + 1))
        Resize();

    m_lblTime.BackColor = m_lblText.BackColor = backColor;
    m_lblTime.ForeColor = m_lblText.ForeColor = foreColor;
    LayOutCaption(); // the overflow text

    m_dateId = dateId;
    m_listindex = listindex;
    m_lblTime.Visible = m_lblText.Visible = true;
}

void ctlEntry::setBackColor(uint color)
{
    m_backColor = color;
    m_lblTime.BackColor = m_lblText.BackColor = color;
}

void ctlEntry::setForeColor(uint color)
{
    m_foreColor = color;
    m_lblTime.ForeColor = m_lblText.ForeColor = color;
}

void ctlEntry::setIsActualDay(bool isActualDay)
{
    m_isActualDay = isActualDay;
    m_lblTime.Bold = !m_publicHolidayName.isEmpty() || isActualDay;
    if (!m_publicHolidayName.isEmpty())
        m_lblTime.ForeColor = HolidayColor;
}

void ctlEntry::setIsContinuedDate(bool isContinuedDate)
{
    m_isContinuedDate = isContinuedDate;
    m_lblTime.Caption = ContinuedMarker.toString(); // deliberately, for False as well
}

void ctlEntry::setPublicHolidayName(const QString &name)
{
    m_publicHolidayName = name;
    ApplyHolidayLook();
}

void ctlEntry::ApplyHolidayLook()
{
    const bool holiday = !m_publicHolidayName.isEmpty();
    m_lblTime.Bold = holiday;
    m_lblTime.ForeColor = holiday ? HolidayColor : m_foreColor;
    m_lblTime.ToolTipText = m_publicHolidayName;
}

void ctlEntry::setShowLineSeperator(bool show)
{
    m_linSeperator.Visible = show;
}

// --- Geometry --------------------------------------------------------------------------------

void ctlEntry::Move(int left, int top, int width, int height)
{
    m_geometry.moveTo(left, top);
    setSize(width, height);
}

void ctlEntry::setLeft(int left)
{
    m_geometry.moveLeft(left);
}

void ctlEntry::setTop(int top)
{
    m_geometry.moveTop(top);
}

void ctlEntry::setWidth(int width)
{
    setSize(width, Height());
}

void ctlEntry::setHeight(int height)
{
    setSize(Width(), height);
}

//! Returns whether the size changed, that is whether Resize ran.
bool ctlEntry::setSize(int width, int height)
{
    const QSize size(qMax(0, width), qMax(0, height));
    if (size == m_geometry.size())
        return false;
    m_geometry.setSize(size);
    Resize();
    return true;
}

void ctlEntry::setFont(const QFont &font)
{
    if (font == m_font)
        return;
    m_font = font;
    m_texts.reset();
    m_labelTexts[0].reset();
    m_labelTexts[1].reset();
    m_shapedTime = m_shapedText = ShapedCaption();
    LayOutCaption();
}

void ctlEntry::Resize()
{
    const int width = Width();
    if (width > TimeColumnWidth) {
        m_lblText.Geometry = QRect(TimeColumnWidth, 0, width - TimeColumnWidth,
                                   m_lblText.Geometry.height());
    }
    LayOutCaption();
    m_linSeperator.X2 = width;
}

/*!
    The overflow text and the caption depend only on Text, the font and lblText's width, so
    they are worked out when first read or painted: rows scrolled out of sight are never
    measured, and a month of rows fills without shaping any text. What is read is always
    what Init and Resize would have set at once.
*/
void ctlEntry::LayOutCaption()
{
    m_layoutPending = true;
}

void ctlEntry::EnsureLayout() const
{
    if (!m_layoutPending)
        return;
    m_layoutPending = false;
    kvShapedTextCache &texts = MeasuringTexts();
    const int room = m_lblText.Geometry.width();
    if (texts.Width(m_text) <= room) {
        m_overflowText.clear();
        m_lblText.Caption = m_text;
    } else {
        m_overflowText = m_text;
        m_lblText.Caption = texts.Shortened(m_text, room);
    }
}

//! The caption is fitted in the row's own font, whichever face its labels are drawn in.
kvShapedTextCache &ctlEntry::MeasuringTexts() const
{
    if (!m_texts)
        m_texts = kvShapedTextCache::ForFont(m_font);
    return *m_texts;
}

kvShapedTextCache &ctlEntry::LabelTexts(bool bold) const
{
    std::shared_ptr<kvShapedTextCache> &texts = m_labelTexts[bold ? 1 : 0];
    if (!texts) {
        QFont font = m_font;
        font.setBold(bold);
        texts = kvShapedTextCache::ForFont(font);
    }
    return *texts;
}

const ctlEntry::Label &ctlEntry::lblText() const
{
    EnsureLayout();
    return m_lblText;
}

QString ctlEntry::OverflowText() const
{
    EnsureLayout();
    return m_overflowText;
}

// --- Persistence -----------------------------------------------------------------------------

void ctlEntry::InitProperties()
{
    setBackColor(DefaultBackColor);
    setIsActualDay(DefaultIsActualDay);
}

void ctlEntry::ReadProperties(const kvPropertyBag &bag)
{
    setBackColor(uint(bag.ReadLong(QStringLiteral("BackColor"), qint32(DefaultBackColor))));
    setIsActualDay(bag.ReadBoolean(QStringLiteral("IsActualDay"), DefaultIsActualDay));
}

void ctlEntry::WriteProperties(kvPropertyBag &bag) const
{
    bag.WriteProperty(QStringLiteral("BackColor"), qint32(m_backColor), qint32(DefaultBackColor));
    bag.WriteProperty(QStringLiteral("IsActualDay"), m_isActualDay, DefaultIsActualDay);
}

// --- Mouse -----------------------------------------------------------------------------------

ctlEntry::Part ctlEntry::HitTest(QPointF rowPos) const
{
    if (!containsPoint(QRect(QPoint(0, 0), m_geometry.size()), rowPos))
        return Part::None;
    if (m_lblText.Visible && containsPoint(m_lblText.Geometry, rowPos))
        return Part::TextLabel;
    if (m_lblTime.Visible && containsPoint(m_lblTime.Geometry, rowPos))
        return Part::TimeLabel;
    return Part::Background;
}

const ctlEntry::Label *ctlEntry::LabelAt(Part part) const
{
    switch (part) {
    case Part::TimeLabel:
        return &m_lblTime;
    case Part::TextLabel:
        return &lblText();
    default:
        return nullptr;
    }
}

//! What the row reports for a point over \a part: a label's own coordinates are converted back.
QPointF ctlEntry::ToRowPixels(Part part, QPointF rowPos) const
{
    const Label *label = LabelAt(part);
    if (!label)
        return rowPos;
    return LabelToRow(*label, rowPos - QPointF(label->Geometry.topLeft()));
}

/*!
    X = label x + label left, Y likewise: a label position is already in pixels, so only the
    label's offset in the row is added.
*/
QPointF ctlEntry::LabelToRow(const Label &label, QPointF labelPos)
{
    constexpr double pixelsPerLabelUnit = 1.0;
    return QPointF(labelPos.x() * pixelsPerLabelUnit + label.Geometry.left(),
                   labelPos.y() * pixelsPerLabelUnit + label.Geometry.top());
}

// A point outside the row reaches it only while it holds the mouse capture; the row itself
// (its background) then receives it, as a window with the capture does.

void ctlEntry::HandleMouseMove(QPointF rowPos, Qt::MouseButtons buttons,
                               Qt::KeyboardModifiers modifiers)
{
    const QPointF pos = ToRowPixels(HitTest(rowPos), rowPos);
    Q_EMIT MouseMove(VbButton(buttons), VbShift(modifiers), float(pos.x()), float(pos.y()));
}

void ctlEntry::HandleMousePress(QPointF rowPos, Qt::MouseButton button,
                                Qt::KeyboardModifiers modifiers)
{
    if (LabelAt(HitTest(rowPos)))
        return; // the labels' MouseDown is not passed on
    Q_EMIT MouseDown(VbButton(button), VbShift(modifiers), float(rowPos.x()), float(rowPos.y()));
}

void ctlEntry::HandleMouseRelease(QPointF rowPos, Qt::MouseButton button,
                                  Qt::KeyboardModifiers modifiers)
{
    const QPointF pos = ToRowPixels(HitTest(rowPos), rowPos);
    Q_EMIT MouseUp(VbButton(button), VbShift(modifiers), float(pos.x()), float(pos.y()));
}

void ctlEntry::HandleDoubleClick(QPointF rowPos)
{
    if (const Label *label = LabelAt(HitTest(rowPos)))
        Q_EMIT DblClick(m_dateId, m_dateBegin, m_dateEnd, label->Caption, m_remark);
}

qint16 ctlEntry::VbButton(Qt::MouseButtons buttons)
{
    qint16 result = 0;
    if (buttons & Qt::LeftButton)
        result |= 1;
    if (buttons & Qt::RightButton)
        result |= 2;
    if (buttons & Qt::MiddleButton)
        result |= 4;
    return result;
}

qint16 ctlEntry::VbShift(Qt::KeyboardModifiers modifiers)
{
    qint16 result = 0;
    if (modifiers & Qt::ShiftModifier)
        result |= 1;
    if (modifiers & Qt::ControlModifier)
        result |= 2;
    if (modifiers & Qt::AltModifier)
        result |= 4;
    return result;
}

// --- Painting --------------------------------------------------------------------------------

void ctlEntry::Paint(QPainter &painter, const QPalette &palette) const
{
    if (!m_visible || m_geometry.isEmpty())
        return;
    painter.fillRect(m_geometry, kvOleColor::ToQColor(m_rowBackColor, palette));
    PaintLabel(painter, palette, m_lblTime);
    PaintLabel(painter, palette, lblText());
    if (m_linSeperator.Visible) {
        // linSeperator lies at y 16, below a row of 15 or 16 pixels; it is drawn on the row's
        // last pixel line, the one pixel that Init leaves below the labels for it.
        // The pixels of a one-pixel line from X1 to X2 - 1, filled: a fraction of a line's cost.
        const int y = Top() + qMin(m_linSeperator.Y1, Height() - 1);
        const QRect line(Left() + m_linSeperator.X1, y, m_linSeperator.X2 - m_linSeperator.X1, 1);
        painter.fillRect(line, palette.color(QPalette::Midlight));
    }
}

void ctlEntry::PaintLabel(QPainter &painter, const QPalette &palette, const Label &label) const
{
    if (!label.Visible)
        return;
    const QRect rect = label.Geometry.translated(m_geometry.topLeft()).intersected(m_geometry);
    if (rect.isEmpty())
        return;
    if (label.BackColor != m_rowBackColor) // else the row's background shows already
        painter.fillRect(rect, kvOleColor::ToQColor(label.BackColor, palette));
    if (label.Caption.isEmpty())
        return;
    QFont font = m_font;
    font.setBold(label.Bold);
    painter.setFont(font);
    painter.setPen(kvOleColor::ToQColor(label.ForeColor, palette));
    // The time column starts at the cell's edge; one pixel keeps its digits off the border.
    // lblText gets no indent: a caption that fits its label exactly must show whole.
    const int indent = &label == &m_lblTime ? TimeIndent : 0;
    const QRect textRect = rect.adjusted(indent, 0, 0, 0);
    const QStaticText &text = Shaped(label);
    const QSizeF size = text.size();
    const QPointF topLeft(textRect.left(), textRect.top() + (textRect.height() - size.height()) / 2);
    // Clipped to its label, as a row partly under the header or below the cell's edge is.
    const bool fits = QRectF(textRect).contains(QRectF(topLeft, size));
    if (!fits) {
        painter.save();
        painter.setClipRect(textRect, Qt::IntersectClip);
    }
    painter.drawStaticText(topLeft, text);
    if (!fits)
        painter.restore();
}

const QStaticText &ctlEntry::Shaped(const Label &label) const
{
    ShapedCaption &shaped = &label == &m_lblTime ? m_shapedTime : m_shapedText;
    if (shaped.text.text() != label.Caption || shaped.bold != label.Bold)
        shaped = ShapedCaption{LabelTexts(label.Bold).Prepared(label.Caption), label.Bold};
    return shaped.text;
}
