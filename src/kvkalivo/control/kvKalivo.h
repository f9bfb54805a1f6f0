#pragma once

#include "kvkalivo_export.h"

#include "kvConnection.h"
#include "kvDate.h"
#include "kvGridGeometry.h"

#include <QDate>
#include <QDateTime>
#include <QWidget>

#include <memory>

class QAction;
class QActionGroup;
class QDateEdit;
class QLabel;
class QStatusBar;
class QTimer;
class QToolBar;
class ctlDay;
class ctlKW;
class ctlToolTip;
class QFrame;
class QMenu;
template <typename T> class kvControlArray;
class kvAppointmentStore;
class kvError;
class kvPropertyBag;

/*!
    \brief kvKalivo, the appointment-calendar control ("Terminkalendar Steuerelement").

    A host places it on a form, hands it an open connection and a table name, and gets
    week and month grids of days with their appointments. Construction runs the spec's
    Initialize and then InitProperties (a fresh control); a host with saved settings calls
    ReadProperties() afterwards, and WriteProperties() whenever it saves.

    Property names, defaults and setter effects follow Part 1.1 of the specification.
    Colours are OLE_COLOR values (see kvOleColor): 0x00BBGGRR, or 0x80000000 + n for a
    system colour.
*/
class KVKALIVO_EXPORT kvKalivo : public QWidget
{
    Q_OBJECT

    Q_PROPERTY(kvView View READ View WRITE setView)
    Q_PROPERTY(enWeekendColumns WeekendColumns READ WeekendColumns WRITE setWeekendColumns)
    Q_PROPERTY(bool AutoRefresh READ AutoRefresh WRITE setAutoRefresh)
    Q_PROPERTY(enBorderStyle BorderStyle READ BorderStyle WRITE setBorderStyle)
    Q_PROPERTY(uint BackColor READ BackColor WRITE setBackColor)
    Q_PROPERTY(uint TodayHeaderColor READ TodayHeaderColor WRITE setTodayHeaderColor)
    Q_PROPERTY(uint DayHeaderForeColor READ DayHeaderForeColor WRITE setDayHeaderForeColor)
    Q_PROPERTY(uint DayHeaderColor2 READ DayHeaderColor2 WRITE setDayHeaderColor2)
    Q_PROPERTY(uint DayHeaderColor1 READ DayHeaderColor1 WRITE setDayHeaderColor1)
    Q_PROPERTY(QDate ActualDate READ ActualDate WRITE setActualDate)
    Q_PROPERTY(kvConnection *Connection READ Connection WRITE setConnection STORED false DESIGNABLE false)
    Q_PROPERTY(QString RecordSource READ RecordSource WRITE setRecordSource)
    Q_PROPERTY(uint ToolTipBackColor1 READ ToolTipBackColor1 WRITE setToolTipBackColor1)
    Q_PROPERTY(uint ToolTipBackColor2 READ ToolTipBackColor2 WRITE setToolTipBackColor2)
    Q_PROPERTY(bool WeeksVisible READ WeeksVisible WRITE setWeeksVisible)
    Q_PROPERTY(bool Enabled READ Enabled WRITE setEnabled STORED false)
    Q_PROPERTY(bool RaiseDatabaseEvents READ RaiseDatabaseEvents WRITE setRaiseDatabaseEvents)
    Q_PROPERTY(bool PublicHoliday READ PublicHoliday WRITE setPublicHoliday)
    Q_PROPERTY(bool RaiseEditEvent READ RaiseEditEvent WRITE setRaiseEditEvent)
    Q_PROPERTY(QString Footnote READ Footnote WRITE setFootnote)
    Q_PROPERTY(bool RaiseErrorEvent READ RaiseErrorEvent WRITE setRaiseErrorEvent STORED false)
    Q_PROPERTY(QString IconPath READ IconPath WRITE setIconPath STORED false)
    Q_PROPERTY(enDbDateFormat DbDateFormat READ DbDateFormat WRITE setDbDateFormat)
    Q_PROPERTY(bool ParameterizedSql READ ParameterizedSql WRITE setParameterizedSql)
    Q_PROPERTY(bool UserMode READ UserMode WRITE setUserMode STORED false DESIGNABLE false)

public:
    enum kvView : qint16 { kvWeek = 1, kvMonth = 2 };
    Q_ENUM(kvView)
    enum enBorderStyle : qint16 { kvNone = 0, kvFixedSingle = 1 };
    Q_ENUM(enBorderStyle)
    enum enWeekendColumns : qint16 { kvOne = 1, kvTwo = 2 };
    Q_ENUM(enWeekendColumns)
    enum enDbDateFormat : qint16 {
        kvAuto = 0,
        kvMicrosoft_SQL = 1,
        kvMicrosoft_Access = 2,
        kvMySQL = 3
    };
    Q_ENUM(enDbDateFormat)

