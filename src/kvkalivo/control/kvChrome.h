#pragma once

#include <QList>
#include <QString>

class QAction;
class QActionGroup;
class QDateEdit;
class QLabel;
class QMenu;
class QPoint;
class QStatusBar;
class QToolBar;
class kvDate;
class kvKalivoPrivate;

/*!
    \internal
    The control's chrome: the toolbar "ToolbarMain", the month caption "lblMonat", the date
    picker "DTPicker1", the status bar with the week panel and the context menu. It places
    them round the grid and turns their commands into the navigator's and the edit flow's.
*/
class kvChrome
{
public:
    explicit kvChrome(kvKalivoPrivate &d);

    //! Checks the toolbar button of the current view ("Week" or "Month").
    void PressViewButton();
    //! Moves the date picker to the actual day without raising its change.
    void SyncDatePicker();
    //! Writes the actual day's calendar week "N. KW" into the status bar.
    void ShowCalendarWeek();
    //! "Next", "Previous" and "New" follow the connection's state.
    void EnableDatabaseButtons(int connectionState);
    void SetMonthCaption(const QString &text);

    //! Toolbar, picker and caption across the top, the status bar along the bottom.
    void Place();
    //! Height of the toolbar row, plus the caption's own row on a narrow control.
    int HeaderHeight() const;
    int StatusBarTop() const;

    //! "Bearbeiten..." and "Löschen..." only on a row, the view switch only on a day.
    void PopupContextMenu(bool onRow, const QPoint &globalPos);
    QDateEdit *DatePicker() const { return m_datePicker; }

private:
    void CreateToolbar();
    QAction *AddToolbarButton(int position, const QString &key, const QString &toolTip,
                              const QString &imageName);
    void CreateMonthCaption();
    void CreateDatePicker();
    void CreateStatusBar();
    void CreateContextMenu();
    void OnToolbarButton(const QString &key);
    void OnContextMenuItem(int index);
    int ToolbarRowHeight() const;
    int WidestMonthCaption() const;
    bool MonthCaptionFitsBesideToolbar() const;

    kvKalivoPrivate &d;
    QToolBar *m_toolbarMain = nullptr;
    QActionGroup *m_viewButtons = nullptr;
    QStatusBar *m_statusBar = nullptr;
    QLabel *m_statusWeekPanel = nullptr;
    QDateEdit *m_datePicker = nullptr;
    QLabel *m_monthCaption = nullptr;
    QMenu *m_contextMenu = nullptr;
    QList<QAction *> m_contextItems;
};
