#pragma once

#include "kvKalivo.h"

#include <QMetaProperty>

//! Every designable persisted property of kvKalivo in the order of its Q_PROPERTYs, with the
//! value kvKalivoForm.ui gives it; none is the default. Colours are OLE colours, 0x00BBGGRR.
inline QList<std::pair<QByteArray, QVariant>> kvDesignerFormValues()
{
    return {
        {"View", QVariant::fromValue(kvKalivo::kvMonth)},
        {"WeekendColumns", QVariant::fromValue(kvKalivo::kvTwo)},
        {"AutoRefresh", false},
        {"BorderStyle", QVariant::fromValue(kvKalivo::kvFixedSingle)},
        {"BackColor", 0xF0FFF0u},
        {"TodayHeaderColor", 0x80FFFFu},
        {"DayHeaderForeColor", 0x800000u},
        {"DayHeaderColor2", 0xFFE0C0u},
        {"DayHeaderColor1", 0x80000010u}, // system colour 16
        {"ActualDate", QDate(2027, 3, 15)},
        {"RecordSource", QStringLiteral("Termine")},
        {"ToolTipBackColor1", 0xE1FFFFu},
        {"ToolTipBackColor2", 0xC0FFFFu},
        {"WeeksVisible", false},
        {"RaiseDatabaseEvents", true},
        {"PublicHoliday", true},
        {"RaiseEditEvent", true},
        {"Footnote", QStringLiteral("Gedruckt mit kvKalivo – Büro Müller")},
        {"DbDateFormat", QVariant::fromValue(kvKalivo::kvMySQL)},
        {"ParameterizedSql", true},
    };
}

//! The names of kvKalivo's own Q_PROPERTYs that are both DESIGNABLE and STORED, in their order.
inline QList<QByteArray> kvDesignablePersistedProperties()
{
    QList<QByteArray> names;
    const QMetaObject &meta = kvKalivo::staticMetaObject;
    for (int index = meta.propertyOffset(); index < meta.propertyCount(); ++index)
        if (meta.property(index).isDesignable() && meta.property(index).isStored())
            names << meta.property(index).name();
    return names;
}
