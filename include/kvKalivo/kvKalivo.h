#pragma once

#include "kvkalivo_export.h"

#include "kvConnection.h"
#include "kvDate.h"

#include <QDate>
#include <QDateTime>
#include <QWidget>

#include <memory>

class kvError;
class kvKalivoPrivate;
class kvPropertyBag;

/*!
    \file kvKalivo.h
    \brief kvKalivo, the appointment-calendar control a host places on its form.
*/

/*!
    \brief kvKalivo, the appointment-calendar control ("Terminkalendar Steuerelement").

    A host places it on a form, hands it an open connection and a table name, and gets
    week and month grids of days with their appointments. Construction initializes the
    control and applies InitProperties() (a fresh control); a host with saved settings calls
    ReadProperties() afterwards, and WriteProperties() whenever it saves.

    Property names are also the keys under which the settings are persisted.
    Colours are OLE_COLOR values (see kvOleColor): 0x00BBGGRR, or 0x80000000 + n for a
    system colour.

    The child controls carry fixed names as objectName ("ToolbarMain" with the actions
    "Week", "Month", "Back", "Forward", "Print", "Previous", "Next", "Today", "New";
    "StatusBar", "DTPicker1", "lblMonat", "TimerTooltip", …), so a host can reach them with
    findChild(). Failures never leave the control as exceptions: they are reported with a
    numbered code (see #RaiseErrorEvent and Error()).
*/
class KVKALIVO_EXPORT kvKalivo : public QWidget
{
    Q_OBJECT

