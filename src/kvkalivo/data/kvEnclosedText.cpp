#include "kvEnclosedText.h"

std::optional<QString> kvEnclosedText::Read(const QString &text, qsizetype &position, QChar closer)
{
    QString enclosed;
    for (++position; position < text.size(); ++position) {
        const QChar c = text.at(position);
        if (c != closer) {
            enclosed += c;
            continue;
        }
        if (position + 1 < text.size() && text.at(position + 1) == closer) {
            enclosed += c;
            ++position;
            continue;
        }
        ++position;
        return enclosed;
    }
    return std::nullopt;
}
