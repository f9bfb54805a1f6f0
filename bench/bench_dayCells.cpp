// Fills and paints a month of day cells (42 cells of 20 rows each) and prints how long that
// takes and how much memory the cells hold; then the same month resized and painted against
// painted alone, and one day of 10,000 appointments reloaded: in a cell alone, and through the
// control on an SQLite table (Refresh: the day query, the fill and the paint). The first paint after a fill includes laying out
// the captions of the visible rows (ctlEntry lays them out on first use). Run it offscreen:
//   QT_QPA_PLATFORM=offscreen ./bench_dayCells [iterations]

#include "ctlDay.h"
#include "frmPicSelector.h"
#include "kvAppointmentTable.h"
#include "kvConnection.h"
#include "kvDate.h"
#include "kvKalivo.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

constexpr int Columns = 7;
constexpr int Rows = 6;
constexpr int CellWidth = 180;
constexpr int CellHeight = 110;
constexpr int RowsPerCell = 20;
constexpr int BusyDayRows = 10000;

const char16_t *const Texts[] = {
    u"Teambesprechung",
    u"Zahnarzt Dr. Müller",
    u"Besprechung mit der Geschäftsleitung über das Budget 2026",
    u"Mittagessen mit Anna",
    u"Telefonkonferenz mit dem Vertrieb Süddeutschland",
    u"Sport",
    u"Elternabend Grundschule Am Lindenhof",
    u"Angebot für die Stadtwerke Würzburg schreiben",
    u"Friseur",
    u"Jahreshauptversammlung des Kleingartenvereins Sonnenschein e. V.",
    u"Geburtstag Oma",
    u"Wocheneinkauf",
    u"Projektabgabe",
    u"Kundentermin in Düsseldorf (Anreise mit dem ICE um 7:12)",
    u"Yoga",
    u"Steuerberater: Unterlagen für die Einkommensteuererklärung mitbringen",
    u"Kino",
    u"Auto zur Inspektion bringen",
    u"Chorprobe",
    u"Abendessen bei Familie Schmidt",
};

// Valid ImageIDs of the built-in set (category digit, picture number); 0 = no icon.
const qint16 ImageIds[] = {11, 0, 23, 0, 35, 112, 0, 41, 57, 0, 63, 121, 0, 213, 38, 0, 413, 59, 0, 611};

long long residentKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly | QIODevice::Text))
        return -1;
    QTextStream in(&status);
    for (QString line = in.readLine(); !line.isNull(); line = in.readLine()) {
        if (line.startsWith(QLatin1String("VmRSS:")))
            return line.section(QLatin1Char(' '), 1, -1, QString::SectionSkipEmpty).section(QLatin1Char(' '), 0, 0).toLongLong();
    }
    return -1;
}

void fillCell(ctlDay &cell, int dayIndex)
{
    cell.ClearDates();
    const kvDate day = kvDate::fromDate(QDate(2025, 12, 1).addDays(dayIndex));
    for (int i = 0; i < RowsPerCell; ++i) {
        const kvDate begin = day.addMinutes(7 * 60 + i * 35 + dayIndex % 3 * 15);
        const int pick = (i + dayIndex) % RowsPerCell;
        const uint backColor = pick % 7 == 0 ? 0xC0FFC0u : 0xFFFFFFu;
        cell.AddDate(dayIndex * 100 + i, begin, begin.addMinutes(45), QString::fromUtf16(Texts[pick]),
                     QStringLiteral("Bemerkung"), QString(), ImageIds[pick], backColor, 0x000000);
    }
}

void initCell(ctlDay &cell, int dayIndex)
{
    const kvDate day = kvDate::fromDate(QDate(2025, 12, 1).addDays(dayIndex));
    cell.Init(day, QString(), QString(), 0x80000004, 0);
}

