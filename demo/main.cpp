#include "DemoDatabase.h"
#include "DemoWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>
#include <QSettings>
#include <QTextStream>

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

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("kvKalivo"));
    QApplication::setApplicationName(QStringLiteral("kvkalivo-demo"));
    QApplication::setApplicationDisplayName(QStringLiteral("kvKalivo Demo"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("The kvKalivo demo host application."));
    parser.addHelpOption();
    const QCommandLineOption databaseOption(QStringLiteral("database"),
        QStringLiteral("The SQLite database file (created when missing)."), QStringLiteral("file"),
        DemoDatabase::DefaultPath());
    const QCommandLineOption connectionOption(QStringLiteral("connection"),
        QStringLiteral("Any ADO-style connection string instead of the SQLite file, e.g. "
                       "\"Driver={MySQL ODBC 8.0 Driver};Server=127.0.0.1;Database=termine;Uid=u;Pwd=p\"."),
        QStringLiteral("string"));
    const QCommandLineOption screenshotOption(QStringLiteral("screenshot"),
        QStringLiteral("Render the window offscreen into a PNG file and exit."), QStringLiteral("file"));
    const QCommandLineOption sizeOption(QStringLiteral("size"),
        QStringLiteral("Window size for --screenshot, WIDTHxHEIGHT."), QStringLiteral("size"),
        QStringLiteral("1280x800"));
    parser.addOptions({databaseOption, connectionOption, screenshotOption, sizeOption});
    parser.process(app);

    const QString connectionString = parser.isSet(connectionOption)
        ? parser.value(connectionOption)
        : DemoDatabase::SqliteConnectionString(parser.value(databaseOption));
    DemoDatabase database;
    QString error;
    if (!database.Open(connectionString, &error)) {
        QTextStream(stderr) << "kvkalivo-demo: cannot open " << connectionString << ": " << error << '\n';
        if (!parser.isSet(screenshotOption))
            QMessageBox::critical(nullptr, QStringLiteral("kvKalivo Demo"), error);
        return 1;
    }

    QSettings settings;
    DemoWindow window(database, &settings);
    if (parser.isSet(screenshotOption)) {
        const QStringList size = parser.value(sizeOption).split(QLatin1Char('x'));
        const QSize windowSize = size.size() == 2 ? QSize(size[0].toInt(), size[1].toInt())
                                                  : QSize(1280, 800);
        return TakeScreenshot(window, parser.value(screenshotOption), windowSize);
    }
    window.show();
    return app.exec();
}
