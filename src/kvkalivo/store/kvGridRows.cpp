#include "kvGridRows.h"

#include <QDateTime>
#include <QTimeZone>

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

//! "yyyy-MM-dd hh:mm" with optional ":ss", as the store binds and the data layer writes dates.
std::optional<QDateTime> parsedQuickly(const QString &text)
{
    if (text.size() != 16 && text.size() != 19)
        return std::nullopt;
    const auto number = [&text](int from, int length) {
        int value = 0;
        for (int i = from; i < from + length; ++i) {
            const char16_t c = text.at(i).unicode();
            if (c < u'0' || c > u'9')
                return -1;
            value = value * 10 + (c - u'0');
        }
        return value;
    };
    const bool separators = text.at(4) == u'-' && text.at(7) == u'-' && text.at(10) == u' ' && text.at(13) == u':'
                            && (text.size() == 16 || text.at(16) == u':');
    const QDate date(number(0, 4), number(5, 2), number(8, 2));
    const QTime time(number(11, 2), number(14, 2), text.size() == 19 ? number(17, 2) : 0);
    if (!separators || !date.isValid() || !time.isValid())
        return std::nullopt;
    return QDateTime(date, time, QTimeZone::utc());
}

QDateTime parsed(const QString &text)
{
    if (const auto quick = parsedQuickly(text))
        return *quick;
    for (const QString &format : {QStringLiteral("yyyy-MM-dd HH:mm:ss"), QStringLiteral("yyyy-MM-dd HH:mm")}) {
        const QDateTime dateTime = QDateTime::fromString(text, format);
        if (dateTime.isValid())
            return dateTime;
    }
    return QDateTime::fromString(text, Qt::ISODate);
}

//! The data layer hands dates over as UTC date-times of the stored wall-clock time, and the
//! boundaries are wall-clock times: the clocks are compared, not instants.
std::optional<qint64> wallClock(const QDateTime &dateTime)
{
    if (!dateTime.isValid())
        return std::nullopt;
    return QDateTime(dateTime.date(), dateTime.time(), QTimeZone::utc()).toMSecsSinceEpoch();
}

} // namespace

kvGridRows::Value::Value(const QVariant &value)
{
    if (value.isNull() || !value.isValid())
        return;
    if (isText(value)) {
        m_kind = Kind::Text;
        m_text = value.toString();
        m_clock = wallClock(parsed(m_text));
    } else if (isNumber(value)) {
        m_kind = Kind::Number;
    } else {
        m_kind = Kind::DateTime;
        m_clock = wallClock(value.toDateTime());
    }
}

std::optional<int> kvGridRows::Value::CompareTo(const Value &bound) const
{
    if (m_kind == Kind::Null)
        return std::nullopt;
    if (m_kind == Kind::Text && bound.m_kind == Kind::Text)
        return QString::compare(m_text, bound.m_text, Qt::CaseSensitive);
    if (m_kind == Kind::Number && bound.m_kind == Kind::Text)
        return -1;
    if (!m_clock || !bound.m_clock)
        return std::nullopt;
    return *m_clock < *bound.m_clock ? -1 : (*bound.m_clock < *m_clock ? 1 : 0);
}

void kvGridRows::Append(const kvAppointmentValues &appointment, const QVariant &begin, const QVariant &end)
{
    m_rows.append({appointment, Value(begin), Value(end)});
}

bool kvGridRows::Covers(const kvDate &day) const
{
    return !(day < m_first) && day < m_first.addDays(m_dayCount);
}

QList<const kvAppointmentValues *> kvGridRows::RowsOf(const QVariant &dayStart, const QVariant &nextDay) const
{
    const Value start(dayStart);
    const Value next(nextDay);
    QList<const kvAppointmentValues *> rows;
    for (const Row &row : m_rows) {
        const auto beginToStart = row.begin.CompareTo(start);
        if (!beginToStart)
            continue;
        const auto endToStart = row.end.CompareTo(start);
        const auto beginToNext = row.begin.CompareTo(next);
        const bool continues = *beginToStart <= 0 && endToStart && *endToStart >= 0;
        const bool beginsThatDay = *beginToStart >= 0 && beginToNext && *beginToNext < 0;
        if (continues || beginsThatDay)
            rows.append(&row.appointment);
    }
    return rows;
}
