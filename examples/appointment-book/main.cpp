// An appointment book: a main window with the kvKalivo control on an SQLite file.
#include "AppointmentBook.h"

#include <kvKalivo/kvConnection.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QMessageBox>
#include <QStandardPaths>
#include <QTextStream>
#include <QTranslator>

namespace {

QString DefaultDatabasePath()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    return QDir(folder).filePath(QStringLiteral("termine.sqlite"));
}

//! The database given on the command line, else the default file (its folder created).
QString DatabasePath(const QStringList &arguments)
{
    if (!arguments.isEmpty())
        return arguments.first();
    const QString path = DefaultDatabasePath();
    QDir().mkpath(QFileInfo(path).absolutePath());
    return path;
}

int ReportOpenFailure(const QString &path, const QString &error, bool screenshot)
{
    const QString message = QStringLiteral("cannot open the database %1: %2").arg(path, error);
    QTextStream(stderr) << "appointment-book: " << message << '\n';
    if (!screenshot)
        QMessageBox::critical(nullptr, QStringLiteral("Terminbuch"), message);
    return 1;
}

int SaveScreenshot(AppointmentBook &window, const QString &file)
{
    window.show();
    QApplication::processEvents();
    if (window.grab().save(file))
        return 0;
    QTextStream(stderr) << "appointment-book: cannot write the screenshot " << file << '\n';
    return 1;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("kvKalivo"));
    QApplication::setApplicationName(QStringLiteral("appointment-book"));
    // The control speaks German; Qt's own dialogs (file, print) do so with Qt's translation
    // (Debian: qt6-translations-l10n).
    QTranslator qtGerman;
    if (qtGerman.load(QLocale(QLocale::German, QLocale::Germany), QStringLiteral("qtbase"),
                      QStringLiteral("_"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&qtGerman);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("An appointment book on the kvKalivo control."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("database"),
        QStringLiteral("The SQLite file, created when missing (default: %1).").arg(DefaultDatabasePath()),
        QStringLiteral("[database]"));
    const QCommandLineOption screenshotOption(QStringLiteral("screenshot"),
        QStringLiteral("Render the window into a PNG file and exit."), QStringLiteral("file"));
    parser.addOption(screenshotOption);
    parser.process(app);

    if (parser.positionalArguments().size() > 1)
        parser.showHelp(2);
    const QString path = DatabasePath(parser.positionalArguments());
    const bool screenshot = parser.isSet(screenshotOption);

    kvConnection connection; // declared before the window, so that it outlives the control
    AppointmentBook window(connection);
    QString error;
    if (!window.OpenDatabase(path, &error))
        return ReportOpenFailure(path, error, screenshot);
    if (screenshot)
        return SaveScreenshot(window, parser.value(screenshotOption));
    window.show();
    return app.exec();
}
