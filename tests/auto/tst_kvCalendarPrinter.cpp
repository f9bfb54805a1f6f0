#include "ctlDay.h"
#include "ctlEntry.h"
#include "kvAppointmentStore.h"
#include "kvAppointmentTable.h"
#include "kvCalendarPage.h"
#include "kvCalendarPrinter.h"
#include "kvConnection.h"
#include "kvPdfPrinterService.h"
#include "kvRuntimeError.h"
#include "kvScopedService.h"
#include "kvSystemPrinterService.h"
#include "kvTestSupport.h"
#include "kvWhenShown.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrintPreviewWidget>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

kvDate at(int year, int month, int day, int hour = 0, int minute = 0)
{
    return kvDate::fromDate(QDate(year, month, day), QTime(hour, minute));
}

const QString LongName = u"Jahreshauptversammlung des Kleingartenvereins Sonnenschein e.V. im Vereinsheim"_s;
const QString Footnote = u"Gedruckt mit kvKalivo – Praxis Dr. Sommer, Telefon intern zwei"_s;

//! November 2026, loaded as the store's per-day query fills a cell: continued rows get "<--".
void loadNovember(const kvDate &day, ctlDay &cell)
{
    const auto add = [&](const kvDate &begin, const kvDate &end, const QString &name) {
        if (day < begin.dateOnly() || day > end.dateOnly())
            return;
        cell.AddDate(cell.EntriesCount() + 1, begin, end, name, QString(), QString(), 0, 0xFFFFFFu, 0);
        if (day > begin)
            cell.Entries(qint16(cell.EntriesCount()))->setIsContinuedDate(true);
    };
    add(at(2026, 11, 3, 9, 30), at(2026, 11, 3, 10, 30), u"Zahnarzt Dr. Weber"_s);
    add(at(2026, 11, 5, 8, 0), at(2026, 11, 5, 9, 0), LongName);
    add(at(2026, 11, 10), at(2026, 11, 10), u"Betriebsausflug"_s);
    add(at(2026, 11, 12, 14, 0), at(2026, 11, 14, 12, 0), u"Messe München"_s);
    add(at(2026, 11, 25, 18, 15), at(2026, 11, 25, 20, 0), u"Elternabend"_s);
    add(at(2026, 11, 29, 11, 0), at(2026, 11, 29, 12, 0), u"Adventsbasar"_s);
    for (int i = 1; i <= 12; ++i)
        add(at(2026, 11, 27, 7 + i / 2, (i % 2) * 30), at(2026, 11, 27, 8 + i / 2),
            u"Termin %1"_s.arg(i, 2, 10, QLatin1Char('0')));
}

//! The text of \a pdf as `pdftotext -layout` extracts it.
QString pdfText(const QString &pdf)
{
    QProcess process;
    process.start(u"pdftotext"_s, {u"-layout"_s, u"-enc"_s, u"UTF-8"_s, pdf, u"-"_s});
    if (!process.waitForFinished(30000) || process.exitCode() != 0)
        return QString();
    return QString::fromUtf8(process.readAllStandardOutput());
}

//! \a time and every word of \a name are on the page (a name may wrap in its box).
bool hasEntry(const QString &text, const QString &time, const QString &name)
{
    if (!text.contains(time))
        return false;
    for (const QString &word : name.split(QLatin1Char(' ')))
        if (!text.contains(word))
            return false;
    return true;
}

//! \a time directly followed by \a name on one line.
bool hasLine(const QString &text, const QString &time, const QString &name)
{
    return text.contains(QRegularExpression(QRegularExpression::escape(time) + u"\\s+"_s
                                            + QRegularExpression::escape(name)));
}

//! Every box date ("23.11.") on the page, in reading order.
QStringList dateLabels(const QString &text)
{
    QStringList labels;
    QRegularExpressionMatchIterator it =
        QRegularExpression(u"(?<![\\d.])\\d\\d\\.\\d\\d\\.(?!\\d)"_s).globalMatch(text);
    while (it.hasNext())
        labels.append(it.next().captured(0));
    return labels;
}

QStringList expectedLabels(const kvDate &first, int count)
{
    QStringList labels;
    for (int i = 0; i < count; ++i)
        labels.append(kvCalendarPage::DateLabel(first.addDays(i)));
    return labels;
}

} // namespace

