#include "kvIsoDateText.h"

#include <QDate>
#include <QTime>

#include <limits>

namespace {

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

//! Reads a text from left to right; every read either takes what it asks for or nothing.
class Reader
{
public:
    explicit Reader(QStringView text) : m_text(text) {}

    bool atEnd() const { return m_position == m_text.size(); }
    bool take(char16_t c)
    {
        if (atEnd() || m_text.at(m_position) != c)
            return false;
        ++m_position;
        return true;
    }
    //! From \a least to \a most digits, as many as there are; -1 (nothing taken) when fewer than \a least.
    int number(int least, int most)
    {
        qsizetype end = m_position;
        int value = 0;
        while (end < m_text.size() && end - m_position < most && isDigit(m_text.at(end))) {
            if (value < std::numeric_limits<int>::max() / 10)
                value = value * 10 + (m_text.at(end).unicode() - u'0');
            ++end;
        }
        if (end - m_position < least)
            return -1;
        m_position = end;
        return value;
    }

private:
    QStringView m_text;
    qsizetype m_position = 0;
};

//! A line break may end the text, as after the end of a line.
QStringView withoutFinalLineBreak(QStringView text)
{
    return text.endsWith(u'\n') ? text.chopped(1) : text;
}

//! ":ss" and a fraction, when there; false when begun and not finished.
bool readSeconds(Reader &reader, int &second)
{
    if (!reader.take(u':'))
        return true;
    second = reader.number(2, 2);
    if (second < 0)
        return false;
    return !reader.take(u'.') || reader.number(1, std::numeric_limits<int>::max()) >= 0;
}

//! " h:nn[:ss[.f]]" or "Th:nn…", when there; false when begun and not finished.
bool readTime(Reader &reader, QTime &time)
{
    if (!reader.take(u' ') && !reader.take(u'T'))
        return true;
    const int hour = reader.number(1, 2);
    if (hour < 0 || !reader.take(u':'))
        return false;
    const int minute = reader.number(2, 2);
    int second = 0;
    if (minute < 0 || !readSeconds(reader, second))
        return false;
    time = QTime(hour, minute, second);
    return true;
}

//! "Z", "+hh", "+hhmm", "+hh:mm" (or "-"), when there; false when begun and not finished.
bool readZone(Reader &reader)
{
    if (reader.take(u'Z') || !(reader.take(u'+') || reader.take(u'-')))
        return true;
    if (reader.number(2, 2) < 0)
        return false;
    if (reader.take(u':'))
        return reader.number(2, 2) >= 0;
    reader.number(2, 2);   // "hhmm": the minutes may follow without a colon
    return true;
}

} // namespace

std::optional<kvDate> kvIsoDateText::Read(QStringView text)
{
    Reader reader(withoutFinalLineBreak(text));
    const int year = reader.number(4, 4);
    if (year < 0 || !reader.take(u'-'))
        return std::nullopt;
    const int month = reader.number(1, 2);
    if (month < 0 || !reader.take(u'-'))
        return std::nullopt;
    const int day = reader.number(1, 2);
    QTime time(0, 0);
    if (day < 0 || !readTime(reader, time) || !readZone(reader) || !reader.atEnd())
        return std::nullopt;
    const QDate date(year, month, day);
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    return kvDate::fromDate(date, time);
}

bool kvIsoDateText::IsDbDateTime(QStringView text)
{
    static constexpr char16_t shape[] = u"0000-00-00 00:00:00";
    text = withoutFinalLineBreak(text);
    if (text.size() != 16 && text.size() != 19)
        return false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (shape[i] == u'0' ? !isDigit(text.at(i)) : text.at(i) != shape[i])
            return false;
    }
    return true;
}
