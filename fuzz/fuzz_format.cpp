// Format, CDate and IsDate on any text: IsDate says what CDate reads, CDate reads only Dates
// of the Date range, and reads back a date Format wrote as "General Date"; a pattern of numbers
// writes the same text by the short way as through the tokens.
#include "kvDate.h"
#include "kvDigitFormat.h"
#include "kvFormat.h"
#include "kvFuzzSupport.h"

namespace {

void checkReading(const QString &text, const QLocale &locale)
{
    const std::optional<kvDate> read = kv::CDate(text, locale);
    kvFuzzCheck(kv::IsDate(text, locale) == read.has_value(), "IsDate agrees with CDate", text);
    if (read) {
        kvFuzzCheck(kvDate::isInRange(read->days()), "CDate reads only Dates of the range", text);
        kv::Format(*read, text, locale);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    kvFuzzInput input(data, size);
    const kvDate date = kvDate::fromDays(input.number<double>());
    const QString pattern = QString::fromUtf8(input.rest());
    const QLocale german = kv::DefaultLocale();
    const QString formatted = kv::Format(date, pattern, german);
    if (kvDigitFormat::Format(date, pattern)) {
        // An empty quoted text writes nothing and keeps the pattern from the short way.
        kvFuzzCheck(formatted == kv::Format(date, QStringLiteral("\"\"") + pattern, german),
                    "the short way writes what the tokens write", pattern);
    }
    kv::Format(date, pattern, QLocale(QLocale::English, QLocale::UnitedStates));
    checkReading(pattern, german);
    checkReading(pattern, QLocale(QLocale::English, QLocale::UnitedStates));

    const QString general = kv::Format(date, QStringLiteral("General Date"), german);
    const std::optional<kvDate> back = kv::CDate(general, german);
    kvFuzzCheck(back && *back == date, "CDate reads back Format's General Date", general);
    return 0;
}
