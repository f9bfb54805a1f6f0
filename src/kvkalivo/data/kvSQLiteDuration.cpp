#include "kvSQLiteDuration.h"

QString kvSQLiteDuration::Expression(const QString &qualifier)
{
    const QString begin = qualifier + QStringLiteral("DateBegin");
    const QString end = qualifier + QStringLiteral("DateEnd");
    return QStringLiteral("CASE WHEN %1 IS NULL OR %2 IS NULL THEN NULL "
                          "WHEN typeof(%1) <> 'text' OR julianday(%1) IS NULL OR julianday(%2) IS NULL THEN %3 "
                          "ELSE julianday(%2) - julianday(%1) END")
        .arg(begin, end, QLatin1String(Infinite));
}
