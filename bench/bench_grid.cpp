// Speed of the calendar grid on SQLite and MariaDB (issues 5 and 14).
//
// Fills an SQLite table made by kvAppointmentTable::Create with 2,000 (the two visible months
// alone), 10,000, 100,000 and 1,000,000 rows and measures, as medians and 95th percentiles over
// many runs, a kvKalivo control shown at 1280 x 800 with ParameterizedSql on:
//   - month view, toolbar "Forward" (AutoRefresh: re-layout, the grid query, fill), then a
//     paint of the whole control into a QImage; the sum and both parts are printed,
//   - re-layout on resize in month view (alternating 1280 x 800 and 1279 x 799), with and
//     without the paint,
//   - week view, toolbar "Forward", with the paint,
// viewing the present (the month / week of today) and eight years back (the same month / week
// eight years earlier). Each "Forward" starts from the month (week) before, set untimed.
//
// Data: each of the two visible month grids (42 days) holds 1,000 appointments (3 % of them
// across 2 to 4 days); the rest of the table is spread evenly over the nine years before the
// present grid, leaving out the two grids (and the four days before each, so that no
// multi-day row reaches into them): so every table size shows the same ~1,000 rows and only
// the stored amount changes. Dates are stored as the data layer writes them on SQLite, the
// text "yyyy-MM-dd hh:mm:ss", inserted with one prepared statement in one transaction.
//
// Beside each Forward the same run measures the floor of the work: the one grid query through a
// plain QSqlQuery plus painting the empty control, and prints the ratio Forward + paint / floor.
// Where a figure needs explaining, the breakdown lines give the store's queries alone (its
// change marker and the grid query, through kvCommand/kvRecordset as the store sends them, and
// as raw QSqlQuery, timed in the same loop as the Forward), the Forward minus those queries
// (layout and filling the cells), a "Forward" of a control without a connection (layout and
// empty cells) and SQLite's plan of the grid query. A "what-if" line times the 42 per-day
// queries without any floor for the same grid (what the store sent before issue 14).
//
// With --mariadb the same figures follow for a MariaDB table (--mariadb-sizes, 100,000 rows by
// default); bench/run-with-mariadb.sh starts a throwaway server for it. At the end a table puts
// the main figures of every table and position side by side.
//
// Run it offscreen:
//   QT_QPA_PLATFORM=offscreen ./bench_grid [--sizes 2000,10000,100000,1000000] [--runs 100]
//                                          [--budget 20] [--analyze] [--dir DIR]
//                                          [--mariadb CONNECTION --mariadb-sizes 100000]
//                                          [--instructions]
//   --runs     runs per figure (default 100); a figure stops early after --budget seconds
//              (default 20), with at least 3 runs, so the slowest cases stay bearable
//   --analyze  run ANALYZE after filling (gives SQLite's planner statistics; off by default,
//              as a host's database normally has none)
//   --instructions  see "instruction counts" below: for callgrind
//   --dir      keep the databases in DIR (default: a temporary directory, removed at the end);
//              an existing database of the right size there is reused

#include "ctlDay.h"
#include "kvAppointmentTable.h"
#include "kvCommand.h"
#include "kvConnection.h"
#include "kvDate.h"
#include "kvKalivo.h"
#include "kvKalivoTestAccess.h"
#include "kvParameterizedSql.h"
#include "kvRecordset.h"
#include "kvSqlTexts.h"

#include <QAction>
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QToolBar>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <map>
#include <vector>

