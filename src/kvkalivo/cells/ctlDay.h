#pragma once

#include "ctlEntry.h"
#include "kvControlArray.h"
#include "kvDate.h"
#include "kvDayRow.h"
#include "kvkalivo_export.h"

#include <QList>
#include <QPixmap>
#include <QPointer>
#include <QRect>
#include <QWidget>

#include <memory>
#include <optional>

class QScrollBar;
class kvDayMouseRouter;
class kvDayRowScroller;
class kvPropertyBag;

/*!
    \brief One calendar day of the week or month grid.

    The cell shows its header row \c ctlHeader (day number and day text), the icons of its
    appointments in the header (\c imgDateImage), one row per appointment (\c ctlEntry, reached
    through Entries()) and the scroll bar \c VScroll when the rows do not fit. Rows and icons are
    painted by the cell; \c VScroll is a real child widget. A row gets its ctlEntry only when it
    is first painted, hit or asked for, so that a day of thousands of appointments fills and
    lays out at the cost of the few rows that can be seen.

    Positions are pixels of the cell's inner area (inside the border when BorderVisible).
    Colours are OLE_COLOR values. Member routines report their failures as code 200 and the
    destructor as code 100; Entries() is the exception: like a keyed collection it
    throws kvRuntimeError 5 for an unknown index, and its caller's error handling reports it.
*/
class KVKALIVO_TESTS_EXPORT ctlDay : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(uint BackColor READ BackColor WRITE setBackColor)
    Q_PROPERTY(uint DayHeaderColor2 READ DayHeaderColor2 WRITE setDayHeaderColor2)
    Q_PROPERTY(uint DayHeaderForeColor READ DayHeaderForeColor WRITE setDayHeaderForeColor)
    Q_PROPERTY(uint TodayHeaderColor READ TodayHeaderColor WRITE setTodayHeaderColor)
    Q_PROPERTY(bool IsActualDay READ IsActualDay WRITE setIsActualDay)
    Q_PROPERTY(QString PublicHolidayName READ PublicHolidayName WRITE setPublicHolidayName)
    Q_PROPERTY(bool BorderVisible READ BorderVisible WRITE setBorderVisible)
    Q_PROPERTY(qint16 ActiveEntryIndex READ ActiveEntryIndex)
    Q_PROPERTY(int EntriesCount READ EntriesCount)

public:
    //! An element of the icon array \c imgDateImage as the cell paints it.
    struct Image
    {
        QPixmap Picture;   //!< null when the icon catalogue has no picture for the ImgId
        QRect Geometry;    //!< in the cell's inner area
        bool Visible = false;
    };

    //! Property defaults; the main control uses them before its first cell exists.
    static constexpr uint DefaultBackColor = 0xFFFFFFu;
    static constexpr uint DefaultDayHeaderColor2 = 0x8000000Au;
    static constexpr uint DefaultDayHeaderForeColor = 0;
    static constexpr uint DefaultTodayHeaderColor = 0;
    static constexpr bool DefaultIsActualDay = false;

    //! Every row is this high after a Resize, whatever its Init made it.
    static constexpr int RowHeight = 16;
    //! VScroll starts just below the header row.
    static constexpr int ScrollBarTop = 15;
    //! Icon k of the cell lies at IconsLeft + k × the template icon's width.
    static constexpr int IconsLeft = 200;
    static constexpr int IconSize = 16;
    //! The rows' labels are 14 pixels high; an 11-pixel font fits them at any screen resolution.
    static constexpr int FontPixelSize = 11;
    //! Rows kept for the next fill to reuse are at least this many.
    static constexpr int MinimumKeptRows = 32;

    explicit ctlDay(QWidget *parent = nullptr);
    ~ctlDay() override;

    //! Shows \a datDay: its day number in the header with \a text, in the two header colours.
    void Init(const kvDate &datDay, const QString &text, const QString &remark,
              uint headerBackColor, uint headerForeColor);
    //! Appends one appointment row (and its icon when \a imgId > 0), in the order of the calls.
    void AddDate(qint32 dateId, const kvDate &dateBegin, const kvDate &dateEnd,
                 const QString &text, const QString &remark, const QString &document,
                 qint16 imgId, uint backColor, uint foreColor);
    /*!
        Removes all rows and icons. Their ctlEntry objects are kept hidden for the next fill to
        reuse, as many as the cell can show at once or the next fill has rows; the others are
        deleted once control returns to the event loop.
    */
    void ClearDates();

    kvDate datDay() const { return m_datDay; }
    //! The header colours Init was given.
    uint HeaderBackColor() const { return m_headerBackColor; }
    uint HeaderForeColor() const { return m_headerForeColor; }

    uint BackColor() const { return m_backColor; }
    void setBackColor(uint color);
    uint DayHeaderColor2() const { return m_dayHeaderColor2; }
    void setDayHeaderColor2(uint color);
    uint DayHeaderForeColor() const { return m_dayHeaderForeColor; }
    void setDayHeaderForeColor(uint color);
    uint TodayHeaderColor() const { return m_todayHeaderColor; }
    void setTodayHeaderColor(uint color);
    //! Write-only: True gives the header the TodayHeaderColor; False changes nothing at all.
    void setIsToday(bool isToday);
    bool IsActualDay() const { return m_isActualDay; }
    void setIsActualDay(bool isActualDay);
    QString PublicHolidayName() const;
    void setPublicHolidayName(const QString &name);
    bool BorderVisible() const { return m_borderVisible; }
    void setBorderVisible(bool visible);
    //! The row on which a mouse button was last released.
    qint16 ActiveEntryIndex() const { return m_activeEntryIndex; }

    //! The row added as the \a index-th; throws kvRuntimeError 5 when there is none.
    ctlEntry *Entries(qint16 index) const;
    int EntriesCount() const;

    ctlEntry &ctlHeader() const { return *m_header; }
    //! The row array of the rows made so far; element 0 is the hidden template.
    const kvControlArray<ctlEntry> &ctlEntryArray() const { return m_rows; }
    QScrollBar *VScroll() const { return m_vScroll; }
    //! Elements of the icon array, the hidden template 0 included.
    int imgDateImageCount() const { return int(m_images.size()); }
    //! Throws kvRuntimeError 340 for an element that is not loaded.
    const Image &imgDateImage(int index) const;

    /*!
        Captures the mouse for a row: until ReleaseCapture(), every mouse move, press and
        release of the cell (and, while it is visible, of the whole screen) goes to row
        \a entryIndex, so that the control notices when the pointer leaves the row.
    */
    void SetCapture(qint16 entryIndex);
    void ReleaseCapture();

    //! The selected row, 1-based, that the focus frame marks; 0: the day itself.
    qint16 FocusEntryIndex() const { return m_focusEntryIndex; }
    /*!
        Selects row \a index (0: the day itself) as a click on it does: a row becomes the
        ActiveEntryIndex and is scrolled into view. An index without a row is reported as 200.
    */
    void SelectEntry(qint16 index);

    void InitProperties();
    void ReadProperties(const kvPropertyBag &bag);
    void WriteProperties(kvPropertyBag &bag) const;