    /*!
        kvWeek (default) shows one row of seven days, Monday to Sunday, around #ActualDate;
        kvMonth six rows, the 42 days from the Monday on or before the 1st of ActualDate's
        month. Persisted as "View".
    */
    Q_PROPERTY(kvView View READ View WRITE setView)
    /*!
        kvOne (default): Saturday above Sunday in one column captioned "Sa-So"; kvTwo: a
        column each. Other values are ignored. Persisted as "WeekendColumns".
    */
    Q_PROPERTY(enWeekendColumns WeekendColumns READ WeekendColumns WRITE setWeekendColumns)
    /*!
        True (default): #View, #WeekendColumns, #BorderStyle, #WeeksVisible, #PublicHoliday and
        #ActualDate re-layout the grid as soon as they are set. False: they take effect at the
        next Refresh(), resize or view button, so a host can set several at once. Persisted as
        "AutoRefresh".
    */
    Q_PROPERTY(bool AutoRefresh READ AutoRefresh WRITE setAutoRefresh)
    /*!
        kvNone (default): cells without border and a 1-pixel margin round the grid;
        kvFixedSingle: a single-line border round each cell and no margin. Persisted as
        "BorderStyle".
    */
    Q_PROPERTY(enBorderStyle BorderStyle READ BorderStyle WRITE setBorderStyle)
    //! Background of the day cells; default 0xFFFFFF (white). Persisted as "BackColor".
    Q_PROPERTY(uint BackColor READ BackColor WRITE setBackColor)
    //! Header background of the cell that shows today; default 0xC0C0FF (light red). Persisted.
    Q_PROPERTY(uint TodayHeaderColor READ TodayHeaderColor WRITE setTodayHeaderColor)
    //! Header text colour of the days of #ActualDate's month; default 0 (black). Persisted.
    Q_PROPERTY(uint DayHeaderForeColor READ DayHeaderForeColor WRITE setDayHeaderForeColor)
    /*!
        Header background of the days of #ActualDate's month; default 0x80000004, the system
        colour kvOleColor::Menu. Persisted as "DayHeaderColor2".
    */
    Q_PROPERTY(uint DayHeaderColor2 READ DayHeaderColor2 WRITE setDayHeaderColor2)
    /*!
        Header background of the days of the neighbouring months, which show black text;
        default 0x8000000B, the system colour kvOleColor::InactiveBorder. Persisted as
        "DayHeaderColor1".
    */
    Q_PROPERTY(uint DayHeaderColor1 READ DayHeaderColor1 WRITE setDayHeaderColor1)
    /*!
        The selected day, which the view is built around and new appointments fall on;
        default today. Clicks on a cell, "Today", "Next", "Previous" and the date picker
        change it as well (without PropertyChanged()). Persisted as "ActualDate".
    */
    Q_PROPERTY(QDate ActualDate READ ActualDate WRITE setActualDate)
    /*!
        The host's open database connection: not owned, null until set and once
        the connection is deleted, never persisted. Setting it chooses the SQL dialect
        (#DbDateFormat), enables "Next", "Previous" and "New" when the connection is open,
        and probes the optional columns of #RecordSource, so set RecordSource first. A
        failure is reported with the data layer's ADO number (3709 when that does
        not fit 16 bits) and the engine's message.
    */
    Q_PROPERTY(kvConnection *Connection READ Connection WRITE setConnection STORED false DESIGNABLE false)
    /*!
        Name of the appointment table: columns DateID, DateBegin, DateEnd, Name and,
        optionally, Remark, Document and ImageID (kvAppointmentTable creates it).
        Used verbatim in the SQL texts. Setting it reloads nothing. Persisted as "RecordSource".
    */
    Q_PROPERTY(QString RecordSource READ RecordSource WRITE setRecordSource)
    /*!
        Background of the appointment tooltip's first line (time and name); default
        0x80000018, the system colour kvOleColor::InfoBackground. Persisted.
    */
    Q_PROPERTY(uint ToolTipBackColor1 READ ToolTipBackColor1 WRITE setToolTipBackColor1)
    //! Background of the tooltip's remark; default 0xFFFFFF (white). Persisted.
    Q_PROPERTY(uint ToolTipBackColor2 READ ToolTipBackColor2 WRITE setToolTipBackColor2)
    /*!
        Whether the calendar-week column, with each row's ISO week number, is shown left of
        the cells (15 pixels); default True. Persisted as "WeeksVisible".
    */
    Q_PROPERTY(bool WeeksVisible READ WeeksVisible WRITE setWeeksVisible)
    //! Whether the control accepts input (QWidget's enabled state); not persisted.
    Q_PROPERTY(bool Enabled READ Enabled WRITE setEnabled STORED false DESIGNABLE false)
    /*!
        True: new, changed and deleted appointments are not written by the control but
        announced through DateNew(), DateChange() and DateDelete() (without the delete
        question), and the host writes them. Default False. Persisted.
    */
    Q_PROPERTY(bool RaiseDatabaseEvents READ RaiseDatabaseEvents WRITE setRaiseDatabaseEvents)
    /*!
        True: the cells and the printout name the German public and commemorative days
        ("Neujahrstag", "Ostermontag", "Totensonntag", …) with a red, bold day
        number. Default False. Persisted as "PublicHoliday".
    */
    Q_PROPERTY(bool PublicHoliday READ PublicHoliday WRITE setPublicHoliday)
    /*!
        True: creating or editing an appointment emits Edit() instead of opening the editor
        dialog, and the host edits and writes. Deleting is not affected. Default False.
        Persisted.
    */
    Q_PROPERTY(bool RaiseEditEvent READ RaiseEditEvent WRITE setRaiseEditEvent)
    //! Text at the foot of every printout (PrintCalendar()), up to two lines. Persisted.
    Q_PROPERTY(QString Footnote READ Footnote WRITE setFootnote)
    /*!
        False (default): a failure shows a message box titled "kvKalivo.ocx" with
        "kvKalivo-Fehlercode N" and the description; True: it emits Error() instead.
        Thread-wide (every control of the thread), not persisted.
    */
    Q_PROPERTY(bool RaiseErrorEvent READ RaiseErrorEvent WRITE setRaiseErrorEvent STORED false DESIGNABLE false)
    /*!
        Folder of the appointment icons for the icon picker, files named by their ImageID
        ("11.ico"); a folder without icons gives the built-in set. The picker is
        thread-wide; not persisted.
    */
    Q_PROPERTY(QString IconPath READ IconPath WRITE setIconPath STORED false DESIGNABLE false)
    /*!
        How dates are written into SQL: kvAuto (default) detects the dialect from
        the connection, the other values force one. Takes effect when #Connection is next
        set. Persisted as "DbDateFormat".
    */
    Q_PROPERTY(enDbDateFormat DbDateFormat READ DbDateFormat WRITE setDbDateFormat)
    /*!
        Extension: False (default) sends the plain SQL texts exactly (values concatenated
        into the text, unescaped, RecordSource as it stands); True binds every value as a
        parameter and writes SQL the connected engine accepts, so apostrophes and injected SQL
        are stored as typed. RecordSource is then one table name, bare or quoted ([…], "…" or
        `…`), optionally after a schema, written as the engine quotes names; anything else is
        refused with error 5. Recommended for new hosts. Persisted as "ParameterizedSql".
    */
    Q_PROPERTY(bool ParameterizedSql READ ParameterizedSql WRITE setParameterizedSql)
    /*!
        The container's ambient UserMode: True at run time; False in a form designer, where
        the grid shows neither dates nor appointments. Not persisted.
    */
    Q_PROPERTY(bool UserMode READ UserMode WRITE setUserMode STORED false DESIGNABLE false)

public:
    //! The views of #View; the values are fixed (persisted settings hold them).
    enum kvView : qint16 {
        kvWeek = 1,  //!< one week, Monday to Sunday, in one row
        kvMonth = 2  //!< six weeks from the Monday on or before the 1st
    };
    Q_ENUM(kvView)
    //! The cell borders of #BorderStyle; the values are fixed.
    enum enBorderStyle : qint16 {
        kvNone = 0,       //!< no cell border, a 1-pixel margin round the grid
        kvFixedSingle = 1 //!< a single-line border round each cell, no margin
    };
    Q_ENUM(enBorderStyle)
    //! The weekend layouts of #WeekendColumns; the values are fixed.
    enum enWeekendColumns : qint16 {
        kvOne = 1, //!< Saturday above Sunday in one column, captioned "Sa-So"
        kvTwo = 2  //!< a column for Saturday and one for Sunday
    };
    Q_ENUM(enWeekendColumns)
    //! The SQL date literals of #DbDateFormat; the values are fixed.
    enum enDbDateFormat : qint16 {
        kvAuto = 0,             //!< detect: "Microsoft.Jet.OLEDB" in the Provider is Access, "SQL SERVER" or "SQLOLEDB" in the connection string SQL Server, anything else MySQL
        kvMicrosoft_SQL = 1,    //!< SQL Server: CONVERT(DATETIME,'2004-03-17 14:05:00',102)
        kvMicrosoft_Access = 2, //!< Access: \#03-17-2004 14:05\#
        kvMySQL = 3             //!< MySQL, MariaDB, SQLite: '2004-03-17 14:05'
    };
    Q_ENUM(enDbDateFormat)

