#include "kvFileDialog.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

QString withoutShownPatterns(const QString &description)
{
    // "Textdateien (*.txt)" or "HTML-Dokumente(*.htm, *.html)": a trailing group with a wildcard.
    static const QRegularExpression shownPatterns(QStringLiteral("\\s*\\([^()]*[*?][^()]*\\)\\s*$"));
    return QString(description).remove(shownPatterns).trimmed();
}

QString qtNameFilter(const QString &description, const QString &vbPatterns)
{
    const QString patterns = kvFileDialog::ToQtPatterns(vbPatterns);
    const QString label = withoutShownPatterns(description);
    return label.isEmpty() ? QLatin1Char('(') + patterns + QLatin1Char(')')
                           : label + QStringLiteral(" (") + patterns + QLatin1Char(')');
}

} // namespace

kvFileDialog::~kvFileDialog() = default;

QString kvFileDialog::ToQtPatterns(const QString &vbPatterns)
{
    QStringList patterns;
    for (const QString &piece : vbPatterns.split(QLatin1Char(';'))) {
        QString pattern = piece.trimmed();
        if (pattern == QLatin1String("*.*"))
            pattern = QStringLiteral("*");
        if (!pattern.isEmpty() && !patterns.contains(pattern))
            patterns.append(pattern);
    }
    return patterns.isEmpty() ? QStringLiteral("*") : patterns.join(QLatin1Char(' '));
}

QString kvFileDialog::ToQtFilter(const QString &vbFilter)
{
    const QStringList pieces = vbFilter.split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i < pieces.size(); i += 2) {
        const QString description = pieces.at(i).trimmed();
        const QString patterns = i + 1 < pieces.size() ? pieces.at(i + 1) : QString();
        if (description.isEmpty() && patterns.trimmed().isEmpty())
            continue;
        filters.append(qtNameFilter(description, patterns));
    }
    return filters.join(QStringLiteral(";;"));
}