    //! Defaults of a new control (Part 1.1, InitProperties).
    static constexpr uint DefaultBackColor = 0xFFFFFFu;
    static constexpr uint DefaultSurfaceColor = 0x808080u;
    static constexpr uint DefaultDayHeaderColor1 = 0x8000000Bu;
    static constexpr uint DefaultDayHeaderColor2 = 0x80000004u;
    static constexpr uint DefaultTodayHeaderColor = 0xC0C0FFu;

    explicit kvKalivo(QWidget *parent = nullptr);
    ~kvKalivo() override;

    kvView View() const { return m_view; }
    void setView(kvView view);
    enWeekendColumns WeekendColumns() const { return m_weekendColumns; }
    void setWeekendColumns(enWeekendColumns columns);
    bool AutoRefresh() const { return m_autoRefresh; }
    void setAutoRefresh(bool autoRefresh);
    enBorderStyle BorderStyle() const { return m_borderStyle; }
    void setBorderStyle(enBorderStyle style);

    uint BackColor() const { return m_backColor; }
    void setBackColor(uint color);
    uint TodayHeaderColor() const { return m_todayHeaderColor; }
    void setTodayHeaderColor(uint color);
    uint DayHeaderForeColor() const { return m_dayHeaderForeColor; }
    void setDayHeaderForeColor(uint color);
    uint DayHeaderColor2() const { return m_dayHeaderColor2; }
    void setDayHeaderColor2(uint color);
    uint DayHeaderColor1() const { return m_dayHeaderColor1; }
    void setDayHeaderColor1(uint color);

    QDate ActualDate() const;
    void setActualDate(const QDate &date);

    /*!
        Part 2.1: the host's open connection (not owned; it may be a kvConnection::Wrap of the
        host's QSqlDatabase). Setting it chooses the SQL dialect, enables "Next", "Previous"
        and "New" when it is open, and probes the table's optional columns. A failure of the
        connection or the probe is reported through Part 1.3 with the data layer's ADO number
        (3709 when that does not fit 16 bits) and the engine's message.
    */
    kvConnection *Connection() const;
    void setConnection(kvConnection *connection);
    QString RecordSource() const { return m_recordSource; }
    void setRecordSource(const QString &recordSource);
    QString Footnote() const { return m_footnote; }
    void setFootnote(const QString &footnote);

    uint ToolTipBackColor1() const { return m_toolTipBackColor1; }
    void setToolTipBackColor1(uint color);
    uint ToolTipBackColor2() const { return m_toolTipBackColor2; }
    void setToolTipBackColor2(uint color);

    bool WeeksVisible() const { return m_weeksVisible; }
    void setWeeksVisible(bool visible);
    //! The spec's Enabled: the enabled state of the control surface (not persisted).
    bool Enabled() const { return isEnabled(); }
    void setEnabled(bool enabled);
    bool RaiseDatabaseEvents() const { return m_raiseDatabaseEvents; }
    void setRaiseDatabaseEvents(bool raise);
    bool PublicHoliday() const { return m_publicHoliday; }
    void setPublicHoliday(bool show);
    bool RaiseEditEvent() const { return m_raiseEditEvent; }
    void setRaiseEditEvent(bool raise);
    //! Thread-wide: switching it on one control switches every control of the thread (Part 1.3).
    bool RaiseErrorEvent() const;
    void setRaiseErrorEvent(bool raise);
    QString IconPath() const { return m_iconPath; }
    void setIconPath(const QString &path);
    enDbDateFormat DbDateFormat() const { return m_dbDateFormat; }
    void setDbDateFormat(enDbDateFormat format);

    /*!
        Extension: False (default) sends the spec's SQL texts exactly; True binds every value as
        a parameter and uses SQL the connected engine accepts, so that apostrophes and injected
        SQL are stored as typed. Recommended for new hosts. Persisted as "ParameterizedSql".
    */
    bool ParameterizedSql() const;
    void setParameterizedSql(bool parameterized);

    //! The container's ambient UserMode: false in a form designer (no dates, no appointments).
    bool UserMode() const { return m_userMode; }
    void setUserMode(bool userMode);

    //! The visible day cells, 1 .. DayCellCount(), in reading order (Part 3.1).
    int DayCellCount() const;
    ctlDay *DayCell(int index) const;

