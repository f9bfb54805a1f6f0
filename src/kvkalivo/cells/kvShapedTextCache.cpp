#include "kvShapedTextCache.h"

#include <QHash>
#include <QTransform>

#include <algorithm>

/*!
    The registry holds the caches weakly: a font's cache lives while rows use it, and a font
    no row uses any more leaves nothing behind.
*/
std::shared_ptr<kvShapedTextCache> kvShapedTextCache::ForFont(const QFont &font)
{
    thread_local QHash<QString, std::weak_ptr<kvShapedTextCache>> caches;
    const QString key = font.key();
    if (std::shared_ptr<kvShapedTextCache> cache = caches.value(key).lock())
        return cache;
    caches.removeIf([](const auto &entry) { return entry.value().expired(); });
    auto cache = std::make_shared<kvShapedTextCache>(font);
    caches.insert(key, cache);
    return cache;
}

kvShapedTextCache::kvShapedTextCache(const QFont &font)
    : m_font(font), m_metrics(font)
{
}

int kvShapedTextCache::Width(const QString &text)
{
    if (const int *width = m_widths.object(text))
        return *width;
    const int width = m_metrics.horizontalAdvance(text);
    m_widths.insert(text, new int(width));
    return width;
}

QString kvShapedTextCache::Shortened(const QString &text, int room)
{
    const ShortenedKey key{text, room};
    if (const QString *caption = m_shortened.object(key))
        return *caption;
    const QString caption = Shorten(text, room);
    m_shortened.insert(key, new QString(caption));
    return caption;
}

/*!
    The caption is the first candidate that fits among the text shortened by k = 1, 2, 3, ...
    characters plus "...". A longer prefix is never narrower, so the first fitting candidate
    is the longest fitting one. It is searched between a prefix known to fit and one known not
    to: each step guesses from the two widths where the room runs out (a few measurements for
    ordinary text, where one per character was slow enough to show in a month of rows) and
    halves the interval instead when guessing stops closing in.

    The candidates are measured without keeping their widths: they are seldom asked again.
*/
QString kvShapedTextCache::Shorten(const QString &text, int room)
{
    const QString ellipsis = Ellipsis.toString();
    const int ellipsisWidth = Width(ellipsis);
    if (ellipsisWidth > room)
        return QString(); // no candidate fits: a caption never draws wider than its label
    qsizetype fitting = 0;           // a prefix length whose candidate fits
    qsizetype tooLong = text.size(); // the text does not fit, so neither does text + "..."
    int fittingWidth = ellipsisWidth;
    int tooLongWidth = Width(text) + ellipsisWidth;
    bool lastFitted = false;
    int sameSideSteps = 0;
    while (tooLong - fitting > 1) {
        qsizetype guess = fitting + (tooLong - fitting) / 2;
        if (sameSideSteps < 2 && tooLongWidth > fittingWidth) {
            guess = fitting + qsizetype(double(room - fittingWidth) * double(tooLong - fitting)
                                        / double(tooLongWidth - fittingWidth));
        }
        guess = std::clamp(guess, fitting + 1, tooLong - 1);
        const int width = m_metrics.horizontalAdvance(text.left(guess) + ellipsis);
        const bool fits = width <= room;
        sameSideSteps = fits == lastFitted ? sameSideSteps + 1 : 1;
        lastFitted = fits;
        if (fits) {
            fitting = guess;
            fittingWidth = width;
        } else {
            tooLong = guess;
            tooLongWidth = width;
        }
    }
    return text.left(fitting) + ellipsis;
}

QStaticText kvShapedTextCache::Prepared(const QString &caption)
{
    if (const QStaticText *prepared = m_prepared.object(caption))
        return *prepared;
    QStaticText prepared(caption);
    prepared.setTextFormat(Qt::PlainText);
    prepared.setPerformanceHint(QStaticText::AggressiveCaching);
    prepared.prepare(QTransform(), m_font);
    m_prepared.insert(caption, new QStaticText(prepared));
    return prepared;
}