Q_SIGNALS:
    // The cell's events; kvKalivo handles them.
    void DayMouseUp(qint16 Button, qint16 Shift, float X, float Y);
    void EntryMouseUp(qint16 EntryIndex, qint16 Button, qint16 Shift, float X, float Y);
    void EntryDblClick(qint16 EntryIndex);
    void EntryMouseMove(qint16 EntryIndex, qint32 X, qint32 Y, qint32 EntryLeft, qint32 EntryTop,
                        qint32 EntryWidth, qint32 EntryHeight);
    void EntryMouseDown(qint16 EntryIndex, qint32 X, qint32 Y, qint32 EntryLeft, qint32 EntryTop,
                        qint32 EntryWidth, qint32 EntryHeight);
    void DayDblClick();

    //! A persisted property was written ("BackColor", "DayHeaderColor2", ...).
    void PropertyChanged(const QString &name);

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    //! The collection of the rows in insertion order: row i has the key i + "_".
    struct EntryCollection
    {
        QList<kvDayRow> rows;
    };

    ctlEntry *CreateRow(int index);
    void ConnectRow(ctlEntry *row, qint16 index);
    void ConnectHeader();
    void AddIcon(qint16 imgId);
    ctlEntry *MadeRow(qsizetype position) const;
    ctlEntry *TakeRow(qint16 index) const;
    void DetachRows();
    void TrimRows();

    void SyncLayout();
    int InnerWidth() const;
    int InnerHeight() const;

    void SetFocusEntry(qint16 index);
    void AnnounceFocus();

    kvDate m_datDay;
    uint m_headerBackColor = 0;
    uint m_headerForeColor = 0;
    uint m_backColor = DefaultBackColor;
    uint m_dayHeaderColor2 = DefaultDayHeaderColor2;
    uint m_dayHeaderForeColor = DefaultDayHeaderForeColor;
    uint m_todayHeaderColor = DefaultTodayHeaderColor;
    bool m_isActualDay = DefaultIsActualDay;
    bool m_borderVisible = false;
    qint16 m_activeEntryIndex = 0;
    qint16 m_focusEntryIndex = 0;
    qint16 m_lastRowIndex = 0;
    qint32 m_nextRowTop = 0;
    QSize m_laidOutSize;

    ctlEntry *m_header = nullptr;
    // A row's ctlEntry is made on first use, by const readers (Entries, painting) as well.
    mutable kvControlArray<ctlEntry> m_rows;
    mutable std::optional<EntryCollection> m_entries; //!< unset until the first AddDate after ClearDates
    bool m_trimPending = false;
    QList<Image> m_images;
    QScrollBar *m_vScroll = nullptr;

    std::unique_ptr<kvDayMouseRouter> m_mouse;
    std::unique_ptr<kvDayRowScroller> m_scroller;

    friend class kvDayCellPainter;
    friend class kvDayMouseRouter;
    friend class kvDayRowScroller;
};
