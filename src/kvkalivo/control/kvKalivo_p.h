#pragma once

// Not installed: the control's state and its collaborators, shared by kvKalivo's parts.

#include "kvKalivo.h"

#include <QString>

#include <memory>

class ctlDay;
class kvAppointmentStore;
class kvCellInteraction;
class kvChrome;
class kvDayGrid;
class kvEditFlow;
class kvNavigator;
class kvPropertyBag;

//! The settings a host persists: the state behind kvKalivo's properties.
struct kvKalivoSettings
{
    QString RecordSource;
    QString Footnote;
    QString IconPath;
    kvDate ActualDate;
    kvKalivo::kvView View = kvKalivo::kvWeek;
    kvKalivo::enBorderStyle BorderStyle = kvKalivo::kvNone;
    kvKalivo::enWeekendColumns WeekendColumns = kvKalivo::kvOne;
    kvKalivo::enDbDateFormat DbDateFormat = kvKalivo::kvAuto;
    uint DayHeaderColor2 = 0;
    uint DayHeaderColor1 = 0;
    uint BackColor = 0;
    uint DayHeaderForeColor = 0;
    uint TodayHeaderColor = 0;
    uint ToolTipBackColor1 = 0;
    uint ToolTipBackColor2 = 0;
    bool WeeksVisible = false;
    bool AutoRefresh = false;
    bool RaiseDatabaseEvents = false;
    bool RaiseEditEvent = false;
    bool PublicHoliday = false;
    bool UserMode = true;
};

/*!
    \internal
    kvKalivo's private side: the settings, the store and the parts that do the work — the
    chrome (toolbar, caption, picker, status bar, menu), the day grid, the navigator, the edit
    flow and the cell interaction. The parts reach each other through it.
*/
class kvKalivoPrivate
{
public:
    explicit kvKalivoPrivate(kvKalivo *control);
    ~kvKalivoPrivate();

    static kvKalivoPrivate *get(kvKalivo *control) { return control->d.get(); }
    static const kvKalivoPrivate *get(const kvKalivo *control) { return control->d.get(); }

    //! Makes the parts, the store and the first view; the constructor's second half.
    void Initialize();
    //! Re-layout: the grid arrangement, then the current-day marking.
    void Relayout();
    //! The property setters' re-layout: only with AutoRefresh.
    void RelayoutIfAutoRefresh();
    /*!
        A day-cell colour: stored, applied to every cell, notified. Black (0) shows only
        from the next colour pass (a re-layout, or another colour).
    */
    void SetCellColour(uint &field, uint color, const QString &propertyName);
    /*!
        A persisted colour; a missing key falls back on what the first day cell shows, and
        before the first arrangement, when no cell exists, on \a defaultColour.
    */
    uint ReadCellColour(const kvPropertyBag &bag, const QString &key,
                        uint (ctlDay::*cellColour)() const, uint defaultColour) const;
    //! Hands \a connection to the store; a failure is reported with its number (3709 beyond 16 bits).
    void SetConnection(kvConnection *connection);
    void Notify(const QString &propertyName);
    void ReportError(int code, const QString &description);
    //! Makes \a date (without time) the actual day and moves the date picker to it.
    void SetActualDay(const kvDate &date);

    kvKalivo *const q;
    kvKalivoSettings settings;
    kvAppointmentStore *store = nullptr;
    std::unique_ptr<kvChrome> chrome;
    std::unique_ptr<kvDayGrid> grid;
    std::unique_ptr<kvCellInteraction> interaction;
    std::unique_ptr<kvNavigator> navigator;
    std::unique_ptr<kvEditFlow> editFlow;
};
