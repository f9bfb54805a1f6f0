#include "kvSystemShell.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <QUrl>

namespace {

constexpr int portalTimeoutMs = 5000;

bool isExistingPath(const QString &path)
{
    return !path.isEmpty() && QFileInfo::exists(path);
}

QUrl fileUrl(const QString &path)
{
    return QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
}

// A string literal in GVariant text format, which is how gdbus reads its arguments.
QString gvariantString(const QString &text)
{
    QString escaped = text;
    escaped.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    escaped.replace(QLatin1Char('\''), QStringLiteral("\\'"));
    return QLatin1Char('\'') + escaped + QLatin1Char('\'');
}

} // namespace

int kvSystemShell::ShellExecuteOpen(const QString &path)
{
    if (!isExistingPath(path))
        return FileNotFound;
    return QDesktopServices::openUrl(fileUrl(path)) ? Opened : NoAssociation;
}

bool kvSystemShell::OpenWith(const QString &path)
{
    if (!isExistingPath(path))
        return false;
    const QString gdbus = QStandardPaths::findExecutable(QStringLiteral("gdbus"));
    if (gdbus.isEmpty())
        return false;

    QProcess process;
    process.start(gdbus, OpenWithArguments(path));
    if (!process.waitForFinished(portalTimeoutMs)) {
        process.kill();
        process.waitForFinished();
        return false;
    }
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

QStringList kvSystemShell::OpenWithArguments(const QString &path)
{
    return {QStringLiteral("call"), QStringLiteral("--session"),
            QStringLiteral("--dest"), QStringLiteral("org.freedesktop.portal.Desktop"),
            QStringLiteral("--object-path"), QStringLiteral("/org/freedesktop/portal/desktop"),
            QStringLiteral("--method"), QStringLiteral("org.freedesktop.portal.OpenURI.OpenURI"),
            gvariantString(QString()),
            gvariantString(fileUrl(path).toString(QUrl::FullyEncoded)),
            QStringLiteral("{'ask': <true>}")};
}