void fillBusyDay(ctlDay &cell)
{
    cell.ClearDates();
    const kvDate day = kvDate::fromDate(QDate(2025, 12, 1));
    for (int i = 0; i < BusyDayRows; ++i) {
        const kvDate begin = day.addSeconds(i * 8);
        const int pick = i % RowsPerCell;
        cell.AddDate(i + 1, begin, begin.addMinutes(30), QString::fromUtf16(Texts[pick]),
                     QStringLiteral("Bemerkung"), QString(), ImageIds[pick], 0xFFFFFFu, 0x000000);
    }
}

// The control in the week of 2026-11-18, a day with BusyDayRows appointments 8 seconds apart.
struct ControlFigures
{
    std::vector<double> reloads;
    std::vector<double> resizes; //!< one pixel narrower or wider, then painted
    std::vector<double> paints;  //!< painted alone
};

// Named and kept out of line, so that callgrind can count each on its own, e.g.
//   valgrind --tool=callgrind --collect-atstart=no --toggle-collect='*controlRefreshAndPaint*' ./bench_dayCells 20
Q_NEVER_INLINE void controlRefreshAndPaint(kvKalivo &control, QImage &frame)
{
    control.Refresh();
    control.render(&frame);
}

Q_NEVER_INLINE void controlResizeAndPaint(kvKalivo &control, QImage &frame, int width)
{
    control.resize(width, 800);
    control.render(&frame);
}

Q_NEVER_INLINE void controlPaint(kvKalivo &control, QImage &frame)
{
    control.render(&frame);
}