namespace {

constexpr int VisibleRows = 1000;     // appointments in each visible month grid
constexpr double TargetMs = 16.0;     // one frame (issue 5)
constexpr int TargetTableRows = 100000;
const QString TableName = QStringLiteral("Termine");

const char *const Texts[] = {
    "Teambesprechung", "Zahnarzt Dr. Müller", "Besprechung mit der Geschäftsleitung über das Budget",
    "Mittagessen mit Anna", "Telefonkonferenz mit dem Vertrieb Süddeutschland", "Sport",
    "Elternabend Grundschule Am Lindenhof", "Angebot für die Stadtwerke Würzburg schreiben", "Friseur",
    "Jahreshauptversammlung des Kleingartenvereins Sonnenschein e. V.", "Geburtstag Oma", "Wocheneinkauf",
    "Projektabgabe", "Kundentermin in Düsseldorf (Anreise mit dem ICE um 7:12)", "Yoga",
    "Steuerberater: Unterlagen mitbringen", "Kino", "Auto zur Inspektion bringen", "Chorprobe",
    "Abendessen bei Familie Schmidt", "Urlaub Ostsee", "Messe Hannover", "Fortbildung Excel",
};
constexpr int TextCount = int(sizeof(Texts) / sizeof(Texts[0]));
const qint16 ImageIds[] = {11, 23, 35, 112, 41, 57, 63, 121, 213, 38, 413, 59, 611};
constexpr int ImageIdCount = int(sizeof(ImageIds) / sizeof(ImageIds[0]));

// --- figures ----------------------------------------------------------------------------------

struct Figures
{
    double median = 0;
    double p95 = 0;
    int runs = 0;
};

Figures figuresOf(std::vector<double> samples)
{
    if (samples.empty())
        return {};
    std::sort(samples.begin(), samples.end());
    const auto at = [&samples](double quantile) {
        return samples.at(std::min(samples.size() - 1, size_t(quantile * double(samples.size() - 1) + 0.5)));
    };
    return {at(0.5), at(0.95), int(samples.size())};
}

double msSince(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

struct Settings
{
    QList<int> sizes{2000, 10000, 100000, 1000000};
    int runs = 100;
    double budgetSeconds = 20;
    bool analyze = false;
    QString dir;
    QString mariaDb;   // a connection string; empty: SQLite only
    QList<int> mariaDbSizes{100000};
};

constexpr int MinimumRuns = 3;

// Runs \a once settings.runs times, stopping early (after MinimumRuns) when the budget is spent.
void repeat(const Settings &settings, const std::function<void()> &once)
{
    QElapsedTimer budget;
    budget.start();
    for (int run = 0; run < settings.runs; ++run) {
        once();
        if (run + 1 >= MinimumRuns && budget.elapsed() > qint64(settings.budgetSeconds * 1000))
            break;
    }
}

struct Row
{
    QString size;       // "100,000"
    QString position;   // "present", "8 years back"
    QString operation;
    Figures figures;
};

std::vector<Row> g_table;

// The side-by-side table: one column per table and position, one line per figure.
std::vector<QString> g_columns;
std::map<std::pair<QString, QString>, double> g_sideBySide;   // (figure, column) -> median

void note(const QString &column, const QString &figure, double median)
{
    if (std::find(g_columns.begin(), g_columns.end(), column) == g_columns.end())
        g_columns.push_back(column);
    g_sideBySide[{figure, column}] = median;
}

void printSideBySide()
{
    static const char *const figures[] = {
        "month Forward + paint", "  month Forward alone", "  paint alone", "  floor", "  ratio to the floor",
        "resize + paint", "  repaint alone", "  ratio to the repaint", "week Forward + paint", "  week floor",
        "  week ratio to the floor",
    };
    std::printf("\nSide by side (medians in ms, ratios bare):\n%-28s", "");
    for (const QString &column : g_columns)
        std::printf(" %22s", qPrintable(column));
    std::printf("\n");
    for (const char *figure : figures) {
        std::printf("%-28s", figure);
        for (const QString &column : g_columns) {
            const auto found = g_sideBySide.find({QString::fromLatin1(figure), column});
            if (found == g_sideBySide.end())
                std::printf(" %22s", "-");
            else
                std::printf(" %22.2f", found->second);
        }
        std::printf("\n");
    }
}

QString thousands(long long value)
{
    QString digits = QString::number(value);
    for (int at = digits.size() - 3; at > 0; at -= 3)
        digits.insert(at, QLatin1Char(','));
    return digits;
}

void record(const QString &size, const QString &position, const QString &operation, const Figures &figures)
{
    g_table.push_back({size, position, operation, figures});
    std::printf("  %-13s %-44s median %9.2f ms   p95 %9.2f ms   (%d runs)\n", qPrintable(position),
                qPrintable(operation), figures.median, figures.p95, figures.runs);
    std::fflush(stdout);
}

// --- the data ---------------------------------------------------------------------------------

struct Window
{
    QDate first;
    QDate last;
};

struct Appointment
{
    qint64 beginMinute;   // minutes since the Julian day 0
    int durationMinutes;
    int text;
    int extra;            // random bits for remark, document, image
};

QString dbText(qint64 minute)
{
    const QDate date = QDate::fromJulianDay(minute / 1440);
    const int ofDay = int(minute % 1440);
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d %02d:%02d:00", date.year(), date.month(), date.day(),
                  ofDay / 60, ofDay % 60);
    return QString::fromLatin1(buffer);
}

Appointment makeAppointment(QRandomGenerator &random, qint64 day, bool mayLast, int multiDayPercent)
{
    Appointment a{};
    const int slot = int(random.bounded(7 * 4, 20 * 4));   // 07:00 .. 19:45 in quarters
    a.beginMinute = day * 1440 + slot * 15;
    a.durationMinutes = 30 + 15 * int(random.bounded(0, 11));
    if (mayLast && int(random.bounded(0, 100)) < multiDayPercent)
        a.durationMinutes += 1440 * int(random.bounded(1, 4));   // ends 1 to 3 days later
    a.text = int(random.bounded(0, TextCount));
    a.extra = int(random.bounded(0, 1 << 20));
    return a;
}

std::vector<Appointment> generate(int total, const Window &present, const Window &past)
{
    QRandomGenerator random(20261122);
    std::vector<Appointment> rows;
    rows.reserve(size_t(total));
    constexpr int MaxExtraDays = 3;
    for (const Window &window : {present, past}) {
        const qint64 first = window.first.toJulianDay();
        const qint64 last = window.last.toJulianDay();
        for (int i = 0; i < VisibleRows; ++i) {
            const qint64 day = first + random.bounded(int(last - first + 1));
            rows.push_back(makeAppointment(random, day, day + MaxExtraDays <= last, 3));
        }
    }
    // The rest over the nine years before the present grid, not touching either grid.
    const qint64 end = present.first.toJulianDay() - MaxExtraDays - 1;   // last allowed begin day
    const qint64 start = present.first.addYears(-9).toJulianDay();
    std::vector<qint64> days;
    for (qint64 day = start; day <= end; ++day) {
        if (day >= past.first.toJulianDay() - MaxExtraDays - 1 && day <= past.last.toJulianDay())
            continue;
        days.push_back(day);
    }
    for (int i = int(rows.size()); i < total; ++i)
        rows.push_back(makeAppointment(random, days[size_t(random.bounded(int(days.size())))], true, 2));
    std::sort(rows.begin(), rows.end(),
              [](const Appointment &a, const Appointment &b) { return a.beginMinute < b.beginMinute; });
    return rows;
}

// The rows of the table behind \a connection, -1 without one.
long long countRows(kvConnection &connection)
{
    QSqlQuery query(connection.Database());
    if (!query.exec(QStringLiteral("SELECT COUNT(*) FROM ") + TableName) || !query.next())
        return -1;
    return query.value(0).toLongLong();
}

// Inserts \a rows with one prepared statement in one transaction, dates as the data layer
// writes them on SQLite ("yyyy-MM-dd hh:mm:ss" text).
void insertRows(QSqlDatabase db, const std::vector<Appointment> &rows, bool analyze)
{
    QSqlQuery pragma(db);
    pragma.exec(QStringLiteral("PRAGMA cache_size = -65536"));   // 64 MiB while the indexes grow
    db.transaction();
    QSqlQuery insert(db);
    insert.prepare(QStringLiteral("INSERT INTO ") + TableName
                   + QStringLiteral(" (DateBegin, DateEnd, Name, Remark, Document, ImageID) VALUES (?, ?, ?, ?, ?, ?)"));
    const QVariant nullText(QMetaType::fromType<QString>());
    const QVariant nullNumber(QMetaType::fromType<int>());
    QString texts[TextCount];
    for (int i = 0; i < TextCount; ++i)
        texts[i] = QString::fromUtf8(Texts[i]);
    const QString remark = QStringLiteral("Bitte Unterlagen mitbringen.\r\nRaum 2.14");
    const QString document = QStringLiteral("/home/anna/Dokumente/Protokoll.pdf");
    for (const Appointment &a : rows) {
        insert.bindValue(0, dbText(a.beginMinute));
        insert.bindValue(1, dbText(a.beginMinute + a.durationMinutes));
        insert.bindValue(2, texts[a.text]);
        insert.bindValue(3, a.extra % 3 == 0 ? QVariant(remark) : nullText);
        insert.bindValue(4, a.extra % 20 == 1 ? QVariant(document) : nullText);
        insert.bindValue(5, (a.extra >> 8) % 4 == 0 ? QVariant(int(ImageIds[(a.extra >> 10) % ImageIdCount]))
                                                    : nullNumber);
        if (!insert.exec()) {
            std::fprintf(stderr, "insert failed: %s\n", qPrintable(insert.lastError().text()));
            std::exit(1);
        }
    }
    db.commit();
    if (analyze)
        pragma.exec(QStringLiteral("ANALYZE"));
}

// Makes the table of \a connection anew with \a total rows; prints and returns the seconds it took.
double buildTable(kvConnection &connection, int total, const Window &present, const Window &past, bool analyze)
{
    QElapsedTimer timer;
    timer.start();
    const std::vector<Appointment> rows = generate(total, present, past);
    const double generated = msSince(timer) / 1000;

    QSqlQuery(connection.Database()).exec(QStringLiteral("DROP TABLE ") + TableName);
    kvAppointmentTable::Create(connection, TableName);
    insertRows(connection.Database(), rows, analyze);
    const double seconds = msSince(timer) / 1000;
    std::printf("  built %s rows in %.1f s (generating %.1f s, inserting and committing %.1f s)%s\n",
                qPrintable(thousands(total)), seconds, generated, seconds - generated,
                analyze ? " with ANALYZE" : "");
    std::fflush(stdout);
    return seconds;
}

// --- the control ------------------------------------------------------------------------------

QAction *toolbarAction(kvKalivo &control, const char *key)
{
    auto *toolbar = control.findChild<QToolBar *>(QStringLiteral("ToolbarMain"));
    QAction *action = toolbar ? toolbar->findChild<QAction *>(QString::fromLatin1(key)) : nullptr;
    if (!action) {
        std::fprintf(stderr, "toolbar action %s not found\n", key);
        std::exit(1);
    }
    return action;
}

void settle()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

// A host window at 1280 x 800 with the control filling it, shown (offscreen).
struct Shown
{
    QWidget host;
    kvKalivo *control = nullptr;
    QImage frame;