    //! Defaults of a new control (InitProperties()).
    static constexpr uint DefaultBackColor = 0xFFFFFFu;
    //! Grey of the control's surface between the cells.
    static constexpr uint DefaultSurfaceColor = 0x808080u;
    //! Default of #DayHeaderColor1: the system colour kvOleColor::InactiveBorder.
    static constexpr uint DefaultDayHeaderColor1 = 0x8000000Bu;
    //! Default of #DayHeaderColor2: the system colour kvOleColor::Menu.
    static constexpr uint DefaultDayHeaderColor2 = 0x80000004u;
    //! Default of #TodayHeaderColor: light red.
    static constexpr uint DefaultTodayHeaderColor = 0xC0C0FFu;

    /*!
        A fresh control (InitProperties()): the week view of today with the defaults,
        German month and weekday names (setLocale() changes them). The thread's kvError is
        replaced by a new one. The grid is arranged at the first resize.
    */
    explicit kvKalivo(QWidget *parent = nullptr);
    //! Terminate: hides the tooltip and unloads the day cells.
    ~kvKalivo() override;

    //! The shown view; see #View.
    kvView View() const;
    //! Presses the toolbar button "Week" or "Month", notifies "View", re-layouts when #AutoRefresh.
    void setView(kvView view);
    //! The weekend layout; see #WeekendColumns.
    enWeekendColumns WeekendColumns() const;
    //! Stores kvOne or kvTwo (other values are ignored); notifies; re-layouts when #AutoRefresh.
    void setWeekendColumns(enWeekendColumns columns);
    //! Whether setters re-layout at once; see #AutoRefresh.
    bool AutoRefresh() const;
    //! Notifies; True re-layouts at once.
    void setAutoRefresh(bool autoRefresh);
    //! The cell borders; see #BorderStyle.
    enBorderStyle BorderStyle() const;
    //! Notifies; re-layouts only for kvFixedSingle (kvNone shows at the next re-layout).
    void setBorderStyle(enBorderStyle style);

