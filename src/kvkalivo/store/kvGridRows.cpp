#include "kvGridRows.h"

#include "kvIsoDateText.h"

#include <QDateTime>

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

//! The wall-clock time of \a dateTime (the data layer carries them in UTC date-times).
std::optional<kvDate> wallClock(const QDateTime &dateTime)
{
    return dateTime.isValid() ? std::optional(kvDate::fromDateTime(dateTime)) : std::nullopt;
}

std::optional<kvDate> wallClock(const QString &text)
{
    // "yyyy-mm-dd hh:nn[:ss]", as the store binds and the data layer writes dates, is the most
    // common; the size leaves out the final line break that IsDbDateTime() allows.
    if ((text.size() == 16 || text.size() == 19) && kvIsoDateText::IsDbDateTime(text))
        return kvIsoDateText::Read(text);
    for (const QString &format : {QStringLiteral("yyyy-MM-dd HH:mm:ss"), QStringLiteral("yyyy-MM-dd HH:mm")}) {
        const QDateTime dateTime = QDateTime::fromString(text, format);
        if (dateTime.isValid())
            return wallClock(dateTime);
    }
    return wallClock(QDateTime::fromString(text, Qt::ISODate));
}

bool isDateTime(const QVariant &value)
{
    return value.typeId() == QMetaType::QDateTime || value.typeId() == QMetaType::QDate;
}

} // namespace

kvGridRows::Value::Value(const QVariant &bound)
{
    if (bound.isNull() || !bound.isValid())
        return;
    if (isText(bound)) {
        m_kind = Kind::Text;
        m_text = bound.toString();
        SetClock(wallClock(m_text));
    } else if (isNumber(bound)) {
        m_kind = Kind::Number;
    } else {
        m_kind = Kind::DateTime;
        SetClock(wallClock(bound.toDateTime()));
    }
}

kvGridRows::Value::Value(const QVariant &stored, const kvDate &date)
{
    if (!isDateTime(stored)) {
        *this = Value(stored);
        return;
    }
    m_kind = Kind::DateTime;
    SetClock(date);
}

//! The clocks are compared, not instants. The boundaries are whole seconds, so that a clock
//! cut to the second compares with them as the full one does.
void kvGridRows::Value::SetClock(const std::optional<kvDate> &date)
{
    m_hasClock = date.has_value();
    if (date)
        m_clock = date->dayNumber() * 86400 + date->secondsOfDay();
}

void kvGridRows::Append(const kvAppointmentValues &appointment, const QVariant &begin, const QVariant &end)
{
    m_rows.append({appointment, Value(begin, appointment.DateBegin), Value(end, appointment.DateEnd)});
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
        const Value::Order beginToStart = row.begin.CompareTo(start);
        if (beginToStart == Value::Order::None)
            continue;
        const Value::Order endToStart = beginToStart == Value::Order::After ? Value::Order::None
                                                                            : row.end.CompareTo(start);
        const bool continues = endToStart == Value::Order::Same || endToStart == Value::Order::After;
        const bool beginsThatDay = beginToStart != Value::Order::Before
                                   && row.begin.CompareTo(next) == Value::Order::Before;
        if (continues || beginsThatDay)
            rows.append(&row.appointment);
    }
    return rows;
}
