#include "kvGridRows.h"

#include <QDateTime>

#include <utility>

namespace {

bool isText(const QVariant &value)
{
    return value.typeId() == QMetaType::QString || value.typeId() == QMetaType::QByteArray;
}

bool isNumber(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Int: case QMetaType::UInt: case QMetaType::LongLong: case QMetaType::ULongLong:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

QDateTime asDateTime(const QVariant &value)
{
    if (!isText(value))
        return value.toDateTime();
    const QString text = value.toString();
    for (const QString &format : {QStringLiteral("yyyy-MM-dd HH:mm:ss"), QStringLiteral("yyyy-MM-dd HH:mm")}) {
        const QDateTime parsed = QDateTime::fromString(text, format);
        if (parsed.isValid())
            return parsed;
    }
    return QDateTime::fromString(text, Qt::ISODate);
}

} // namespace

bool kvGridRows::Covers(const kvDate &day) const
{
    return !(day < m_first) && day < m_first.addDays(m_dayCount);
}

QList<const kvGridRows::Row *> kvGridRows::RowsOf(const QVariant &dayStart, const QVariant &nextDay) const
{
    QList<const Row *> rows;
    for (const Row &row : m_rows) {
        const auto beginToStart = Compare(row.begin, dayStart);
        const auto endToStart = Compare(row.end, dayStart);
        const auto beginToNext = Compare(row.begin, nextDay);
        const bool continues = beginToStart && *beginToStart <= 0 && endToStart && *endToStart >= 0;
        const bool beginsThatDay = beginToStart && *beginToStart >= 0 && beginToNext && *beginToNext < 0;
        if (continues || beginsThatDay)
            rows.append(&row);
    }
    return rows;
}

//! As the engine compares a stored value with a bound boundary; nothing when it compares as NULL.
std::optional<int> kvGridRows::Compare(const QVariant &stored, const QVariant &bound)
{
    if (stored.isNull() || !stored.isValid())
        return std::nullopt;
    if (isText(stored) && isText(bound))
        return QString::compare(stored.toString(), bound.toString(), Qt::CaseSensitive);
    if (isNumber(stored) && isText(bound))
        return -1;
    // The data layer hands dates over as UTC date-times of the stored wall-clock time; the
    // boundaries are wall-clock times too: compare the clocks, not instants.
    const QDateTime a = asDateTime(stored);
    const QDateTime b = asDateTime(bound);
    if (!a.isValid() || !b.isValid())
        return std::nullopt;
    const auto clockA = std::pair(a.date(), a.time());
    const auto clockB = std::pair(b.date(), b.time());
    return clockA < clockB ? -1 : (clockB < clockA ? 1 : 0);
}
