// kvGallery <folder>: writes pictures of the control and its parts into <folder>, for a person
// to look at. It checks nothing; the automatic tests do.
#include "frmEdit.h"
#include "frmPicSelector.h"
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
    const QString path = output.filePath(name + QStringLiteral(".png"));
    std::printf("%s%s\n", qPrintable(path), widget.grab().save(path) ? "" : " (failed)");
}

kvDate at(int month, int day, int hour = 0, int minute = 0)
{
    return kvDate::fromDate(QDate(2026, month, day), QTime(hour, minute));
}

// Both views with holidays, icons, a continued appointment and a full day; then the printout.
void calendarAndPrintout()
{
    kvTestCalendar calendar(QSize(1280, 800));
    calendar.add(at(11, 16, 10), at(11, 16, 11), QStringLiteral("Teambesprechung Projekt Nordlicht"), 11);
    calendar.add(at(11, 18), at(11, 21), QStringLiteral("Urlaub Mallorca"), 41);
    calendar.add(at(11, 20, 14, 30), at(11, 20, 15), QStringLiteral("Zahnarzt Dr. Weber"));
    for (int hour = 8; hour < 16; ++hour) // more than the day's cell shows
        calendar.add(at(11, 17, hour), at(11, 17, hour, 45), QStringLiteral("Sprechstunde %1 Uhr").arg(hour));
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
    QProcess::execute(QStringLiteral("pdftoppm"), {QStringLiteral("-png"), QStringLiteral("-singlefile"), pdf,
                                                   output.filePath(QStringLiteral("kvKalivo-printout"))});
}

void dialogs()
{
    frmEdit &editor = frmEdit::ThreadInstance();
    editor.SetDateValues(at(11, 15, 9), at(11, 15, 10, 30), QStringLiteral("Zahnarzt"),
                         QStringLiteral("Kontrolle und Zahnreinigung\nBonusheft mitnehmen!"), 23,
                         QStringLiteral("/home/anna/Dokumente/Zahnarzt-Rechnung.pdf"), 3);
    save(editor, QStringLiteral("frmEdit"));
    editor.hide();
    frmPicSelector &picker = frmPicSelector::ThreadInstance();
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
    calendarAndPrintout();
    dialogs();
    return 0;
}
