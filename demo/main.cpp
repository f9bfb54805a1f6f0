#include "DemoAccessibilityDump.h"
#include "DemoClock.h"
#include "DemoDatabase.h"
#include "DemoWindow.h"

#include "kvPlatform.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QLibraryInfo>
#include <QLocale>
#include <QMessageBox>
#include <QSettings>
#include <QTextStream>
#include <QTranslator>

#include <memory>

namespace {

int TakeScreenshot(DemoWindow &window, const QString &path, const QSize &size)
{
    window.resize(size);
    window.show();
    QApplication::processEvents();
    if (!window.grab().save(path)) {
        QTextStream(stderr) << "kvkalivo-demo: cannot write the screenshot " << path << '\n';
        return 1;
    }
    return 0;
}

int UsageError(const QString &message)
{
    QTextStream(stderr) << "kvkalivo-demo: " << message << '\n';
    return 2;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("kvKalivo"));
    QApplication::setApplicationName(QStringLiteral("kvkalivo-demo"));
    QApplication::setApplicationDisplayName(QStringLiteral("kvKalivo Demo"));
    // The file and print dialogs in German, like the control (Qt's translation, Debian:
    // qt6-translations-l10n).
    QTranslator qtGerman;
    if (qtGerman.load(QLocale(QLocale::German, QLocale::Germany), QStringLiteral("qtbase"),
                      QStringLiteral("_"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&qtGerman);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "The kvKalivo demo host application. On first run (an empty table) it fills the table "
        "with a sample German calendar from three months before to three months after --date "
        "(default: today)."));
    parser.addHelpOption();
    const QCommandLineOption databaseOption(QStringLiteral("database"),
        QStringLiteral("The SQLite database file (created when missing)."), QStringLiteral("file"),
        DemoDatabase::DefaultPath());
    const QCommandLineOption connectionOption(QStringLiteral("connection"),
        QStringLiteral("Any ADO-style connection string instead of the SQLite file, e.g. "
                       "\"Driver={MySQL ODBC 8.0 Driver};Server=127.0.0.1;Database=termine;Uid=u;Pwd=p\"."),
        QStringLiteral("string"));
    const QCommandLineOption viewOption(QStringLiteral("view"),
        QStringLiteral("Open in week or month view (default: as saved; a fresh control shows the week)."),
        QStringLiteral("week|month"));
    const QCommandLineOption dateOption(QStringLiteral("date"),
        QStringLiteral("Open on this day (default: as saved, else today). With --screenshot it is also "
                       "taken as today."),
        QStringLiteral("yyyy-mm-dd"));
    const QCommandLineOption screenshotOption(QStringLiteral("screenshot"),
        QStringLiteral("Render the window offscreen into a PNG file and exit; saved settings are "
                       "neither read nor written."),
        QStringLiteral("file"));
    const QCommandLineOption sizeOption(QStringLiteral("size"),
        QStringLiteral("Window size for --screenshot, WIDTHxHEIGHT."), QStringLiteral("size"),
        QStringLiteral("1280x800"));
    const QCommandLineOption accessibilityOption(QStringLiteral("accessibility-dump"),
        QStringLiteral("For tests driving the window: write what a screen reader sees of the windows "
                       "(role, name, place on the screen, focus) into this file whenever it changes."),
        QStringLiteral("file"));
    parser.addOptions({databaseOption, connectionOption, viewOption, dateOption, screenshotOption, sizeOption,
                       accessibilityOption});
    parser.process(app);

    DemoOptions options;
    if (parser.isSet(viewOption)) {
        const QString view = parser.value(viewOption).toLower();
        if (view == QLatin1String("week") || view == QLatin1String("woche"))
            options.view = kvKalivo::kvWeek;
        else if (view == QLatin1String("month") || view == QLatin1String("monat"))
            options.view = kvKalivo::kvMonth;
        else
            return UsageError(QStringLiteral("--view must be week or month, not '%1'").arg(parser.value(viewOption)));
    }
    if (parser.isSet(dateOption)) {
        options.date = QDate::fromString(parser.value(dateOption), QStringLiteral("yyyy-MM-dd"));
        if (!options.date.isValid())
            return UsageError(QStringLiteral("--date must be a day as yyyy-mm-dd, not '%1'")
                                  .arg(parser.value(dateOption)));
    }
    options.sampleAnchor = options.date.isValid() ? options.date : QDate::currentDate();
    const bool screenshot = parser.isSet(screenshotOption);

    const QString connectionString = parser.isSet(connectionOption)
        ? parser.value(connectionOption)
        : DemoDatabase::SqliteConnectionString(parser.value(databaseOption));
    auto database = std::make_unique<DemoDatabase>();
    QString error;
    DemoData::Summary summary;
    if (!database->Open(connectionString, &error) || !database->FillIfEmpty(options.sampleAnchor, &summary, &error)) {
        QTextStream(stderr) << "kvkalivo-demo: cannot open " << connectionString << ": " << error << '\n';
        if (!screenshot)
            QMessageBox::critical(nullptr, QStringLiteral("kvKalivo Demo"), error);
        return 1;
    }
    if (summary.appointments > 0)
        QTextStream(stdout) << "kvkalivo-demo: table " << DemoDatabase::TableName << " was empty; created "
                            << summary.Text() << '\n';

    // A screenshot must not depend on the day it is made nor on earlier runs: with --date
    // that day is "today" (the control's today mark), and the control starts fresh.
    DemoClock screenshotClock(kvDate::fromDate(options.sampleAnchor, QTime(12, 0)));
    if (screenshot && options.date.isValid())
        kvPlatform::setClock(&screenshotClock);

    QSettings settings;
    int result = 0;
    {
        DemoWindow window(std::move(database), screenshot ? nullptr : &settings, options);
        if (screenshot) {
            const QStringList size = parser.value(sizeOption).split(QLatin1Char('x'));
            const QSize windowSize = size.size() == 2 ? QSize(size[0].toInt(), size[1].toInt())
                                                      : QSize(1280, 800);
            result = TakeScreenshot(window, parser.value(screenshotOption), windowSize);
        } else {
            std::unique_ptr<DemoAccessibilityDump> dump;
            if (parser.isSet(accessibilityOption))
                dump = std::make_unique<DemoAccessibilityDump>(parser.value(accessibilityOption));
            window.show();
            result = app.exec();
        }
    }
    kvPlatform::setClock(nullptr);
    return result;
}
