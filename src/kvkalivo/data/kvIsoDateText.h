#pragma once

#include "kvDate.h"
#include "kvkalivo_export.h"

#include <QStringView>

#include <optional>

/*!
    \brief Dates written as ISO text, read character by character.

    Read() takes "yyyy-m-d", then optionally " " or "T" and "h:nn", then optionally ":ss" and,
    after seconds only, a fraction "." and digits; then optionally a zone "Z", "+hh", "+hhmm" or
    "+hh:mm" (or with "-"). Month, day and hour have one or two digits, year four, minutes,
    seconds and zone fields two; only the ASCII digits 0 to 9 count. The fraction and the zone
    are read and ignored: the result is the wall-clock time as written. One line break may end
    the text; nothing else may follow.
*/
class KVKALIVO_TESTS_EXPORT kvIsoDateText
{
public:
    //! The date and time \a text writes; std::nullopt for other text and for impossible dates and times.
    static std::optional<kvDate> Read(QStringView text);
    //! Whether \a text is "yyyy-mm-dd hh:nn" or "yyyy-mm-dd hh:nn:ss", two digits a field (not checked for range).
    static bool IsDbDateTime(QStringView text);
};
