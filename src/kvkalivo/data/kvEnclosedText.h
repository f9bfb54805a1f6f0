#pragma once

#include <QString>

#include <optional>

/*!
    \brief Text enclosed between an opening character and its closer, the closer doubled
    inside to stand for itself: {a}}b}, 'O''Brien', [Meine]]Termine].
*/
class kvEnclosedText
{
public:
    /*!
        Reads from the opening character at \a position to its \a closer and returns the text
        between them, each doubled closer read as one; \a position ends after the closer.
        std::nullopt when the closer is missing (\a position is then at the end).
    */
    static std::optional<QString> Read(const QString &text, qsizetype &position, QChar closer);
};