    //! Re-layout, whatever AutoRefresh says (grid arrangement, then the current-day marking).
    Q_INVOKABLE void Refresh();

    /*!
        Part 2.3: the edit flow. \a action 1 new appointment on ActualDate, 2 delete and 3 change
        the active row of the selected day cell. Host events (RaiseEditEvent,
        RaiseDatabaseEvents) replace the editor or the writes; the view is reloaded unless a
        writer or the host cancelled. Failures are reported as 13 + step (Part 1.3).
    */
    void EditAppointment(qint16 action);

    //! Part 3.6 state: the cell (DayIndex) and row last selected by a mouse action (-1 none).
    qint16 SelectedDayIndex() const { return m_selectedDayIndex; }
    qint16 SelectedEntryIndex() const { return m_selectedEntryIndex; }
    //! Part 3.6: True while tooltips show without delay.
    bool TooltipMode() const { return m_tooltipMode; }

    //! Prints the week or month around \a printDate (default ActualDate) in \a printView (default View).
    Q_INVOKABLE void PrintCalendar();
    void PrintCalendar(const QDate &printDate, kvView printView);

    //! Part 1.1: the defaults of a new control; the constructor already applied them.
    void InitProperties();
    //! Part 1.1: reads the saved settings, key by key, with the spec's fallbacks.
    void ReadProperties(const kvPropertyBag &bag);
    //! Part 1.1: writes the persisted settings; values equal to their default are not stored.
    void WriteProperties(kvPropertyBag &bag) const;

Q_SIGNALS:
    //! Part 1.3: a routine of the control failed while RaiseErrorEvent is True.
    void Error(kvError &Err);

    // Part 2.3: the host events. Every argument is by reference; the host may change them and
    // the control goes on with the changed values. Argument orders as in the spec (Edit has
    // the ImageID before the Document, the others after it).
    void DateNew(QDateTime &datDateBegin, QDateTime &datDateEnd, QString &sName, QString &sRemark,
                 QString &sDocument, qint16 &iImgId, bool &bCancel);
    void DateChange(qint32 &lDateID, QDateTime &datDateBegin, QDateTime &datDateEnd, QString &sName,
                    QString &sRemark, QString &sDocument, qint16 &iImgId, bool &bCancel);
    void DateDelete(qint32 &lDateID, QDateTime &datDateBegin, QDateTime &datDateEnd, QString &sName,
                    QString &sRemark, QString &sDocument, bool &bCancel);
    void Edit(qint32 &lDateID, QDateTime &datDateBegin, QDateTime &datDateEnd, QString &sName,
              QString &sRemark, qint16 &iImgId, QString &sDocument, qint16 &iAction, bool &bCancel);
    /*!
        The container notification: a persisted property changed. Carries the property's
        name, except for WeekendColumns, BorderStyle and AutoRefresh, which pass their
        value as text (a quirk of the original control, kept).
    */
    void PropertyChanged(const QString &propertyName);

    //! The grid was arranged (Part 3.1, ArrangeGrid): every re-layout emits it once.
    void gridArranged();
    //! The current day was marked anew (Part 3.1).
    void actualDayMarked();
    //! The colour pass ran: every day cell got the control's colours (Part 3.1).
    void coloursApplied();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void Initialize();
    void CreateToolbar();
    void CreateStatusBar();
    void CreateDatePicker();
    void CreateMonthCaption();
    void CreateTimers();
    void CreateStore();
    QAction *AddToolbarButton(int position, const QString &key, const QString &toolTip,
                              const QString &imageName);
    void PressViewButton();

    void Relayout();
    void ArrangeGrid();
    void ArrangeGridStages(qint16 &step);
    void UnloadDayCells();
    void PlaceWeekdayCaptions();
    static QString WeekdayCaption(int column, int columns, const QLocale &calendarLocale);
    void PlaceDayCells();
    void PlaceWeekColumn();
    void FillGridStages(qint16 &step, QString &pendingCode);
    void FillDayCell(int index, const kvDate &day, bool runMode, QString &pendingCode);
    bool IsFirstCellOfRow(int index) const;
    bool IsToday(const kvDate &day) const;
    void ShowMonthCaption(const kvDate &first, const kvDate &last, bool runMode);
    void RestoreDayHeader(ctlDay &cell);
    void Reload();
    void CreateGrid();
    void CreateContextMenu();
    void OnToolbarButton(const QString &key);
    void OnContextMenuItem(int index);
    void SwitchView(kvView view);
    void StepDate(int direction);
    void ApplyRangeCheck(const kvDate &date);
    void GotoNextAppointment();
    void GotoPreviousAppointment();
    enum class Direction { Next, Previous };
    void GotoAppointment(Direction direction);
    void JumpToAppointment(const kvDate &date, bool outsideTheView);
    int ToolbarRowHeight() const;
    int HeaderHeight() const;
    int WidestMonthCaption() const;
    bool MonthCaptionFitsBesideToolbar() const;
    int StatusBarTop() const;
    void PlaceChrome();
    void FillGrid();
    void MarkActualDay();
    void ApplyColours();
    void ShowCalendarWeek();
    void SyncDatePicker();
    void OnFocusChanged(QWidget *old, QWidget *now);
    void HideToolTip();