    explicit Shown(kvConnection *connection)
    {
        host.resize(1280, 800);
        control = new kvKalivo(&host);
        control->setGeometry(0, 0, 1280, 800);
        control->setParameterizedSql(true);
        control->setRecordSource(TableName);
        if (connection)
            control->setConnection(connection);
        control->setPublicHoliday(true);
        control->setView(kvKalivo::kvMonth);
        host.show();
        settle();
        frame = QImage(control->size(), QImage::Format_ARGB32_Premultiplied);
    }

    void paint()
    {
        if (frame.size() != control->size())
            frame = QImage(control->size(), QImage::Format_ARGB32_Premultiplied);
        control->render(&frame);
    }

    int shownEntries() const
    {
        int entries = 0;
        for (int i = 1; i <= kvKalivoTestAccess::DayCellCount(*control); ++i)
            entries += kvKalivoTestAccess::DayCell(*control, i)->EntriesCount();
        return entries;
    }
};

// One untimed "Forward" with a paint: fonts, glyph caches, the pictures, SQLite's page cache.
void warmUp(Shown &shown, kvKalivo::kvView view, const QDate &target)
{
    shown.control->setView(view);
    shown.control->setActualDate(view == kvKalivo::kvMonth ? target.addMonths(-1) : target.addDays(-7));
    toolbarAction(*shown.control, "Forward")->trigger();
    shown.paint();
    settle();
}

struct ForwardFigures
{
    Figures total, reload, paint;
    std::vector<Figures> alongside;   // one per function run alongside, in the same loop
    Figures rest;                     // per run: reload minus the first function run alongside
    int statements = 0;
    int entries = 0;
};

// "Forward" from the month (week) before \a target to \a target, reload and paint timed apart.
// Each of \a alongside (returning milliseconds) runs once per run right after, so that its
// figure and the difference to the reload come from the same moments of a busy machine.
ForwardFigures measureForward(const Settings &settings, Shown &shown, kvKalivo::kvView view, const QDate &target,
                              kvConnection *connection, const std::vector<std::function<double()>> &alongside = {})
{
    kvKalivo &control = *shown.control;
    control.setView(view);
    const QDate from = view == kvKalivo::kvMonth ? target.addMonths(-1) : target.addDays(-7);
    QAction *forward = toolbarAction(control, "Forward");
    std::vector<double> totals, reloads, paints, rests;
    std::vector<std::vector<double>> extras(alongside.size());
    ForwardFigures figures;
    int statements = 0;
    QMetaObject::Connection counter;
    if (connection)
        counter = QObject::connect(connection, &kvConnection::StatementExecuted, [&statements] { ++statements; });
    repeat(settings, [&] {
        control.setActualDate(from);
        settle();
        statements = 0;
        QElapsedTimer timer;
        timer.start();
        forward->trigger();
        const double reload = msSince(timer);
        shown.paint();
        const double total = msSince(timer);
        totals.push_back(total);
        reloads.push_back(reload);
        paints.push_back(total - reload);
        figures.statements = statements;
        settle();
        for (size_t i = 0; i < alongside.size(); ++i)
            extras[i].push_back(alongside[i]());
        if (!alongside.empty())
            rests.push_back(reload - extras[0].back());
    });
    QObject::disconnect(counter);
    if (control.ActualDate() != (view == kvKalivo::kvMonth ? from.addMonths(1) : from.addDays(7)))
        std::fprintf(stderr, "warning: Forward reached %s, not %s\n", qPrintable(control.ActualDate().toString(Qt::ISODate)),
                     qPrintable(target.toString(Qt::ISODate)));
    figures.entries = shown.shownEntries();
    figures.total = figuresOf(totals);
    figures.reload = figuresOf(reloads);
    figures.paint = figuresOf(paints);
    for (const std::vector<double> &extra : extras)
        figures.alongside.push_back(figuresOf(extra));
    figures.rest = figuresOf(rests);
    return figures;
}

struct ResizeFigures
{
    Figures relayout, withPaint;
    Figures repaint;   // painting again right after, nothing changed
    int arranged = 0;
};

ResizeFigures measureResize(const Settings &settings, Shown &shown, const QDate &target)
{
    kvKalivo &control = *shown.control;
    control.setView(kvKalivo::kvMonth);
    control.setActualDate(target);
    settle();
    int arranged = 0;
    const auto counter = QObject::connect(kvKalivoTestAccess::Grid(control), &kvDayGrid::gridArranged, [&arranged] { ++arranged; });
    std::vector<double> relayouts, totals, repaints;
    bool small = false;
    int runs = 0;
    repeat(settings, [&] {
        small = !small;
        QElapsedTimer timer;
        timer.start();
        control.resize(small ? QSize(1279, 799) : QSize(1280, 800));
        const double relayout = msSince(timer);
        shown.paint();
        totals.push_back(msSince(timer));
        relayouts.push_back(relayout);
        timer.start();
        shown.paint();
        repaints.push_back(msSince(timer));
        ++runs;
        settle();
    });
    QObject::disconnect(counter);
    control.resize(1280, 800);
    settle();
    ResizeFigures figures;
    figures.relayout = figuresOf(relayouts);
    figures.withPaint = figuresOf(totals);
    figures.repaint = figuresOf(repaints);
    figures.arranged = arranged == runs ? 1 : -1;
    if (arranged != runs)
        std::fprintf(stderr, "warning: %d re-layouts for %d resizes\n", arranged, runs);
    return figures;
}

enum class QueryMode {
    Store,            // the store's change marker and its grid query, through kvCommand/kvRecordset
    Raw,              // the same texts and values through a plain QSqlQuery
    GridQuery,        // the grid query alone through a plain QSqlQuery: the floor of the SQL work
    Unbounded,        // what-if: the 42 day queries without any floor (the store before issue 14)
};

// The first value of \a statement's first row, null without one.
QVariant firstValue(kvConnection &connection, const kvSqlStatement &statement)
{
    QSqlQuery query(connection.Database());
    query.prepare(statement.Text);
    for (int i = 0; i < statement.Values.size(); ++i)
        query.bindValue(i, statement.Values.at(i));
    if (!query.exec() || !query.next())
        return {};
    return query.value(0);
}

// As kvAppointmentStore::GridFloor: on SQLite the first day less the longest duration and a
// day, elsewhere the earliest begin of the appointments reaching into the grid.
kvDate gridFloor(kvConnection &connection, const kvTableName &table, const kvDate &first, int dialect,
                 kvParameterizedSql::Engine engine)
{
    if (engine != kvParameterizedSql::Engine::SQLite) {
        const QVariant earliest =
            firstValue(connection, kvParameterizedSql::EarliestOverlapQuery(table, first, dialect, engine));
        return earliest.isNull() ? first : std::min(first, kvDate::fromDate(earliest.toDateTime().date()));
    }
    const QVariant longest = firstValue(connection, kvParameterizedSql::LongestDurationQuery(table));
    if (longest.isNull())
        return first;
    return first.addDays(-qint64(std::ceil(longest.toDouble())) - 1);
}

// The statements of \a mode for the grid \a grid.
std::vector<kvSqlStatement> gridStatements(kvConnection &connection, const Window &grid, QueryMode mode)
{
    const qint16 dialect = kvSqlTexts::DatabaseDialect(0, connection.Provider(), connection.ConnectionString());
    const auto engine = kvParameterizedSql::EngineOf(connection.Database().driverName());
    const kvTableName table = kvTableName::Parse(TableName, kvDataSource::Of(connection).engine());
    const kvDate first = kvDate::fromDate(grid.first);
    std::vector<kvSqlStatement> statements;
    if (mode == QueryMode::Unbounded) {
        for (QDate day = grid.first; day <= grid.last; day = day.addDays(1))
            statements.push_back(kvParameterizedSql::DayQuery(table, kvDate::fromDate(day), dialect, engine));
        return statements;
    }
    // What the store sends before the grid query: SQLite's change marker, elsewhere the search
    // for the earliest appointment reaching into the grid.
    if (mode != QueryMode::GridQuery) {
        statements.push_back(engine == kvParameterizedSql::Engine::SQLite
                                 ? kvParameterizedSql::ChangeMarkerQuery()
                                 : kvParameterizedSql::EarliestOverlapQuery(table, first, dialect, engine));
    }
    statements.push_back(kvParameterizedSql::GridQuery(table, first, kvDate::fromDate(grid.last.addDays(1)),
                                                       gridFloor(connection, table, first, dialect, engine),
                                                       dialect, engine));
    return statements;
}

// Runs \a statements once, reading every column of every row; returns the milliseconds.
double runQueries(kvConnection &connection, const std::vector<kvSqlStatement> &statements, QueryMode mode)
{
    QElapsedTimer timer;
    timer.start();
    for (const kvSqlStatement &statement : statements) {
        if (mode != QueryMode::Store) {
            QSqlQuery query(connection.Database());
            query.setForwardOnly(true);
            query.prepare(statement.Text);
            for (int i = 0; i < statement.Values.size(); ++i)
                query.bindValue(i, statement.Values.at(i));
            if (!query.exec())
                std::fprintf(stderr, "query failed: %s\n", qPrintable(query.lastError().text()));
            const int columns = query.record().count();
            while (query.next()) {
                for (int c = 0; c < columns; ++c)
                    query.value(c);
            }
        } else {
            // As kvAppointmentStore::LoadDayAppointments sends it.
            kvCommand command;
            command.setActiveConnection(&connection);
            command.setCommandType(kvCommand::adCmdText);
            command.setCommandText(statement.Text);
            command.Parameters() = statement.Values;
            kvRecordset recordset;
            recordset.Open(command, kvRecordset::adOpenForwardOnly, kvRecordset::adLockUnspecified,
                           kvCommand::adCmdUnspecified);
            while (!recordset.EOF()) {
                const kvFields fields = recordset.Fields();
                for (int c = 0; c < fields.Count(); ++c)
                    fields.Item(c).Value();
                recordset.MoveNext();
            }
            recordset.Close();
        }
    }
    return msSince(timer);
}

Figures measureQueries(const Settings &settings, kvConnection &connection, const Window &grid, QueryMode mode)
{
    const std::vector<kvSqlStatement> statements = gridStatements(connection, grid, mode);
    std::vector<double> samples;
    repeat(settings, [&] { samples.push_back(runQueries(connection, statements, mode)); });
    return figuresOf(samples);
}

void printPlan(kvConnection &connection, const kvSqlStatement &statement)
{
    QSqlQuery plan(connection.Database());
    plan.prepare(QStringLiteral("EXPLAIN QUERY PLAN ") + statement.Text);
    for (int i = 0; i < statement.Values.size(); ++i)
        plan.bindValue(i, statement.Values.at(i));
    plan.exec();
    while (plan.next())
        std::printf("    %s\n", qPrintable(plan.value(3).toString()));
}

void printQueryPlan(kvConnection &connection, const Window &grid)
{
    const kvSqlStatement statement = gridStatements(connection, grid, QueryMode::GridQuery).front();
    std::printf("  grid query: %s\n  bound: ", qPrintable(statement.Text));
    for (const QVariant &value : statement.Values)
        std::printf("'%s' ", qPrintable(value.toString()));
    std::printf("\n  SQLite's plan:\n");
    printPlan(connection, statement);
}

// --- instruction counts ------------------------------------------------------------------------
//
// With --instructions the run only repeats the two functions below, for callgrind to count:
//   valgrind --tool=callgrind --collect-atstart=no --toggle-collect='*instructionsOf*' \
//       ./bench_grid --instructions --sizes 1000000 --runs 3
//   callgrind_annotate --inclusive=yes callgrind.out.<pid> | grep instructionsOf
// gives the instructions of one month Forward + paint (divide by --runs) and of its floor.

Q_NEVER_INLINE void instructionsOfForwardAndPaint(Shown &shown, QAction *forward)
{
    forward->trigger();
    shown.paint();
}

Q_NEVER_INLINE void instructionsOfFloor(kvConnection &connection, const std::vector<kvSqlStatement> &gridQuery,
                                         Shown &empty)
{
    runQueries(connection, gridQuery, QueryMode::GridQuery);
    empty.paint();
}

void countInstructions(const Settings &settings, kvConnection &connection, const Window &grid, const QDate &target)
{
    Shown shown(&connection);
    Shown empty(nullptr);
    warmUp(shown, kvKalivo::kvMonth, target);
    warmUp(empty, kvKalivo::kvMonth, target);
    const std::vector<kvSqlStatement> gridQuery = gridStatements(connection, grid, QueryMode::GridQuery);
    QAction *forward = toolbarAction(*shown.control, "Forward");
    for (int run = 0; run < settings.runs; ++run) {
        shown.control->setActualDate(target.addMonths(-1));
        settle();
        instructionsOfForwardAndPaint(shown, forward);
        settle();
        instructionsOfFloor(connection, gridQuery, empty);
    }
    std::printf("  %d month Forward + paint and %d floors counted; %d rows shown\n", settings.runs, settings.runs,
                shown.shownEntries());
    delete shown.control;   // lets go of the connection before it closes
    shown.control = nullptr;
    connection.Close();
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("kvKalivo grid benchmark (SQLite, optionally MariaDB)"));
    parser.addHelpOption();
    const QCommandLineOption sizesOption(QStringLiteral("sizes"), QStringLiteral("Table sizes, comma-separated."),
                                         QStringLiteral("list"), QStringLiteral("2000,10000,100000,1000000"));
    const QCommandLineOption runsOption(QStringLiteral("runs"), QStringLiteral("Runs per figure."),
                                        QStringLiteral("n"), QStringLiteral("100"));
    const QCommandLineOption budgetOption(QStringLiteral("budget"), QStringLiteral("Seconds per figure at most."),
                                          QStringLiteral("s"), QStringLiteral("20"));
    const QCommandLineOption analyzeOption(QStringLiteral("analyze"), QStringLiteral("Run ANALYZE after filling."));
    const QCommandLineOption dirOption(QStringLiteral("dir"), QStringLiteral("Keep the databases in this directory."),
                                       QStringLiteral("dir"));
    const QCommandLineOption instructionsOption(
        QStringLiteral("instructions"),
        QStringLiteral("Only repeat one month Forward + paint and its floor (present), for callgrind to count."));
    const QCommandLineOption mariaDbOption(QStringLiteral("mariadb"),
                                           QStringLiteral("Also measure the MariaDB database of this connection string."),
                                           QStringLiteral("connection string"));
    const QCommandLineOption mariaDbSizesOption(QStringLiteral("mariadb-sizes"),
                                                QStringLiteral("Table sizes on MariaDB, comma-separated."),
                                                QStringLiteral("list"), QStringLiteral("100000"));
    parser.addOptions({sizesOption, runsOption, budgetOption, analyzeOption, dirOption, instructionsOption,
                       mariaDbOption, mariaDbSizesOption});
    parser.process(app);