    //! The cells' background; see #BackColor.
    uint BackColor() const;
    //! Notifies; a non-zero colour is applied to every cell at once, black (0) at the next colour pass.
    void setBackColor(uint color);
    //! Today's header colour; see #TodayHeaderColor.
    uint TodayHeaderColor() const;
    //! As setBackColor(): applied at once unless 0; notifies.
    void setTodayHeaderColor(uint color);
    //! The header text colour; see #DayHeaderForeColor.
    uint DayHeaderForeColor() const;
    //! As setBackColor(): applied at once unless 0; notifies.
    void setDayHeaderForeColor(uint color);
    //! The header colour of the month's days; see #DayHeaderColor2.
    uint DayHeaderColor2() const;
    //! As setBackColor(): applied at once unless 0; notifies.
    void setDayHeaderColor2(uint color);
    //! The header colour of other months' days; see #DayHeaderColor1.
    uint DayHeaderColor1() const;
    //! As setBackColor(): applied at once unless 0; notifies.
    void setDayHeaderColor1(uint color);

    //! The selected day, without time of day; see #ActualDate.
    QDate ActualDate() const;
    /*!
        When \a date differs from ActualDate (an invalid date never does): stores it, moves the
        date picker, notifies "ActualDate". In every case re-layouts when #AutoRefresh and
        writes the week "N. KW" into the status bar. Navigation reloads by itself.
    */
    void setActualDate(const QDate &date);

    /*!
        The host's open connection (not owned; it may be a kvConnection::Wrap of the
        host's QSqlDatabase). Setting it chooses the SQL dialect, enables "Next", "Previous"
        and "New" when it is open, and probes the table's optional columns. A failure of the
        connection or the probe is reported as a numbered error with the data layer's ADO number
        (3709 when that does not fit 16 bits) and the engine's message.
    */
    kvConnection *Connection() const;
    /*!
        Takes \a connection as described for #Connection; nullptr while
        DbDateFormat is kvAuto is reported as error 91.
    */
    void setConnection(kvConnection *connection);
    //! The appointment table's name; see #RecordSource.
    QString RecordSource() const;
    //! Stores the name and notifies "RecordSource"; nothing is reloaded or probed.
    void setRecordSource(const QString &recordSource);
    //! The printout's footnote; see #Footnote.
    QString Footnote() const;
    //! Stores the text and notifies "Footnote".
    void setFootnote(const QString &footnote);

    //! The tooltip's first-line background; see #ToolTipBackColor1.
    uint ToolTipBackColor1() const;
    //! Passes the colour to the tooltip and notifies "ToolTipBackColor1".
    void setToolTipBackColor1(uint color);
    //! The tooltip's remark background; see #ToolTipBackColor2.
    uint ToolTipBackColor2() const;
    //! Passes the colour to the tooltip and notifies "ToolTipBackColor2".
    void setToolTipBackColor2(uint color);