class tst_kvCalendarPrinter : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;

    QString pdfPath(const QString &name) const { return m_folder.filePath(name + u".pdf"_s); }

    QString printToText(const kvCalendarPrinter::Job &job, const QString &name)
    {
        kvPdfPrinterService pdf(pdfPath(name));
        kvScopedService installed(pdf);
        return kvCalendarPrinter(job).Print() ? pdfText(pdf.FilePath()) : QString();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_folder.isValid());
        QVERIFY2(!QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty(),
                 "pdftotext missing: run scripts/install-deps.sh (poppler-utils)");
    }

    // A week is Monday to Sunday; a month 42 days from the Monday on or before the 1st.
    void daysAndCaption_data()
    {
        QTest::addColumn<kvDate>("date");
        QTest::addColumn<int>("view");
        QTest::addColumn<kvDate>("firstDay");
        QTest::addColumn<QString>("caption");
        QTest::newRow("week") << at(2026, 11, 25, 15, 45) << 1 << at(2026, 11, 23) << u"November 2026"_s;
        QTest::newRow("week from its Sunday") << at(2026, 11, 29) << 1 << at(2026, 11, 23) << u"November 2026"_s;
        QTest::newRow("week across the year") << at(2026, 12, 31) << 1 << at(2026, 12, 28) << u"Dez/Jan 2027"_s;
        QTest::newRow("month from a Sunday 1st") << at(2026, 11, 18) << 2 << at(2026, 10, 26) << u"November 2026"_s;
        QTest::newRow("month from a Monday 1st") << at(2026, 6, 30) << 2 << at(2026, 6, 1) << u"Juni 2026"_s;
    }
    void daysAndCaption()
    {
        QFETCH(kvDate, date);
        QFETCH(int, view);
        QFETCH(kvDate, firstDay);
        QFETCH(QString, caption);
        const kvCalendarPrinter printer({date, view});
        QCOMPARE(printer.FirstDay(), firstDay);
        QCOMPARE(printer.DayCount(), view == 1 ? 7 : 42);
        QCOMPARE(printer.Caption(), caption);
        QCOMPARE(printer.DocumentName(), u"Kalender "_s + caption);
    }

    void invalidViewThrows5() { QCOMPARE(errorNumber([] { kvCalendarPrinter({at(2026, 1, 1), 3}); }), 5); }

    void monthPrintsEverything()
    {
        kvCalendarPrinter::Job job{at(2026, 11, 18), kvCalendarPrinter::Month, Footnote};
        job.LoadDay = loadNovember;
        const QString text = printToText(job, u"month-2026-11"_s);
        QVERIFY2(!text.isEmpty(), "nothing printed");

        QCOMPARE(text.count(u'\f'), 1); // one page
        QVERIFY(text.contains(u"November 2026"_s));
        for (const QString &day : {u"Montag"_s, u"Dienstag"_s, u"Mittwoch"_s, u"Donnerstag"_s,
                                   u"Freitag"_s, u"Samstag"_s, u"Sonntag"_s})
            QVERIFY2(text.contains(day), qPrintable(day));
        for (const QString &holiday : {u"Allerheiligen"_s, u"Volkstrauertag"_s, u"Buss und Bettag"_s,
                                       u"Totensonntag"_s, u"1. Advent"_s, u"2. Advent"_s})
            QVERIFY2(text.contains(holiday), qPrintable(holiday));
        QVERIFY(hasEntry(text, u"09:30"_s, u"Zahnarzt Dr. Weber"_s));
        QVERIFY(hasLine(text, u"14:00"_s, u"Messe München"_s));
        QCOMPARE(text.count(QRegularExpression(u"<--\\s+Messe"_s)), 2);
        QVERIFY(hasLine(text, u"18:15"_s, u"Elternabend"_s));
        QVERIFY(text.contains(u"Betriebsausflug"_s));
        QVERIFY(!text.contains(QRegularExpression(u"\\d\\d:\\d\\d\\s+Betriebsausflug"_s)));
        QVERIFY(text.contains(Footnote));
        for (int week = 44; week <= 49; ++week)
            QVERIFY2(text.contains(u"%1. KW"_s.arg(week)), qPrintable(QString::number(week)));

        // The long name is shortened with "…"; the full box of 27 November ends with "+ N weitere".
        QVERIFY(text.contains(u"Jahreshaupt"_s));
        QVERIFY(!text.contains(LongName));
        QVERIFY(text.contains(u"…"_s));
        const QRegularExpressionMatch more = QRegularExpression(u"\\+ (\\d+) weitere"_s).match(text);
        QVERIFY(more.hasMatch());
        int shown = 0;
        for (int i = 1; i <= 12; ++i)
            shown += text.contains(u"Termin %1"_s.arg(i, 2, 10, QLatin1Char('0'))) ? 1 : 0;
        QCOMPARE(shown + more.captured(1).toInt(), 12);
        QVERIFY(shown >= 3);

        QCOMPARE(dateLabels(text), expectedLabels(at(2026, 10, 26), 42));
    }

    void failingDayLoaderThrowsAndPrintsNothing()
    {
        kvPdfPrinterService pdf(pdfPath(u"failing"_s));
        kvScopedService installed(pdf);
        kvCalendarPrinter::Job job{at(2026, 11, 18), kvCalendarPrinter::Month};
        int loaded = 0;
        job.LoadDay = [&loaded](const kvDate &, ctlDay &cell) {
            if (++loaded == 10)
                throw kvRuntimeError(3021, u"Entweder BOF oder EOF ist True"_s);
            cell.AddDate(1, at(2026, 11, 1, 9), at(2026, 11, 1, 10), u"x"_s, {}, {}, 0, 0xFFFFFFu, 0);
        };
        QString description;
        QCOMPARE(errorNumber([&] { kvCalendarPrinter(job).Print(); }, &description), 3021);
        QCOMPARE(description, u"Entweder BOF oder EOF ist True"_s);
        QCOMPARE(loaded, 10);
        QCOMPARE(pdf.CallCount(), 0);
        QVERIFY(!QFileInfo::exists(pdf.FilePath()));

        job.LoadDay = [](const kvDate &, ctlDay &) { throw std::runtime_error("Datenbank weg"); };
        QCOMPARE(errorNumber([&] { kvCalendarPrinter(job).Print(); }, &description), 482);
        QCOMPARE(description, u"Datenbank weg"_s);
        QCOMPARE(pdf.CallCount(), 0);
    }

    // A cancelled print is no failure and writes nothing.
    void cancelledPrintWritesNothing()
    {
        kvPdfPrinterService cancelled(pdfPath(u"cancelled"_s));
        cancelled.SetCancelled(true);
        kvScopedService installed(cancelled);
        bool printed = true;
        QCOMPARE(errorNumber([&] { printed = kvCalendarPrinter({at(2026, 11, 18), 2}).Print(); }), 0);
        QVERIFY(!printed);
        QCOMPARE(cancelled.CallCount(), 1);
        QCOMPARE(cancelled.Calls().first().DocumentName, u"Kalender November 2026"_s);
        QCOMPARE(cancelled.Calls().first().PageLayout.orientation(), QPageLayout::Landscape);
        QCOMPARE(cancelled.Calls().first().PageLayout.pageSize().id(), QPageSize::A4);
        QVERIFY(!QFileInfo::exists(cancelled.FilePath()));
    }

    void sqliteAppointmentsThroughTheStore_data()
    {
        QTest::addColumn<bool>("parameterized");
        QTest::addColumn<int>("queries");   // per page
        QTest::newRow("legacy: one query a day") << false << 7;
        QTest::newRow("ParameterizedSql: one query a page") << true << 1;
    }
    void sqliteAppointmentsThroughTheStore()
    {
        QFETCH(bool, parameterized);
        QFETCH(int, queries);
        kvConnection connection;
        int sent = 0;
        QObject::connect(&connection, &kvConnection::StatementExecuted, [&sent](const QString &sql) {
            sent += sql.startsWith(u"SELECT Termine.* From"_s);
        });
        connection.Open(u"Driver=SQLite3;Database="_s + m_folder.filePath(u"termine%1.db"_s.arg(parameterized)));
        kvAppointmentTable::Create(connection, u"Termine"_s);
        const auto insert = [&connection](const kvDate &begin, const kvDate &end, const QString &name) {
            connection.Execute(u"INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES (?, ?, ?)"_s,
                               {QVariant::fromValue(begin), QVariant::fromValue(end), name});
        };
        insert(at(2026, 11, 23, 8, 15), at(2026, 11, 23, 9, 0), u"Teambesprechung"_s);
        insert(at(2026, 11, 24, 13, 0), at(2026, 11, 26, 17, 0), u"Schulung Köln"_s);
        insert(at(2026, 11, 27), at(2026, 11, 27), u"Brückentag"_s);
        insert(at(2026, 11, 30, 9, 0), at(2026, 11, 30, 10, 0), u"Nächste Woche"_s);

        kvAppointmentStore store;
        store.setRecordSource(u"Termine"_s);
        store.setParameterizedSql(parameterized);
        QVERIFY(store.SetConnection(&connection).has_value());
        kvCalendarPrinter::Job job{at(2026, 11, 25), kvCalendarPrinter::Week, u"SQLite"_s};
        job.PublicHoliday = false;
        job.LoadDay = kvCalendarPrinter::StoreLoader(store);
        const QString text = printToText(job, u"sqlite"_s);

        QVERIFY(hasEntry(text, u"08:15"_s, u"Teambesprechung"_s));
        QVERIFY(hasLine(text, u"13:00"_s, u"Schulung Köln"_s));
        QCOMPARE(text.count(QRegularExpression(u"<--\\s+Schulung"_s)), 2);
        QVERIFY(text.contains(u"Brückentag"_s));
        QVERIFY(!text.contains(u"Advent"_s)); // 29 November, but no holidays were asked for
        QVERIFY(!text.contains(u"Nächste Woche"_s));
        QCOMPARE(dateLabels(text), expectedLabels(at(2026, 11, 23), 7));
        QCOMPARE(sent, queries);

        // A failing per-day query ("12-" step) is thrown and nothing is printed.
        connection.Execute(u"DROP TABLE Termine"_s);
        kvPdfPrinterService pdf(pdfPath(u"sqlite-failed"_s));
        kvScopedService installed(pdf);
        QString description;
        QCOMPARE(errorNumber([&] { kvCalendarPrinter(job).Print(); }, &description), 482);
        QVERIFY2(description.startsWith(u"12-"_s), qPrintable(description));
        QCOMPARE(pdf.CallCount(), 0);
    }

    // The print dialog's own "Print to File (PDF)" is the printer a machine without one has.
    void systemPrinterShowsThePreview_data()
    {
        QTest::addColumn<int>("stage"); // 0: the print dialog is cancelled, 1: the preview, 2: printed
        QTest::newRow("cancelled in the print dialog") << 0;
        QTest::newRow("cancelled in the preview") << 1;
        QTest::newRow("printed from the preview") << 2;
    }
    void systemPrinterShowsThePreview()
    {
        QFETCH(int, stage);
        const bool print = stage == 2;
        kvCalendarPrinter::Job calendar{at(2026, 11, 18), kvCalendarPrinter::Month, Footnote};
        calendar.LoadDay = loadNovember;
        const kvCalendarPage page = kvCalendarPrinter(calendar).LoadPage();
        int rendered = 0;
        kvPrinterService::Job job{u"Kalender November 2026"_s, kvPrinterService::A4Landscape(),
                                  [&](QPagedPaintDevice &device) {
                                      ++rendered;
                                      kvCalendarPrinter::Render(page, device);
                                  }};
        const QString target = pdfPath(u"system"_s);
        bool fileChosen = false;
        int previewPages = -1;
        whenShown<QPrintDialog>([](QPrintDialog *) { return true; }, [&](QPrintDialog *dialog) {
            auto *printers = dialog->findChild<QComboBox *>(u"printers"_s);
            auto *fileName = dialog->findChild<QLineEdit *>(u"filename"_s);
            if (printers && fileName) {
                printers->setCurrentIndex(printers->count() - 1);
                fileName->setText(target);
                fileChosen = true;
            }
            if (stage == 0)
                return dialog->reject();
            const auto isPreview = [](QDialog *d) {
                return d->objectName() == QLatin1String(kvSystemPrinterService::PreviewObjectName);
            };
            whenShown<QDialog>(isPreview, [&](QDialog *preview) {
                auto *widget = preview->findChild<QPrintPreviewWidget *>();
                previewPages = widget ? widget->pageCount() : -1;
                if (print)
                    QTest::mouseClick(preview->findChild<QPushButton *>(u"cmdPrint"_s), Qt::LeftButton);
                else
                    preview->reject();
            });
            dialog->accept();
        });
        QCOMPARE(kvSystemPrinterService().Print(nullptr, job), print);
        QCOMPARE(previewPages, stage == 0 ? -1 : 1);
        QCOMPARE(rendered > 0, stage > 0);
        QVERIFY2(fileChosen, "the print dialog offers no print-to-file choice to script");
        QCOMPARE(QFileInfo::exists(target), print);
        if (print) {
            const QString text = pdfText(target);
            QVERIFY(text.contains(u"November 2026"_s));
            QVERIFY(text.contains(Footnote));
        }
    }

    void systemPrinterRethrowsAFailingRenderAfterClosing()
    {
        kvPrinterService::Job job{u"Kalender"_s, kvPrinterService::A4Landscape(),
                                  [](QPagedPaintDevice &) { throw kvRuntimeError(7, u"Nicht genügend Speicher"_s); }};
        whenShown<QPrintDialog>([](QPrintDialog *) { return true; }, [](QPrintDialog *dialog) { dialog->accept(); });
        QCOMPARE(errorNumber([&] { kvSystemPrinterService().Print(nullptr, job); }), 7);
        QVERIFY(!QApplication::activeModalWidget());
    }
};

QTEST_MAIN(tst_kvCalendarPrinter)
#include "tst_kvCalendarPrinter.moc"