    Settings settings;
    const auto sizesOf = [](const QString &list, QList<int> &sizes) {
        sizes.clear();
        for (const QString &size : list.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
            const int value = size.trimmed().toInt();
            if (value < 2 * VisibleRows) {
                std::fprintf(stderr, "sizes must be at least %d (the two visible months)\n", 2 * VisibleRows);
                return false;
            }
            sizes << value;
        }
        return true;
    };
    if (!sizesOf(parser.value(sizesOption), settings.sizes)
        || !sizesOf(parser.value(mariaDbSizesOption), settings.mariaDbSizes))
        return 2;
    settings.mariaDb = parser.value(mariaDbOption);
    settings.runs = std::max(1, parser.value(runsOption).toInt());
    settings.budgetSeconds = std::max(0.1, parser.value(budgetOption).toDouble());
    settings.analyze = parser.isSet(analyzeOption);
    QTemporaryDir temporary;
    settings.dir = parser.isSet(dirOption) ? parser.value(dirOption) : temporary.path();
    QDir().mkpath(settings.dir);

    const QDate today = QDate::currentDate();
    const QDate targets[2] = {today, today.addYears(-8)};
    const QString positions[2] = {QStringLiteral("present"), QStringLiteral("8 years back")};

    // The visible month grids, as the control lays them out.
    Window grids[2];
    {
        Shown probe(nullptr);
        for (int p = 0; p < 2; ++p) {
            probe.control->setActualDate(targets[p]);
            grids[p] = {kvKalivoTestAccess::DayCell(*probe.control, 1)->datDay().date(),
                        kvKalivoTestAccess::DayCell(*probe.control, kvKalivoTestAccess::DayCellCount(*probe.control))->datDay().date()};
        }
    }

