#pragma once

#include "kvDate.h"
#include "kvkalivo_export.h"

#include <QString>
#include <QStringView>

#include <optional>

/*!
    \brief kv::Format() of the patterns that write only numbers, without parsing the pattern into
    tokens: "hh:nn", "yyyy-mm-dd hh:nn:ss", "dd-mm-yyyy" and the like.

    Such a pattern consists of the lower-case fields "yyyy", "mm" (the month; never directly
    after "hh"), "dd", "hh", "nn" and "ss", and of characters that are no letters, no quote,
    no backslash and no "/" (the locale's date separator). Its text is the one kv::Format() writes.
*/
class KVKALIVO_TESTS_EXPORT kvDigitFormat
{
public:
    //! \a value written with \a pattern; std::nullopt when \a pattern is not such a pattern.
    static std::optional<QString> Format(const kvDate &value, QStringView pattern);
};