    //! Whether the week column shows; see #WeeksVisible.
    bool WeeksVisible() const;
    //! Notifies "WeeksVisible"; re-layouts when #AutoRefresh.
    void setWeeksVisible(bool visible);
    //! The enabled state of the control surface (not persisted).
    bool Enabled() const { return isEnabled(); }
    //! QWidget::setEnabled(); no notification.
    void setEnabled(bool enabled);
    //! Whether writes are left to the host; see #RaiseDatabaseEvents.
    bool RaiseDatabaseEvents() const;
    //! Stores the switch and notifies "RaiseDatabaseEvents".
    void setRaiseDatabaseEvents(bool raise);
    //! Whether holidays are named; see #PublicHoliday.
    bool PublicHoliday() const;
    //! Notifies "PublicHoliday"; re-layouts when #AutoRefresh.
    void setPublicHoliday(bool show);
    //! Whether editing is left to the host; see #RaiseEditEvent.
    bool RaiseEditEvent() const;
    //! Stores the switch and notifies "RaiseEditEvent".
    void setRaiseEditEvent(bool raise);
    //! Thread-wide: switching it on one control switches every control of the thread.
    bool RaiseErrorEvent() const;
    //! Sets the thread-wide switch (kvErrorReporting::setRaiseErrorEvent()); no notification.
    void setRaiseErrorEvent(bool raise);
    //! The icon folder; see #IconPath.
    QString IconPath() const;
    //! Loads the icons of \a path into the thread's icon picker; no notification.
    void setIconPath(const QString &path);
    //! The date-literal dialect chosen by the host; see #DbDateFormat.
    enDbDateFormat DbDateFormat() const;
    //! Stores the choice; no notification, no reload.
    void setDbDateFormat(enDbDateFormat format);

    /*!
        Extension: False (default) sends the plain SQL texts exactly; True binds every value as
        a parameter and uses SQL the connected engine accepts, so that apostrophes and injected
        SQL are stored as typed. Recommended for new hosts. Persisted as "ParameterizedSql".
    */
    bool ParameterizedSql() const;
    //! Switches the SQL of all later reads and writes; notifies "ParameterizedSql".
    void setParameterizedSql(bool parameterized);

    //! The container's ambient UserMode: false in a form designer (no dates, no appointments).
    bool UserMode() const;
    //! Set by the container (the Designer plugin); a visible control re-layouts at once.
    void setUserMode(bool userMode);

    //! Re-layout, whatever AutoRefresh says (grid arrangement, then the current-day marking).
    Q_INVOKABLE void Refresh();

    /*!
        The edit flow. \a action 1 new appointment on ActualDate, 2 delete and 3 change
        the active row of the selected day cell. Host events (RaiseEditEvent,
        RaiseDatabaseEvents) replace the editor or the writes; the view is reloaded unless a
        writer or the host cancelled. Failures are reported as 13 + step.
    */
    void EditAppointment(qint16 action);

    //! Prints the current view around #ActualDate, without asking (the toolbar's "Print" asks first).
    Q_INVOKABLE void PrintCalendar();
    /*!
        Prints the week or month around \a printDate (default ActualDate) in \a printView (default View).
        One landscape A4 page through kvPlatform::printerService(): the print dialog, a
        preview, then the printer; each day with its holiday name (when #PublicHoliday) and
        appointments, the calendar weeks and the #Footnote. A failure is reported as 300.
    */
    void PrintCalendar(const QDate &printDate, kvView printView);

    //! Applies the defaults of a new control; the constructor already applied them.
    void InitProperties();
    /*!
        Reads the saved settings key by key; a missing key keeps its default, a missing colour
        what the first day cell shows (before the first arrangement: the default).
    */
    void ReadProperties(const kvPropertyBag &bag);
    //! Writes the persisted settings; values equal to their default are not stored.
    void WriteProperties(kvPropertyBag &bag) const;

Q_SIGNALS:
    //! A routine of the control failed while RaiseErrorEvent is True.
    void Error(kvError &Err);