    // The database of \a size rows in settings.dir, built unless it is there.
    // The tables to measure: SQLite files of each size in settings.dir (built unless they are
    // there), then the MariaDB table of each --mariadb-sizes (built unless it has that size).
    struct Source
    {
        QString label;   // "100,000" or "100,000 MariaDB"
        int size = 0;
        bool sqlite = true;
    };
    std::vector<Source> sources;
    for (const int size : settings.sizes)
        sources.push_back({thousands(size), size, true});
    if (!settings.mariaDb.isEmpty()) {
        for (const int size : settings.mariaDbSizes)
            sources.push_back({thousands(size) + QStringLiteral(" MariaDB"), size, false});
    }
    const auto open = [&settings, &grids](kvConnection &connection, const Source &source) {
        if (!source.sqlite) {
            connection.Open(settings.mariaDb);
        } else {
            const QString file = QDir(settings.dir).filePath(
                QStringLiteral("bench_grid_%1%2.sqlite").arg(source.size).arg(settings.analyze ? QStringLiteral("_analyzed") : QString()));
            connection.Open(QStringLiteral("Driver=SQLite3;Database=") + file);
            if (countRows(connection) != source.size) {
                connection.Close();
                QFile::remove(file);
                connection.Open(QStringLiteral("Driver=SQLite3;Database=") + file);
            }
        }
        if (countRows(connection) == source.size)
            std::printf("  reusing the table of %s rows\n", qPrintable(source.label));
        else
            buildTable(connection, source.size, grids[0], grids[1], settings.analyze);
    };

