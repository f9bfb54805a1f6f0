#include "kvCalendarPage.h"

#include "kvCalendarWeek.h"
#include "kvFormat.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPaintDevice>
#include <QPainter>
#include <QPen>

namespace {

// Distances in millimetres.
constexpr double TitleHeight = 12.0;
constexpr double WeekdayHeight = 7.0;
constexpr double FooterHeight = 11.0;
constexpr double WeekColumnWidth = 14.0;
constexpr double Padding = 1.2;
constexpr double LineWidth = 0.25;
constexpr double ThinLineWidth = 0.12;
constexpr double TimeGap = 1.2;
constexpr double WrapIndent = 2.5;

const QColor Ink(Qt::black);
const QColor OutsideMonthInk(0x55, 0x55, 0x55);
const QColor OutsideMonthFill(0xF0, 0xF0, 0xF0);
const QColor WeekdayFill(0xE4, 0xE4, 0xE4);
const QColor SeparatorInk(0x99, 0x99, 0x99);

//! Type sizes in points; the week view has room for larger type.
struct TypeSizes
{
    double DateLabel;
    double Holiday;
    double Entry;
    int LinesPerEntry;  //!< a name wraps onto at most this many lines
};

constexpr TypeSizes WeekSizes{12.0, 10.0, 9.0, 4};
constexpr TypeSizes MonthSizes{10.0, 8.0, 8.0, 2};
constexpr double CaptionSize = 18.0;
constexpr double WeekdaySize = 10.0;
constexpr double WeekNumberSize = 9.0;
constexpr double FootnoteSize = 9.0;

double millimetres(const QPainter &painter, double mm)
{
    return mm * painter.device()->logicalDpiX() / 25.4;
}

QFont pageFont(double points, bool bold = false, bool italic = false)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setStyleHint(QFont::SansSerif);
    // no ligatures: "fl" must stay two letters for searching and copying from the PDF
    font.setStyleStrategy(QFont::PreferNoShaping);
    font.setPointSizeF(points);
    font.setBold(bold);
    font.setItalic(italic);
    return font;
}

QPen linePen(const QPainter &painter, const QColor &color, double widthMm)
{
    QPen pen(color, millimetres(painter, widthMm));
    pen.setJoinStyle(Qt::MiterJoin);
    return pen;
}

//! Draws \a text in \a rect, shortened with "…" when it does not fit the width.
void drawElided(QPainter &painter, const QRectF &rect, const QString &text, int alignment)
{
    const QFontMetricsF metrics(painter.font(), painter.device());
    const QString shown = metrics.elidedText(text.simplified(), Qt::ElideRight, rect.width());
    painter.drawText(rect, alignment | Qt::TextSingleLine, shown);
}

void paintCaption(QPainter &painter, const QRectF &rect, const QString &caption)
{
    painter.setFont(pageFont(CaptionSize, true));
    painter.setPen(Ink);
    drawElided(painter, rect, caption, Qt::AlignCenter);
}

