#pragma once

#include "ctlDay.h"
#include "ctlEntry.h"
#include "kvAppointmentStore.h"
#include "kvDayCellFiller.h"

#include <QStringList>

#include <memory>

//! \a day loaded through \a store into a fresh cell; the store's result ("" or "12-" step) to \a result, else warned.
inline std::unique_ptr<ctlDay> loadDay(kvAppointmentStore &store, const kvDate &day, uint backColor, QString *result = nullptr)
{
    auto cell = std::make_unique<ctlDay>();
    cell->Init(day, QString(), QString(), 0x8000000Fu, 0);
    const QString text = store.LoadDayAppointments(day, kvDayCellFiller(*cell, backColor));
    if (result)
        *result = text;
    else if (!text.isEmpty())
        qWarning("LoadDayAppointments: %s", qPrintable(text));
    return cell;
}

//! For each of \a days days from \a first: its rows as "name time", joined by ", ".
inline QStringList dayRows(kvAppointmentStore &store, const kvDate &first, int days)
{
    QStringList result;
    for (int offset = 0; offset < days; ++offset) {
        const auto cell = loadDay(store, first.addDays(offset), 0xFFFFFFu);
        QStringList rows;
        for (int row = 1; row <= cell->EntriesCount(); ++row)
            rows << cell->Entries(qint16(row))->Text() + QLatin1Char(' ') + cell->Entries(qint16(row))->Time();
        result << rows.join(QStringLiteral(", "));
    }
    return result;
}