    if (parser.isSet(instructionsOption)) {
        for (const Source &source : sources) {
            std::printf("%s rows in the table:\n", qPrintable(source.label));
            kvConnection connection;
            open(connection, source);
            countInstructions(settings, connection, grids[0], targets[0]);
        }
        return 0;
    }

    std::printf("kvKalivo grid benchmark: SQLite%s, ParameterizedSql on, PublicHoliday on, control at 1280 x 800,"
                " QT_QPA_PLATFORM=%s\n", settings.mariaDb.isEmpty() ? "" : " and MariaDB",
                qgetenv("QT_QPA_PLATFORM").constData());
    std::printf("present: %s (grid %s .. %s), 8 years back: %s (grid %s .. %s); %d rows in each grid\n",
                qPrintable(targets[0].toString(Qt::ISODate)), qPrintable(grids[0].first.toString(Qt::ISODate)),
                qPrintable(grids[0].last.toString(Qt::ISODate)), qPrintable(targets[1].toString(Qt::ISODate)),
                qPrintable(grids[1].first.toString(Qt::ISODate)), qPrintable(grids[1].last.toString(Qt::ISODate)),
                VisibleRows);
    std::printf("%d runs per figure, fewer (at least %d) where a figure would take more than %.0f s\n\n",
                settings.runs, MinimumRuns, settings.budgetSeconds);