    // The host events. Every argument is by reference; the host may change them and the
    // control goes on with the changed values. The argument orders are part of the interface
    // that hosts connect to: Edit has the ImageID before the Document, the others after it.
    /*!
        A new appointment is to be saved while #RaiseDatabaseEvents is True; the
        control writes nothing. \a datDateBegin and \a datDateEnd (wall-clock values in a
        QDateTime in UTC; an all-day appointment runs from 00:00 to 00:00), \a sName,
        \a sRemark, \a sDocument (a linked file's path) and \a iImgId (icon number, 0 for
        none) are the editor's values, by reference. The host inserts the row; the view is
        reloaded unless it sets \a bCancel.
    */
    void DateNew(QDateTime &datDateBegin, QDateTime &datDateEnd, QString &sName, QString &sRemark,
                 QString &sDocument, qint16 &iImgId, bool &bCancel);
    /*!
        Appointment \a lDateID is to be saved with changed values while
        #RaiseDatabaseEvents is True; the control sends no UPDATE. The arguments are as for
        DateNew(); the view is reloaded unless the host sets \a bCancel.
    */
    void DateChange(qint32 &lDateID, QDateTime &datDateBegin, QDateTime &datDateEnd, QString &sName,
                    QString &sRemark, QString &sDocument, qint16 &iImgId, bool &bCancel);
    /*!
        Appointment \a lDateID is to be deleted (context menu "Löschen..." or the
        editor's delete) while #RaiseDatabaseEvents is True; the control neither asks nor
        deletes. The other arguments are the appointment's values, as for DateNew(); the view
        is reloaded unless the host sets \a bCancel.
    */
    void DateDelete(qint32 &lDateID, QDateTime &datDateBegin, QDateTime &datDateEnd, QString &sName,
                    QString &sRemark, QString &sDocument, bool &bCancel);
    /*!
        An appointment is to be edited while #RaiseEditEvent is True; it replaces
        the editor dialog, and the control writes nothing. \a iAction 1: a new one ("New",
        "Neu...", a double-click on a day; both dates #ActualDate, empty texts, \a lDateID
        and \a iImgId 0); 3: the selected row ("Bearbeiten...", a double-click on it) with its
        values. Note the order: \a iImgId before \a sDocument. The view is reloaded unless the
        host sets \a bCancel.
    */
    void Edit(qint32 &lDateID, QDateTime &datDateBegin, QDateTime &datDateEnd, QString &sName,
              QString &sRemark, qint16 &iImgId, QString &sDocument, qint16 &iAction, bool &bCancel);
    /*!
        The container notification: a persisted property changed. Carries the property's
        name, except for WeekendColumns, BorderStyle and AutoRefresh, which pass their
        value as text; the quirk is kept deliberately, as hosts compare these texts.
    */
    void PropertyChanged(const QString &propertyName);

protected:
    //! Paints the grey surface (DefaultSurfaceColor) that shows between the cells.
    void paintEvent(QPaintEvent *event) override;
    //! Resize: re-layouts, whatever #AutoRefresh says.
    void resizeEvent(QResizeEvent *event) override;
    //! A locale change (setLocale()) refills the grid with the new month and weekday names.
    void changeEvent(QEvent *event) override;
    /*!
        The keyboard in the grid: Left/Right the previous/next day, Up/Down the previous/next
        row and past the first/last one the same weekday a week earlier/later, PageUp/PageDown
        back/forward, Home today, Enter opens the selected row (or a new appointment on the
        day), Delete asks to delete it, the menu key and Shift+F10 open the context menu.
    */
    void keyPressEvent(QKeyEvent *event) override;
    //! The focus given to the control (a host's setFocus()) goes on to the selected day of the grid.
    void focusInEvent(QFocusEvent *event) override;

private:
    friend class kvKalivoPrivate;
    std::unique_ptr<kvKalivoPrivate> const d;
};
