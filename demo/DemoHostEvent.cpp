#include "DemoHostEvent.h"

#include <QStringList>

DemoHostEvent::DemoHostEvent(const QString &name, QList<Argument> arguments)
    : m_name(name)
    , m_arguments(std::move(arguments))
{
}

DemoHostEvent DemoHostEvent::DateNew(const DemoAppointment &appointment, bool cancel)
{
    QList<Argument> arguments = Period(appointment) + Texts(appointment);
    arguments << Argument{QStringLiteral("sDocument"), Quoted(appointment.document)}
              << Argument{QStringLiteral("iImgId"), QString::number(appointment.imageId)}
              << Argument{QStringLiteral("bCancel"), Boolean(cancel)};
    return {QStringLiteral("DateNew"), arguments};
}

DemoHostEvent DemoHostEvent::DateChange(const DemoAppointment &appointment, bool cancel)
{
    QList<Argument> arguments{{QStringLiteral("lDateID"), QString::number(appointment.dateId)}};
    arguments << Period(appointment) << Texts(appointment)
              << Argument{QStringLiteral("sDocument"), Quoted(appointment.document)}
              << Argument{QStringLiteral("iImgId"), QString::number(appointment.imageId)}
              << Argument{QStringLiteral("bCancel"), Boolean(cancel)};
    return {QStringLiteral("DateChange"), arguments};
}

DemoHostEvent DemoHostEvent::DateDelete(const DemoAppointment &appointment, bool cancel)
{
    QList<Argument> arguments{{QStringLiteral("lDateID"), QString::number(appointment.dateId)}};
    arguments << Period(appointment) << Texts(appointment)
              << Argument{QStringLiteral("sDocument"), Quoted(appointment.document)}
              << Argument{QStringLiteral("bCancel"), Boolean(cancel)};
    return {QStringLiteral("DateDelete"), arguments};
}

DemoHostEvent DemoHostEvent::Edit(const DemoAppointment &appointment, qint16 action, bool cancel)
{
    // Edit has the ImageID before the Document, the other events after it.
    QList<Argument> arguments{{QStringLiteral("lDateID"), QString::number(appointment.dateId)}};
    arguments << Period(appointment) << Texts(appointment)
              << Argument{QStringLiteral("iImgId"), QString::number(appointment.imageId)}
              << Argument{QStringLiteral("sDocument"), Quoted(appointment.document)}
              << Argument{QStringLiteral("iAction"), ActionText(action)}
              << Argument{QStringLiteral("bCancel"), Boolean(cancel)};
    return {QStringLiteral("Edit"), arguments};
}

DemoHostEvent DemoHostEvent::Error(qint16 number, const QString &description)
{
    return {QStringLiteral("Error"),
            {{QStringLiteral("Err.Number"), QString::number(number)},
             {QStringLiteral("Err.Description"), Quoted(Shorten(description, 200))}}};
}

DemoHostEvent DemoHostEvent::PropertyChanged(const QString &propertyName)
{
    return {QStringLiteral("PropertyChanged"), {{QStringLiteral("PropertyName"), propertyName}}};
}

QString DemoHostEvent::ArgumentValue(const QString &name) const
{
    for (const auto &[argument, value] : m_arguments) {
        if (argument == name)
            return value;
    }
    return {};
}

void DemoHostEvent::setResult(Outcome outcome, const QString &text)
{
    m_outcome = outcome;
    m_outcomeText = text;
}

QString DemoHostEvent::Text() const
{
    QStringList arguments;
    for (const auto &[argument, value] : m_arguments)
        arguments << argument + QLatin1Char('=') + value;
    QString text = m_name + QLatin1Char('(') + arguments.join(QStringLiteral(", ")) + QLatin1Char(')');
    if (!m_outcomeText.isEmpty())
        text += QStringLiteral(" → ") + m_outcomeText;
    return text;
}

QString DemoHostEvent::FormatDate(const QDateTime &value)
{
    return value.toString(QStringLiteral("dd.MM.yyyy hh:mm"));
}

QString DemoHostEvent::Shorten(const QString &text, int maximum)
{
    const qsizetype lineEnd = text.indexOf(QLatin1Char('\n'));
    QString shortened = lineEnd >= 0 ? text.left(lineEnd).trimmed() : text;
    bool cut = lineEnd >= 0;
    if (shortened.size() > maximum) {
        shortened = shortened.left(maximum - 1).trimmed();
        cut = true;
    }
    return cut ? shortened + QStringLiteral("…") : shortened;
}

QString DemoHostEvent::Quoted(const QString &text)
{
    return QStringLiteral("„") + text + QStringLiteral("“");
}

QString DemoHostEvent::Boolean(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

QString DemoHostEvent::ActionText(qint16 action)
{
    switch (action) {
    case 1:
        return QStringLiteral("1 (neu)");
    case 2:
        return QStringLiteral("2 (löschen)");
    case 3:
        return QStringLiteral("3 (ändern)");
    default:
        return QString::number(action);
    }
}

QList<DemoHostEvent::Argument> DemoHostEvent::Period(const DemoAppointment &appointment)
{
    return {{QStringLiteral("datDateBegin"), FormatDate(appointment.begin)},
            {QStringLiteral("datDateEnd"), FormatDate(appointment.end)}};
}

QList<DemoHostEvent::Argument> DemoHostEvent::Texts(const DemoAppointment &appointment)
{
    return {{QStringLiteral("sName"), Quoted(appointment.name)},
            {QStringLiteral("sRemark"), Quoted(Shorten(appointment.remark))}};
}