    // Warm-up and the cost without any SQL: a control without a connection.
    double emptyForwardMs = 0;
    double emptyPaintMs = 0;   // painting the empty control: with the grid query, the floor
    double weekEmptyPaintMs = 0;
    {
        Shown empty(nullptr);
        warmUp(empty, kvKalivo::kvMonth, targets[0]);
        std::printf("no connection (layout and empty cells, no SQL):\n");
        const ForwardFigures month = measureForward(settings, empty, kvKalivo::kvMonth, targets[0], nullptr);
        record(QStringLiteral("none"), QStringLiteral("present"), QStringLiteral("month Forward + paint"), month.total);
        record(QStringLiteral("none"), QStringLiteral("present"), QStringLiteral("  month Forward alone"), month.reload);
        record(QStringLiteral("none"), QStringLiteral("present"), QStringLiteral("  paint alone"), month.paint);
        emptyForwardMs = month.reload.median;
        emptyPaintMs = month.paint.median;
        const ResizeFigures resize = measureResize(settings, empty, targets[0]);
        record(QStringLiteral("none"), QStringLiteral("present"), QStringLiteral("month re-layout (resize)"), resize.relayout);
        const ForwardFigures week = measureForward(settings, empty, kvKalivo::kvWeek, targets[0], nullptr);
        record(QStringLiteral("none"), QStringLiteral("present"), QStringLiteral("week Forward + paint"), week.total);
        weekEmptyPaintMs = week.paint.median;
        std::printf("\n");
    }

    struct Verdict
    {
        QString what;
        double median;
    };
    std::vector<Verdict> verdicts;
    QStringList breakdowns;   // at TargetTableRows
    bool planPrinted = false;