template <typename Work>
std::vector<double> timed(int runs, Work &&work)
{
    std::vector<double> samples;
    QElapsedTimer timer;
    for (int run = 0; run < runs; ++run) {
        timer.start();
        work(run);
        samples.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    return samples;
}

ControlFigures controlFigures(int runs)
{
    QTemporaryDir folder;
    kvConnection connection;
    connection.Open(QStringLiteral("Driver=SQLite3;Database=") + folder.filePath(QStringLiteral("busy.db")));
    kvAppointmentTable::Create(connection, QStringLiteral("Termine"));
    connection.Execute(QStringLiteral(
        "INSERT INTO Termine (DateBegin, DateEnd, Name, Remark) "
        "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
        "SELECT strftime('%Y-%m-%d %H:%M:%S', '2026-11-18', '+' || (i * 8) || ' seconds'), "
        "strftime('%Y-%m-%d %H:%M:%S', '2026-11-18', '+' || (i * 8 + 1800) || ' seconds'), "
        "'Termin ' || i, 'Bemerkung' FROM n").arg(BusyDayRows - 1));
    kvKalivo control;
    control.setParameterizedSql(true);
    control.setRecordSource(QStringLiteral("Termine"));
    control.setConnection(&connection);
    control.setActualDate(QDate(2026, 11, 18));
    control.resize(1280, 800);
    control.show();
    QImage frame(control.size(), QImage::Format_ARGB32_Premultiplied);
    ControlFigures figures;
    figures.reloads = timed(runs, [&](int) { controlRefreshAndPaint(control, frame); });
    figures.resizes = timed(runs, [&](int run) { controlResizeAndPaint(control, frame, 1280 - run % 2); });
    figures.paints = timed(runs, [&](int) { controlPaint(control, frame); });
    return figures;
}

struct Figures
{
    double median = 0;
    double p95 = 0;
};

Figures figuresOf(std::vector<double> samples)
{
    std::sort(samples.begin(), samples.end());
    const auto at = [&samples](double quantile) {
        return samples.at(std::min(samples.size() - 1, size_t(quantile * double(samples.size() - 1) + 0.5)));
    };
    return {at(0.5), at(0.95)};
}

void print(const char *what, const Figures &figures)
{
    std::printf("%-44s median %8.2f ms   p95 %8.2f ms\n", what, figures.median, figures.p95);
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int iterations = argc > 1 ? std::max(1, std::atoi(argv[1])) : 200;

    // Warm-up outside the measurement: the picker's pictures, fonts and glyph caches.
    frmPicSelector::ThreadInstance();
    {
        ctlDay warmUp;
        warmUp.resize(CellWidth, CellHeight);
        initCell(warmUp, 0);
        fillCell(warmUp, 0);
        warmUp.grab();
    }

    QWidget month;
    month.resize(Columns * (CellWidth + 1), Rows * (CellHeight + 1));
    const long long before = residentKiB();
    std::vector<ctlDay *> cells;
    for (int i = 0; i < Columns * Rows; ++i) {
        auto *cell = new ctlDay(&month);
        cell->setGeometry(i % Columns * (CellWidth + 1), i / Columns * (CellHeight + 1), CellWidth, CellHeight);
        initCell(*cell, i);
        fillCell(*cell, i);
        cells.push_back(cell);
    }
    const long long after = residentKiB();
    month.show();

    QImage frame(month.size(), QImage::Format_ARGB32_Premultiplied);
    std::vector<double> fills;
    std::vector<double> paints;
    std::vector<double> repaints;
    QElapsedTimer timer;
    for (int run = 0; run < iterations; ++run) {
        timer.start();
        for (int i = 0; i < int(cells.size()); ++i)
            fillCell(*cells[size_t(i)], (i + run) % 42);
        fills.push_back(double(timer.nsecsElapsed()) / 1e6);

        timer.start();
        month.render(&frame);
        paints.push_back(double(timer.nsecsElapsed()) / 1e6);

        timer.start();
        month.render(&frame);
        repaints.push_back(double(timer.nsecsElapsed()) / 1e6);
    }

    // A resize lays the month out again: every cell a pixel narrower or wider, then painted.
    std::vector<double> resizes;
    for (int run = 0; run < iterations; ++run) {
        const int width = CellWidth - run % 2;
        timer.start();
        for (int i = 0; i < int(cells.size()); ++i)
            cells[size_t(i)]->setGeometry(i % Columns * (width + 1), i / Columns * (CellHeight + 1), width, CellHeight);
        month.render(&frame);
        resizes.push_back(double(timer.nsecsElapsed()) / 1e6);
    }

    // A busy resource calendar: one day of 10,000 appointments, reloaded and painted.
    const long long beforeBusyDay = residentKiB();
    ctlDay busyDay;
    busyDay.resize(CellWidth, CellHeight);
    initCell(busyDay, 0);
    busyDay.show();
    QImage busyFrame(busyDay.size(), QImage::Format_ARGB32_Premultiplied);
    std::vector<double> busyReloads;
    for (int run = 0; run < std::max(3, iterations / 20); ++run) {
        timer.start();
        fillBusyDay(busyDay);
        busyDay.render(&busyFrame);
        busyReloads.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    const long long afterBusyDay = residentKiB();

    const ControlFigures control = controlFigures(std::max(3, iterations / 20));

    const int rows = Columns * Rows * RowsPerCell;
    std::printf("kvKalivo day cells: %d cells of %dx%d px, %d rows each (%d rows), %d iterations\n",
                Columns * Rows, CellWidth, CellHeight, RowsPerCell, rows, iterations);
    print("fill  (42 x ClearDates + 20 AddDate)", figuresOf(fills));
    print("paint (render the 42 cells into a QImage)", figuresOf(paints));
    print("repaint (the same, nothing changed)", figuresOf(repaints));
    print("resize + paint (every cell 1 px narrower)", figuresOf(resizes));
    print("reload + paint, 10,000 rows on one day", figuresOf(busyReloads));
    print("control Refresh + paint, 10,000 on one day", figuresOf(control.reloads));
    print("control resize + paint, the same week", figuresOf(control.resizes));
    print("control paint alone, the same week", figuresOf(control.paints));
    std::printf("memory: VmRSS %lld KiB before, %lld KiB after creating and filling the cells:"
                " +%lld KiB (%.2f KiB per row)\n",
                before, after, after - before, double(after - before) / rows);
    std::printf("memory: VmRSS +%lld KiB after the cell of %d rows was filled and painted\n",
                afterBusyDay - beforeBusyDay, BusyDayRows);
    return 0;
}
