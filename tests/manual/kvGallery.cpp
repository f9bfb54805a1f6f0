// kvGallery <folder>: writes pictures of the control and its parts as a host sees them into
// <folder>, for a person to look at. It checks nothing; the automatic tests do.
#include "ctlDay.h"
#include "ctlEntry.h"
#include "ctlKW.h"
#include "ctlToolTip.h"
#include "frmEdit.h"
#include "frmPicSelector.h"
#include "kvCalendarWeek.h"
#include "kvFixedClock.h"
#include "kvPdfPrinterService.h"
#include "kvScopedService.h"
#include "kvTestCalendar.h"

#include <QApplication>
#include <QDir>
#include <QProcess>
#include <QTabBar>
#include <QTest>

#include <cstdio>

namespace {

QDir output;

void save(QWidget &widget, const QString &name)
{
    widget.show();
    (void)QTest::qWaitForWindowExposed(&widget);
    QApplication::processEvents();
    const QString path = output.filePath(name + QStringLiteral(".png"));
    std::printf("%s%s\n", qPrintable(path), widget.grab().save(path) ? "" : " (failed)");
}

kvDate at(int month, int day, int hour = 0, int minute = 0)
{
    return kvDate::fromDate(QDate(2026, month, day), QTime(hour, minute));
}

void addRow(ctlDay &cell, const QString &text, int hour, int minute = 0, qint16 image = 0, uint back = 0xFFFFFF)
{
    const kvDate begin = kvDate::fromDate(cell.datDay().date(), QTime(hour, minute));
    cell.AddDate(cell.EntriesCount() + 1, begin, begin.addMinutes(60), text, QString(), QString(), image, back, 0);
}

void dayCells()
{
    const QList<std::pair<QString, std::function<void(ctlDay &)>>> variants{
        {QStringLiteral("empty"), [](ctlDay &) {}},
        {QStringLiteral("three-rows-icons"), [](ctlDay &cell) {
             addRow(cell, QStringLiteral("Frühstück mit Anna"), 8, 0, 11);
             addRow(cell, QStringLiteral("Zahnarzt Dr. Müller"), 14, 30, 23);
             addRow(cell, QStringLiteral("Weihnachtsfeier"), 18, 0, 35, 0xC0FFC0);
         }},
        {QStringLiteral("eight-rows"), [](ctlDay &cell) {
             for (int i = 0; i < 8; ++i)
                 addRow(cell, QStringLiteral("Termin %1 mit einem langen Text").arg(i + 1), 8 + i, i % 2 ? 30 : 0);
         }},
        {QStringLiteral("continued"), [](ctlDay &cell) {
             addRow(cell, QStringLiteral("Skiurlaub in Österreich"), 0, 0, 0, 0xC0E0FF);
             cell.Entries(1)->setIsContinuedDate(true);
             addRow(cell, QStringLiteral("Elternabend"), 19);
         }},
        {QStringLiteral("holiday"), [](ctlDay &cell) {
             cell.setPublicHolidayName(QStringLiteral("1. Weihnachtstag"));
             addRow(cell, QStringLiteral("Gänsebraten bei Familie Schmidt"), 12, 30);
         }},
        {QStringLiteral("today"), [](ctlDay &cell) {
             cell.setTodayHeaderColor(0xC0C0FF);
             cell.setIsToday(true);
             addRow(cell, QStringLiteral("Heute: Projektabgabe"), 16);
         }},
        {QStringLiteral("actual-day"), [](ctlDay &cell) {
             cell.setIsActualDay(true);
             cell.setBorderVisible(true);
             addRow(cell, QStringLiteral("Ausgewählter Tag"), 10);
         }},
    };
    for (const auto &[name, fill] : variants) {
        ctlDay cell;
        cell.resize(300, 120);
        cell.Init(at(12, 25), QString(), QString(), 0xE0E0E0, 0);
        fill(cell);
        save(cell, QStringLiteral("ctlDay-") + name);
    }
}

void weekColumn()
{
    QWidget host;
    host.resize(17, 6 * 81 + 1);
    ctlKW column(&host);
    column.setGeometry(1, 1, 15, 6 * 81);
    for (int row = 0; row < 6; ++row) // the month grid of December 2026
        column.Add(QString::number(GetCalendarWeek(QDate(2026, 11, 30).addDays(7 * row))));
    column.setSectionheight(80);
    column.Paint();
    save(host, QStringLiteral("ctlKW-month"));
}

void toolTips()
{
    const QList<QStringList> variants{
        {QStringLiteral("short"), QStringLiteral("09:30"), QStringLiteral("Zahnarzt"), QStringLiteral("Bonusheft mitnehmen")},
        {QStringLiteral("long-text"), QStringLiteral("18:30"),
         QStringLiteral("Jahreshauptversammlung des Kleingartenvereins „Grüne Aue“ mit Neuwahl des Vorstands"),
         QStringLiteral("Vereinsheim, Am Weiher 3\r\nBitte pünktlich kommen, der Saal wird um 18 Uhr geöffnet "
                        "und die Versammlung beginnt ohne Verzögerung.")},
        {QStringLiteral("continued"), QStringLiteral("<--"), QStringLiteral("Urlaub an der Ostsee"), QString()},
    };
    for (const QStringList &variant : variants) {
        QWidget host;
        host.setAutoFillBackground(true);
        ctlToolTip toolTip(&host);
        toolTip.setTime(variant.at(1));
        toolTip.setText(variant.at(2));
        toolTip.setRemark(variant.at(3));
        toolTip.setMinWidth(120);
        toolTip.setNormalWidth(120);
        toolTip.Resize();
        toolTip.move(8, 8);
        toolTip.show();
        host.resize(toolTip.width() + 16, toolTip.height() + 16);
        save(host, QStringLiteral("ctlToolTip-") + variant.at(0));
    }
}

void calendarAndPrintout()
{
    kvTestCalendar calendar(QSize(1280, 800));
    calendar.add(at(11, 16, 8), at(11, 16, 9), QStringLiteral("Frühstück mit Anna"), 31);
    calendar.add(at(11, 16, 10), at(11, 16, 11), QStringLiteral("Teambesprechung Projekt Nordlicht"), 11,
                 QStringLiteral("Raum 4"));
    calendar.add(at(11, 18), at(11, 21), QStringLiteral("Urlaub Mallorca"), 41);
    calendar.add(at(11, 20, 14, 30), at(11, 20, 15), QStringLiteral("Zahnarzt Dr. Weber"));
    calendar.add(at(11, 25, 19), at(11, 25, 21), QStringLiteral("Elternabend"));
    calendar.control.setPublicHoliday(true);
    calendar.control.setFootnote(QStringLiteral("Praxis Dr. Sommer"));
    calendar.control.setActualDate(QDate(2026, 11, 20));
    for (const auto view : {kvKalivo::kvWeek, kvKalivo::kvMonth}) {
        calendar.control.setView(view);
        save(calendar.control, view == kvKalivo::kvWeek ? QStringLiteral("kvKalivo-week") : QStringLiteral("kvKalivo-month"));
    }
    const QString pdf = output.filePath(QStringLiteral("kvKalivo-printout.pdf"));
    kvPdfPrinterService printer(pdf);
    kvScopedService installed(printer);
    calendar.control.PrintCalendar();
    QProcess::execute(QStringLiteral("pdftoppm"), {QStringLiteral("-png"), QStringLiteral("-r"), QStringLiteral("60"),
                                                   QStringLiteral("-singlefile"), pdf, output.filePath(QStringLiteral("kvKalivo-printout"))});
    std::printf("%s\n", qPrintable(output.filePath(QStringLiteral("kvKalivo-printout.png"))));
}

void dialogs()
{
    frmEdit &editor = frmEdit::ThreadInstance();
    editor.SetDateValues(at(11, 15), at(11, 15), QString(), QString(), 0, QString(), 1);
    save(editor, QStringLiteral("frmEdit-new"));
    editor.hide();
    editor.SetDateValues(at(11, 15, 9), at(11, 15, 10, 30), QStringLiteral("Zahnarzt"),
                         QStringLiteral("Kontrolle und Zahnreinigung\nBonusheft mitnehmen!"), 23,
                         QStringLiteral("/home/anna/Dokumente/Zahnarzt-Rechnung.pdf"), 3);
    save(editor, QStringLiteral("frmEdit-existing"));
    editor.hide();
    frmPicSelector &picker = frmPicSelector::ThreadInstance();
    picker.Reset();
    for (int tab = 0; tab < frmPicSelector::CategoryCount; ++tab) {
        picker.TabStrip()->setCurrentIndex(tab);
        save(picker, QStringLiteral("frmPicSelector-tab%1").arg(tab + 1));
    }
    picker.hide();
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (argc != 2 || !QDir().mkpath(QString::fromLocal8Bit(argv[1]))) {
        std::fprintf(stderr, "usage: kvGallery <folder for the PNG files>\n");
        return 2;
    }
    output = QDir(QString::fromLocal8Bit(argv[1]));
    kvFixedClock clock(kvDate::fromDate(QDate(2026, 11, 22), QTime(9, 41)));
    kvScopedService installedClock(clock);
    dayCells();
    weekColumn();
    toolTips();
    calendarAndPrintout();
    dialogs();
    return 0;
}