    for (const Source &source : sources) {
        const QString &sizeText = source.label;
        std::printf("%s rows in the table:\n", qPrintable(sizeText));
        kvConnection connection;
        open(connection, source);
        if (source.sqlite && !planPrinted) {
            printQueryPlan(connection, grids[0]);
            planPrinted = true;
        }
        Shown shown(&connection);
        for (int p = 0; p < 2; ++p) {
            warmUp(shown, kvKalivo::kvMonth, targets[p]);
            // The store's queries alone, as raw QSqlQuery, and the grid query alone (the floor),
            // timed in the same loop as the Forward they are part of.
            const std::vector<kvSqlStatement> storeQueries = gridStatements(connection, grids[p], QueryMode::Store);
            const std::vector<kvSqlStatement> gridQuery = gridStatements(connection, grids[p], QueryMode::GridQuery);
            const ForwardFigures month = measureForward(
                settings, shown, kvKalivo::kvMonth, targets[p], &connection,
                {[&] { return runQueries(connection, storeQueries, QueryMode::Store); },
                 [&] { return runQueries(connection, storeQueries, QueryMode::Raw); },
                 [&] { return runQueries(connection, gridQuery, QueryMode::GridQuery); }});
            std::printf("  %s: one month Forward sends %d SQL statements and shows %d rows (multi-day rows once per day)\n",
                        qPrintable(positions[p]), month.statements, month.entries);
            record(sizeText, positions[p], QStringLiteral("month Forward + paint"), month.total);
            record(sizeText, positions[p], QStringLiteral("  month Forward alone (re-layout, queries, fill)"), month.reload);
            record(sizeText, positions[p], QStringLiteral("  paint alone"), month.paint);
            const Figures &queries = month.alongside.at(0);
            const Figures &rawQueries = month.alongside.at(1);
            const Figures &floorQuery = month.alongside.at(2);
            record(sizeText, positions[p], QStringLiteral("  marker + grid query alone (kvRecordset)"), queries);
            record(sizeText, positions[p], QStringLiteral("  marker + grid query alone (raw QSqlQuery)"), rawQueries);
            const double floorMs = floorQuery.median + emptyPaintMs;
            std::printf("  %s: floor (grid query through QSqlQuery %.2f ms + paint of the empty control %.2f ms)"
                        " %.2f ms; month Forward + paint / floor = %.1f\n",
                        qPrintable(positions[p]), floorQuery.median, emptyPaintMs, floorMs, month.total.median / floorMs);
            record(sizeText, positions[p], QStringLiteral("  Forward alone minus the queries (layout, fill)"), month.rest);
            const QString column = sizeText + (p == 0 ? QString() : QStringLiteral(", 8 y back"));
            note(column, QStringLiteral("month Forward + paint"), month.total.median);
            note(column, QStringLiteral("  month Forward alone"), month.reload.median);
            note(column, QStringLiteral("  paint alone"), month.paint.median);
            note(column, QStringLiteral("  floor"), floorMs);
            note(column, QStringLiteral("  ratio to the floor"), month.total.median / floorMs);
            const ResizeFigures resize = measureResize(settings, shown, targets[p]);
            record(sizeText, positions[p], QStringLiteral("month re-layout (resize)"), resize.relayout);
            record(sizeText, positions[p], QStringLiteral("month re-layout (resize) + paint"), resize.withPaint);
            record(sizeText, positions[p], QStringLiteral("  repaint alone, right after"), resize.repaint);
            note(column, QStringLiteral("resize + paint"), resize.withPaint.median);
            note(column, QStringLiteral("  repaint alone"), resize.repaint.median);
            note(column, QStringLiteral("  ratio to the repaint"), resize.withPaint.median / resize.repaint.median);
            const ForwardFigures week = measureForward(settings, shown, kvKalivo::kvWeek, targets[p], &connection);
            std::printf("  %s: one week Forward sends %d SQL statements and shows %d rows\n", qPrintable(positions[p]),
                        week.statements, week.entries);
            const Window weekGrid{targets[p].addDays(1 - targets[p].dayOfWeek()), targets[p].addDays(7 - targets[p].dayOfWeek())};
            const std::vector<kvSqlStatement> weekQuery = gridStatements(connection, weekGrid, QueryMode::GridQuery);
            std::vector<double> weekFloor;
            repeat(settings, [&] { weekFloor.push_back(runQueries(connection, weekQuery, QueryMode::GridQuery)); });
            const double weekFloorMs = figuresOf(weekFloor).median + weekEmptyPaintMs;
            std::printf("  %s: week floor (grid query %.2f ms + empty paint %.2f ms) %.2f ms; week Forward + paint / floor = %.1f\n",
                        qPrintable(positions[p]), figuresOf(weekFloor).median, weekEmptyPaintMs, weekFloorMs,
                        week.total.median / weekFloorMs);
            record(sizeText, positions[p], QStringLiteral("week Forward + paint"), week.total);
            note(column, QStringLiteral("week Forward + paint"), week.total.median);
            note(column, QStringLiteral("  week floor"), weekFloorMs);
            note(column, QStringLiteral("  week ratio to the floor"), week.total.median / weekFloorMs);
            record(sizeText, positions[p], QStringLiteral("  week Forward alone"), week.reload);
            record(sizeText, positions[p], QStringLiteral("  paint alone (week)"), week.paint);
            record(sizeText, positions[p], QStringLiteral("what-if: 42 queries without the floor (raw)"),
                   measureQueries(settings, connection, grids[p], QueryMode::Unbounded));
            const QString breakdown =
                QStringLiteral("%1, %2: month Forward + paint %3 ms = change marker + grid query %4 ms (as raw QSqlQuery"
                               " %5 ms) + layout and filling %6 ms (the empty grid without a connection: %7 ms)"
                               " + paint %8 ms")
                    .arg(sizeText, positions[p])
                    .arg(month.total.median, 0, 'f', 1)
                    .arg(queries.median, 0, 'f', 1)
                    .arg(rawQueries.median, 0, 'f', 1)
                    .arg(month.rest.median, 0, 'f', 1)
                    .arg(emptyForwardMs, 0, 'f', 1)
                    .arg(month.paint.median, 0, 'f', 1);
            std::printf("  where the time goes (medians): %s\n", qPrintable(breakdown));
            if (source.sqlite && source.size == TargetTableRows) {
                verdicts.push_back({positions[p] + QStringLiteral(": month Forward + paint"), month.total.median});
                verdicts.push_back({positions[p] + QStringLiteral(": month Forward without paint"), month.reload.median});
                verdicts.push_back({positions[p] + QStringLiteral(": month re-layout (resize)"), resize.relayout.median});
                verdicts.push_back({positions[p] + QStringLiteral(": month re-layout (resize) + paint"), resize.withPaint.median});
                verdicts.push_back({positions[p] + QStringLiteral(": week Forward + paint"), week.total.median});
                breakdowns << breakdown;
            }
        }
        delete shown.control;   // lets go of the connection before it closes
        shown.control = nullptr;
        connection.Close();
        std::printf("\n");
    }

    std::printf("Summary (ms; median / p95; runs):\n");
    std::printf("%-11s %-13s %-52s %10s %10s %6s\n", "rows", "viewing", "operation", "median", "p95", "runs");
    for (const Row &row : g_table)
        std::printf("%-11s %-13s %-52s %10.2f %10.2f %6d\n", qPrintable(row.size), qPrintable(row.position),
                    qPrintable(row.operation), row.figures.median, row.figures.p95, row.figures.runs);

    printSideBySide();

    if (!verdicts.empty()) {
        std::printf("\nTargets (issue 5): reload and re-layout at most %.0f ms with %s rows stored (medians):\n",
                    TargetMs, qPrintable(thousands(TargetTableRows)));
        for (const Verdict &verdict : verdicts)
            std::printf("  %-50s %9.2f ms  %s\n", qPrintable(verdict.what), verdict.median,
                        verdict.median <= TargetMs ? "met" : "MISSED");
        std::printf("Where the time goes (medians; layout and filling = per run, Forward alone minus the queries):\n");
        for (const QString &breakdown : breakdowns)
            std::printf("  %s\n", qPrintable(breakdown));
    }
    return 0;
}
