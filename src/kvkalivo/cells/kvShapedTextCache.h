#pragma once

#include "kvkalivo_export.h"

#include <QCache>
#include <QFont>
#include <QFontMetrics>
#include <QStaticText>
#include <QString>

#include <memory>

/*!
    \brief The measured and shaped texts of one font, shared by every row that paints in it.

    Measuring and shaping text is most of what painting a month of rows costs, and a calendar
    repeats itself: recurring appointments, the same times, cells of one width. The cache keeps
    for its font the width of each text, each text shortened to fit a room, and each caption
    prepared for drawing (QStaticText is implicitly shared, so all rows of one caption share
    one prepared text). Each table drops its least recently used entries beyond a fixed size,
    so a day of browsing does not make it grow.

    ForFont() hands out the cache of a font to every row of the thread that asks while one is
    in use; a row whose font changes takes the cache of its new font, so nothing measured in
    one font is ever used for another.
*/
class KVKALIVO_TESTS_EXPORT kvShapedTextCache
{
public:
    //! Entries each table keeps at most.
    static constexpr int MaximumWidths = 4096;
    static constexpr int MaximumShortened = 4096;
    static constexpr int MaximumPrepared = 2048;
    //! Ends a shortened text.
    static constexpr QStringView Ellipsis = u"...";

    //! The cache of \a font, shared with every other user of the same font on this thread.
    static std::shared_ptr<kvShapedTextCache> ForFont(const QFont &font);

    explicit kvShapedTextCache(const QFont &font);
    Q_DISABLE_COPY_MOVE(kvShapedTextCache)

    //! The advance of \a text in the font, in pixels.
    int Width(const QString &text);
    /*!
        \a text cut to fit \a room pixels: the longest prefix that fits with "..." appended,
        or "" when even "..." alone does not fit. Only for a text wider than \a room.
    */
    QString Shortened(const QString &text, int room);
    //! \a caption laid out in the font, ready for QPainter::drawStaticText().
    QStaticText Prepared(const QString &caption);

private:
    struct ShortenedKey
    {
        QString text;
        int room = 0;
        friend bool operator==(const ShortenedKey &, const ShortenedKey &) = default;
        friend size_t qHash(const ShortenedKey &key, size_t seed = 0) noexcept
        {
            return qHashMulti(seed, key.text, key.room);
        }
    };

    QString Shorten(const QString &text, int room);

    QFont m_font;
    QFontMetrics m_metrics;
    QCache<QString, int> m_widths{MaximumWidths};
    QCache<ShortenedKey, QString> m_shortened{MaximumShortened};
    QCache<QString, QStaticText> m_prepared{MaximumPrepared};
};