void paintWeekdays(QPainter &painter, const QRectF &band, const QStringList &names)
{
    painter.fillRect(band, WeekdayFill);
    painter.setPen(linePen(painter, Ink, LineWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(band);
    painter.setFont(pageFont(WeekdaySize, true));
    const double width = band.width() / 7;
    for (int column = 0; column < names.size() && column < 7; ++column) {
        const QRectF cell(band.left() + column * width, band.top(), width, band.height());
        drawElided(painter, cell.adjusted(millimetres(painter, Padding), 0, -millimetres(painter, Padding), 0),
                   names.at(column), Qt::AlignCenter);
    }
}

void paintWeekNumber(QPainter &painter, const QRectF &rect, const kvDate &monday)
{
    painter.setFont(pageFont(WeekNumberSize, true));
    painter.setPen(Ink);
    const double pad = millimetres(painter, Padding);
    painter.drawText(rect.adjusted(0, pad, -pad, 0), Qt::AlignRight | Qt::AlignTop,
                     QStringLiteral("%1. KW").arg(kv::GetCalendarWeek(monday)));
}

//! The holiday name right of the date label when it fits there, else on a line of its own.
double paintHoliday(QPainter &painter, const QRectF &header, double labelWidth, const QString &name,
                    const TypeSizes &sizes)
{
    const QFont font = pageFont(sizes.Holiday, false, true);
    const QFontMetricsF metrics(font, painter.device());
    painter.setFont(font);
    painter.setPen(Ink);
    const double besideLabel = header.width() - labelWidth - millimetres(painter, 2.0);
    if (metrics.horizontalAdvance(name) <= besideLabel) {
        painter.drawText(header, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, name);
        return header.bottom();
    }
    const QRectF own(header.left(), header.bottom(), header.width(), metrics.height());
    drawElided(painter, own, name, Qt::AlignLeft | Qt::AlignVCenter);
    return own.bottom();
}

//! Draws the date label and the holiday name; returns where the appointment lines begin.
double paintDayHeader(QPainter &painter, const QRectF &inner, const kvCalendarPage::Day &day,
                      const TypeSizes &sizes)
{
    const QFont labelFont = pageFont(sizes.DateLabel, true);
    const QFontMetricsF labelMetrics(labelFont, painter.device());
    const QString label = kvCalendarPage::DateLabel(day.Date);
    const QRectF header(inner.left(), inner.top(), inner.width(), labelMetrics.height());
    painter.setFont(labelFont);
    painter.setPen(day.OutsideMonth ? OutsideMonthInk : Ink);
    painter.drawText(header, Qt::AlignLeft | Qt::AlignVCenter, label);

    double bottom = header.bottom();
    if (!day.HolidayName.isEmpty())
        bottom = paintHoliday(painter, header, labelMetrics.horizontalAdvance(label), day.HolidayName, sizes);

    const double lineY = bottom + millimetres(painter, 0.5);
    painter.setPen(linePen(painter, SeparatorInk, ThinLineWidth));
    painter.drawLine(QPointF(inner.left(), lineY), QPointF(inner.right(), lineY));
    return lineY + millimetres(painter, 0.6);
}

//! Takes the next line of \a width from \a rest: up to the last space that fits, or, for a
//! word longer than the line, as much of the word as fits with a hyphen.
QString takeLine(QString &rest, const QFontMetricsF &metrics, double width)
{
    int fit = 0;
    while (fit < rest.size() && metrics.horizontalAdvance(rest.left(fit + 1)) <= width)
        ++fit;
    const int space = int(rest.lastIndexOf(QLatin1Char(' '), fit));
    if (space > 0) {
        const QString line = rest.left(space);
        rest = rest.mid(space + 1);
        return line;
    }
    int part = qMax(fit, 1);
    while (part > 1 && metrics.horizontalAdvance(rest.left(part) + QLatin1Char('-')) > width)
        --part;
    const QString line = rest.left(part) + QLatin1Char('-');
    rest = rest.mid(part);
    return line;
}

/*!
    Where an appointment's lines go in a box: the first line right of the time column (at the
    left edge for an all-day appointment, which shows no time), the lines it wraps onto from a
    small indent, so that they get nearly the whole width.
*/
struct EntryColumns
{
    double TimeWidth;
    double Indent;
    double Width;  //!< of the box's text area

    double LineLeft(int line) const { return line == 0 ? TimeWidth : Indent; }
    double LineWidth(int line) const { return Width - LineLeft(line); }
    EntryColumns For(const QString &time) const { return {time.isEmpty() ? 0.0 : TimeWidth, Indent, Width}; }
};

bool firstWordFits(const QString &text, const QFontMetricsF &metrics, double width)
{
    return metrics.horizontalAdvance(text.section(QLatin1Char(' '), 0, 0)) <= width;
}

/*!
    \a text in at most \a maxLines lines; the last is shortened with "…". A first word too long
    for the first line starts on the second, which is wider.
*/
QStringList wrapped(const QString &text, const QFontMetricsF &metrics, const EntryColumns &columns,
                    int maxLines)
{
    QStringList lines;
    QString rest = text.simplified();
    while (int(lines.size()) < maxLines - 1) {
        const int line = int(lines.size());
        if (metrics.horizontalAdvance(rest) <= columns.LineWidth(line))
            break;
        if (line == 0 && !firstWordFits(rest, metrics, columns.LineWidth(0))
            && firstWordFits(rest, metrics, columns.LineWidth(1)))
            lines.append(QString());
        else
            lines.append(takeLine(rest, metrics, columns.LineWidth(line)));
    }
    lines.append(metrics.elidedText(rest, Qt::ElideRight, columns.LineWidth(int(lines.size()))));
    return lines;
}

struct EntryLines
{
    QString Time;
    QStringList Lines;
};

QList<EntryLines> layOutEntries(const QList<kvCalendarPage::Entry> &entries, const QFontMetricsF &metrics,
                                const EntryColumns &columns, int maxLinesEach)
{
    QList<EntryLines> laidOut;
    for (const kvCalendarPage::Entry &entry : entries)
        laidOut.append({entry.Time, wrapped(entry.Text, metrics, columns.For(entry.Time), maxLinesEach)});
    return laidOut;
}

int lineCount(const QList<EntryLines> &entries)
{
    int count = 0;
    for (const EntryLines &entry : entries)
        count += int(entry.Lines.size());
    return count;
}

//! Names wrap onto further lines while the box has room for all of them, else one line each.
QList<EntryLines> fitEntries(const QList<kvCalendarPage::Entry> &entries, const QFontMetricsF &metrics,
                             const EntryColumns &columns, int capacity, int maxLinesEach)
{
    QList<EntryLines> laidOut = layOutEntries(entries, metrics, columns, maxLinesEach);
    if (maxLinesEach > 1 && lineCount(laidOut) > capacity)
        laidOut = layOutEntries(entries, metrics, columns, 1);
    return laidOut;
}

//! Paints \a entry from line \a first of \a area on; returns the next free line.
int paintEntry(QPainter &painter, const QRectF &area, double lineHeight, const EntryColumns &boxColumns,
               int first, const EntryLines &entry)
{
    const EntryColumns columns = boxColumns.For(entry.Time);
    const auto lineRect = [&](int line, double left, double width) {
        return QRectF(area.left() + left, area.top() + (first + line) * lineHeight, width, lineHeight);
    };
    constexpr int flags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine;
    painter.drawText(lineRect(0, 0, columns.TimeWidth), flags, entry.Time);
    for (int line = 0; line < entry.Lines.size(); ++line)
        painter.drawText(lineRect(line, columns.LineLeft(line), columns.LineWidth(line)), flags,
                         entry.Lines.at(line));
    return first + int(entry.Lines.size());
}

//! One line or more per appointment; a box that cannot hold them all ends with "+ N weitere".
void paintEntries(QPainter &painter, const QRectF &area, const QList<kvCalendarPage::Entry> &entries,
                  const TypeSizes &sizes)
{
    const QFont font = pageFont(sizes.Entry);
    const QFontMetricsF metrics(font, painter.device());
    const double lineHeight = metrics.lineSpacing();
    const int capacity = int(area.height() / lineHeight);
    if (entries.isEmpty() || capacity <= 0)
        return;
    const EntryColumns columns{qMax(metrics.horizontalAdvance(QStringLiteral("00:00")),
                                    metrics.horizontalAdvance(QStringLiteral("<--")))
                                   + millimetres(painter, TimeGap),
                               millimetres(painter, WrapIndent), area.width()};
    const QList<EntryLines> laidOut = fitEntries(entries, metrics, columns, capacity, sizes.LinesPerEntry);
    const int count = int(laidOut.size());
    const int lastLine = lineCount(laidOut) <= capacity ? capacity : capacity - 1;
    painter.setFont(font);
    painter.setPen(Ink);
    int line = 0;
    int shown = 0;
    while (shown < count && line + laidOut.at(shown).Lines.size() <= lastLine)
        line = paintEntry(painter, area, lineHeight, columns, line, laidOut.at(shown++));
    if (shown < count) {
        painter.setFont(pageFont(sizes.Entry, true));
        painter.drawText(QRectF(area.left(), area.top() + line * lineHeight, area.width(), lineHeight),
                         Qt::AlignLeft | Qt::AlignVCenter, kvCalendarPage::MoreLine(count - shown));
    }
}

//! The boxes' lines, each drawn once: the outline and the lines between rows and columns.
void paintGridLines(QPainter &painter, const QRectF &grid, int rows)
{
    painter.setPen(linePen(painter, Ink, LineWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(grid);
    for (int column = 1; column < 7; ++column) {
        const double x = grid.left() + column * grid.width() / 7;
        painter.drawLine(QPointF(x, grid.top()), QPointF(x, grid.bottom()));
    }
    for (int row = 1; row < rows; ++row) {
        const double y = grid.top() + row * grid.height() / rows;
        painter.drawLine(QPointF(grid.left(), y), QPointF(grid.right(), y));
    }
}

void paintDay(QPainter &painter, const QRectF &box, const kvCalendarPage::Day &day, const TypeSizes &sizes)
{
    if (day.OutsideMonth)
        painter.fillRect(box, OutsideMonthFill);
    const double pad = millimetres(painter, Padding);
    const QRectF inner = box.adjusted(pad, pad * 0.6, -pad, -pad * 0.6);
    const double entriesTop = paintDayHeader(painter, inner, day, sizes);
    paintEntries(painter, QRectF(inner.left(), entriesTop, inner.width(), inner.bottom() - entriesTop),
                 day.Entries, sizes);
}

void paintFootnote(QPainter &painter, const QRectF &rect, const QString &footnote)
{
    painter.setPen(linePen(painter, Ink, LineWidth));
    const double lineY = rect.top() + millimetres(painter, 2.0);
    painter.drawLine(QPointF(rect.left(), lineY), QPointF(rect.right(), lineY));
    const QRectF text = rect.adjusted(0, millimetres(painter, 3.0), 0, 0);
    painter.save();
    painter.setClipRect(text);
    painter.setFont(pageFont(FootnoteSize));
    painter.setPen(Ink);
    QString lines = footnote;
    lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));  // a host may write CR LF
    painter.drawText(text, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, lines);
    painter.restore();
}

} // namespace

void kvCalendarPage::Paint(QPainter &painter, const QRectF &pageRect) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const double titleHeight = millimetres(painter, TitleHeight);
    const double weekdayHeight = millimetres(painter, WeekdayHeight);
    const double footerHeight = Footnote.isEmpty() ? 0.0 : millimetres(painter, FooterHeight);
    const QRectF grid = pageRect.adjusted(millimetres(painter, WeekColumnWidth), titleHeight + weekdayHeight,
                                          0, -footerHeight);

    paintCaption(painter, QRectF(pageRect.left(), pageRect.top(), pageRect.width(), titleHeight), Caption);
    paintWeekdays(painter, QRectF(grid.left(), grid.top() - weekdayHeight, grid.width(), weekdayHeight),
                  WeekdayNames);

    const int rows = Rows();
    const TypeSizes &sizes = IsWeek() ? WeekSizes : MonthSizes;
    const double boxWidth = grid.width() / 7;
    const double boxHeight = rows > 0 ? grid.height() / rows : 0.0;
    for (int row = 0; row < rows; ++row) {
        const double top = grid.top() + row * boxHeight;
        paintWeekNumber(painter, QRectF(pageRect.left(), top, grid.left() - pageRect.left(), boxHeight),
                        Days.at(row * 7).Date);
        for (int column = 0; column < 7; ++column)
            paintDay(painter, QRectF(grid.left() + column * boxWidth, top, boxWidth, boxHeight),
                     Days.at(row * 7 + column), sizes);
    }
    paintGridLines(painter, grid, rows);

    if (!Footnote.isEmpty())
        paintFootnote(painter, QRectF(pageRect.left(), grid.bottom(), pageRect.width(), footerHeight), Footnote);
    painter.restore();
}

QString kvCalendarPage::DateLabel(const kvDate &day)
{
    return kv::Format(day, QStringLiteral("dd.mm."));
}

QString kvCalendarPage::MoreLine(int hidden)
{
    return QStringLiteral("+ %1 weitere").arg(hidden);
}
