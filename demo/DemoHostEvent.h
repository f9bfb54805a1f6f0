#pragma once

#include "DemoAppointment.h"

#include <QList>
#include <QString>
#include <QTime>

#include <utility>

/*!
    One event the control raised to the demo host, as the event panel lists it: the event's
    name, when it arrived, its arguments in the order of the control's signal (with the values
    they had when the host's handler returned) and what the host did with it.
*/
class DemoHostEvent
{
public:
    //! What became of the event.
    enum class Outcome { None, Cancelled, Written, Failed, Noted };
    using Argument = std::pair<QString, QString>;

    DemoHostEvent(const QString &name, QList<Argument> arguments);

    // The write and edit events, arguments as the control's signals pass them.
    static DemoHostEvent DateNew(const DemoAppointment &appointment, bool cancel);
    static DemoHostEvent DateChange(const DemoAppointment &appointment, bool cancel);
    static DemoHostEvent DateDelete(const DemoAppointment &appointment, bool cancel);
    static DemoHostEvent Edit(const DemoAppointment &appointment, qint16 action, bool cancel);
    //! The control's Error event: its numbered code and description.
    static DemoHostEvent Error(qint16 number, const QString &description);
    static DemoHostEvent PropertyChanged(const QString &propertyName);

    QString Name() const { return m_name; }
    QTime Time() const { return m_time; }
    void setTime(QTime time) { m_time = time; }
    const QList<Argument> &Arguments() const { return m_arguments; }
    //! The value of the argument \a name, or a null string.
    QString ArgumentValue(const QString &name) const;

    Outcome Result() const { return m_outcome; }
    QString ResultText() const { return m_outcomeText; }
    void setResult(Outcome outcome, const QString &text);

    //! "DateNew(datDateBegin=…, …) → result", one line; for tests and the log's tooltip.
    QString Text() const;

    //! "dd.MM.yyyy hh:mm".
    static QString FormatDate(const QDateTime &value);
    //! The first line of \a text, at most \a maximum characters; "…" where something was cut.
    static QString Shorten(const QString &text, int maximum = 40);
    //! \a text in German quotation marks.
    static QString Quoted(const QString &text);
    static QString Boolean(bool value);
    //! "1 (neu)", "2 (löschen)", "3 (ändern)".
    static QString ActionText(qint16 action);

private:
    static QList<Argument> Period(const DemoAppointment &appointment);
    static QList<Argument> Texts(const DemoAppointment &appointment);

    QString m_name;
    QTime m_time;
    QList<Argument> m_arguments;
    Outcome m_outcome = Outcome::None;
    QString m_outcomeText;
};
