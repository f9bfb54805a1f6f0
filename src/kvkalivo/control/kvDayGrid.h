#pragma once

#include "kvkalivo_export.h"

#include "kvDate.h"
#include "kvGridGeometry.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>
#include <optional>

class QFrame;
class kvConnection;
class QLabel;
class QLocale;
class QWidget;
class ctlDay;
class ctlKW;
class kvKalivoPrivate;
template <typename T> class kvControlArray;

/*!
    \internal
    The control's day grid: the day cells, the weekday captions, the calendar-week column and
    the corner above it. ArrangeGrid() lays them out for the view (failures reported as 900 +
    step), FillGrid() gives the cells their days, holidays and appointments (1100 + step, or a
    day's pending code), MarkActualDay() marks the selected day, ApplyColours() the colours.
*/
class KVKALIVO_TESTS_EXPORT kvDayGrid : public QObject
{
    Q_OBJECT

public:
    explicit kvDayGrid(kvKalivoPrivate &d);
    ~kvDayGrid() override;

    enum class Refill {
        Always,       //!< the cells are filled anew from the store
        IfDaysChanged //!< a resize: cells that show the same days keep their rows, nothing is read
    };
    void ArrangeGrid(Refill refill = Refill::Always);
    void FillGrid();
    //! Refills the cells of the current arrangement and marks the actual day; failures: 400.
    void Reload();
    void MarkActualDay();
    void ApplyColours();
    void UnloadDayCells();

    //! The visible day cells, 1 .. DayCellCount(), in reading order.
    int DayCellCount() const;
    //! Day cell \a index, 1 to DayCellCount(); throws kvRuntimeError 340 outside that range.
    ctlDay *DayCell(int index) const;
    //! The day cell that is or contains \a widget, 1-based; 0 for any other widget.
    int DayIndexOf(const QWidget *widget) const;

    kvDate FirstCellDate() const;
    kvDate LastCellDate() const;
    //! Where the keyboard enters the grid: the actual day's cell.
    QWidget *GridTabStop() const { return m_gridTabStop; }

Q_SIGNALS:
    //! The grid was arranged (ArrangeGrid): every re-layout emits it once.
    void gridArranged();
    //! The current day was marked anew.
    void actualDayMarked();
    //! The colour pass ran: every day cell got the control's colours.
    void coloursApplied();

private:
    struct Content
    {
        kvDate firstDay;
        int cells = 0;
        bool userMode = false;
        bool publicHoliday = false;
        const kvConnection *connection = nullptr;
        int connectionState = 0;
        QString recordSource;
        bool parameterizedSql = false;
        bool operator==(const Content &) const = default;
    };

    void ArrangeGridStages(qint16 &step, Refill refill);
    void PlaceWeekdayCaptions();
    static QString WeekdayCaption(int column, int columns, const QLocale &calendarLocale);
    void PlaceDayCells();
    void PlaceWeekColumn();
    void FillGridStages(qint16 &step, QString &pendingCode);
    void RefillCells();
    Content CurrentContent() const;
    void FillDayCell(int index, const kvDate &day, QString &pendingCode);
    QString MonthCaption(const kvDate &first, const kvDate &last) const;
    void PlaceGridTabStop(ctlDay *actualCell);
    void RestoreDayHeader(ctlDay &cell) const;
    kvDate FirstGridDate() const;
    bool IsOtherMonth(const kvDate &day) const;
    static bool IsFirstCellOfRow(int index);
    static bool IsToday(const kvDate &day);

    kvKalivoPrivate &d;
    kvGridGeometry m_geometry;
    std::unique_ptr<kvControlArray<ctlDay>> m_days;
    std::unique_ptr<kvControlArray<QLabel>> m_weekdayCaptions;
    QFrame *m_corner = nullptr;
    ctlKW *m_weekColumn = nullptr;
    std::optional<Content> m_filledFor; //!< what the cells show after a fill without failure
    QPointer<QWidget> m_gridTabStop; //!< the actual day's cell, where the keyboard enters the grid
};