    // Part 2.3
    struct EditValues;
    void EditAppointmentSteps(qint16 action, qint16 &step);
    void RaiseDatabaseEvent(qint16 action, EditValues &values, bool &bCancel);

    // Part 3.6
    void ConnectDayCell(ctlDay *cell, qint16 dayIndex);
    int DayIndexOf(const QWidget *widget) const;
    void OnDayFocus(qint16 dayIndex);
    void OnDayMouseUp(qint16 dayIndex, qint16 button);
    void OnEntryMouseUp(qint16 dayIndex, qint16 entryIndex, qint16 button);
    void OnEntryDblClick(qint16 dayIndex, qint16 entryIndex);
    void OnDayDblClick(qint16 dayIndex);
    void OnEntryMouseMove(qint16 dayIndex, qint16 entryIndex, qint32 x, qint32 y, qint32 entryLeft,
                          qint32 entryTop, qint32 entryWidth, qint32 entryHeight);
    void PopupContextMenu(bool onRow);
    void OnTimerTooltip();
    void OnTimerTooltipOff();
    void ShowToolTip();
    void ReleaseRowCapture();

    void SetCellColour(uint &field, uint color, const QString &propertyName);
    void Notify(const QString &propertyName);
    void EnableDatabaseButtons(int connectionState);
    void ReportError(int code, const QString &description);

    kvDate FirstGridDate() const;
    kvDate FirstCellDate() const;
    kvDate LastCellDate() const;

    QString m_recordSource;
    QString m_footnote;
    kvDate m_actualDate;
    kvView m_view = kvWeek;
    enBorderStyle m_borderStyle = kvNone;
    enWeekendColumns m_weekendColumns = kvOne;
    uint m_dayHeaderColor2 = 0;
    uint m_dayHeaderColor1 = 0;
    uint m_backColor = 0;
    uint m_dayHeaderForeColor = 0;
    uint m_todayHeaderColor = 0;
    uint m_toolTipBackColor1 = 0;
    uint m_toolTipBackColor2 = 0;
    bool m_weeksVisible = false;
    bool m_autoRefresh = false;
    bool m_raiseDatabaseEvents = false;
    bool m_raiseEditEvent = false;
    enDbDateFormat m_dbDateFormat = kvAuto;
    bool m_publicHoliday = false;
    QString m_iconPath;
    bool m_userMode = true;
    kvGridGeometry m_geometry;

    QToolBar *m_toolbarMain = nullptr;
    QActionGroup *m_viewButtons = nullptr;
    QStatusBar *m_statusBar = nullptr;
    QLabel *m_statusWeekPanel = nullptr;
    QDateEdit *m_datePicker = nullptr;
    QLabel *m_monthCaption = nullptr;
    QTimer *m_timerTooltip = nullptr;
    QTimer *m_timerTooltipOff = nullptr;
    ctlToolTip *m_toolTip = nullptr;
    kvAppointmentStore *m_store = nullptr;
    std::unique_ptr<kvControlArray<ctlDay>> m_days;
    std::unique_ptr<kvControlArray<QLabel>> m_weekdayCaptions;
    QFrame *m_corner = nullptr;
    ctlKW *m_weekColumn = nullptr;
    QMenu *m_contextMenu = nullptr;
    QList<QAction *> m_contextItems;

    // Part 3.6
    qint16 m_selectedDayIndex = 0;
    qint16 m_selectedEntryIndex = -1;
    bool m_tooltipMode = false;
    kvDate m_tooltipDay;
    qint32 m_tooltipAnchorX = 0;
    qint32 m_tooltipAnchorY = 0;
    qint16 m_capturedEntryIndex = -1;
    qint16 m_capturedDayIndex = -1;
    quintptr m_tooltipRowHandle = 0;
};
