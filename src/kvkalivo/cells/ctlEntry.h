#pragma once

#include "kvDate.h"
#include "kvkalivo_export.h"

#include <QFont>
#include <QObject>
#include <QPointF>
#include <QRect>
#include <QStaticText>
#include <QString>

#include <memory>

class QPainter;
class QPalette;
class kvPropertyBag;
class kvShapedTextCache;

/*!
    \brief One appointment row of a day cell, and the header row of every cell.

    A row is not a widget: a month holds hundreds of rows, so each row keeps its record and
    its presentation as data and its day cell (ctlDay) places, paints and hit-tests it. Its
    parts \c lblTime, \c lblText and \c linSeperator are plain values, not widgets; the cell
    draws them with Paint() and passes the mouse on with the Handle*() calls.

    Everything is in pixels of the row: its Left/Top are in the cell's inner area, the labels'
    geometry is relative to the row. The row measures its text in font(), which its cell sets
    to the cell's own font, through the font's kvShapedTextCache, so that rows of the same
    text share the measuring and the shaping. The shortened caption and the overflow text are
    worked out when first read or painted, so a row that is never shown is never measured.
*/
class KVKALIVO_TESTS_EXPORT ctlEntry : public QObject
{
    Q_OBJECT
    Q_PROPERTY(uint BackColor READ BackColor WRITE setBackColor)
    Q_PROPERTY(uint ForeColor READ ForeColor WRITE setForeColor)
    Q_PROPERTY(bool IsActualDay READ IsActualDay WRITE setIsActualDay)
    Q_PROPERTY(bool IsContinuedDate READ IsContinuedDate WRITE setIsContinuedDate)
    Q_PROPERTY(QString PublicHolidayName READ PublicHolidayName WRITE setPublicHolidayName)
    Q_PROPERTY(bool ShowLineSeperator READ ShowLineSeperator WRITE setShowLineSeperator)
    Q_PROPERTY(qint16 ImgId READ ImgId WRITE setImgId)
    Q_PROPERTY(qint16 Listindex READ Listindex WRITE setListindex)
    Q_PROPERTY(qint32 DateID READ DateID)
    Q_PROPERTY(QString Text READ Text)
    Q_PROPERTY(QString Remark READ Remark)
    Q_PROPERTY(QString Document READ Document)
    Q_PROPERTY(QString Time READ Time)
    Q_PROPERTY(int Height READ Height)

public:
    //! A label of the row (\c lblTime, \c lblText) as the cell paints it.
    struct Label
    {
        QString Caption;
        QRect Geometry;       //!< in the row's pixels
        uint BackColor = 0;   //!< OLE_COLOR
        uint ForeColor = 0;   //!< OLE_COLOR
        bool Bold = false;
        QString ToolTipText;  //!< the hover text ("" = none)
        bool Visible = true;
    };

    //! The separator line \c linSeperator, from (X1, Y1) to (X2, Y2) in the row's pixels.
    struct Line
    {
        int X1 = 0;
        int Y1 = 0;
        int X2 = 0;
        int Y2 = 0;
        bool Visible = false;
    };

    //! Which part of the row lies under a point: the labels raise other events than the row.
    enum class Part { None, Background, TimeLabel, TextLabel };

    static constexpr int TimeColumnWidth = 35;
    //! Both labels are 14 pixels high, so a row is 15 pixels after Init (label + 1).
    static constexpr int LabelHeight = 14;
    static constexpr int InitHeight = LabelHeight + 1;
    static constexpr int SeparatorY = 16;
    //! "00:00": a row beginning at midnight shows no time.
    static constexpr QStringView MidnightTime = u"00:00";
    //! Written to lblTime by IsContinuedDate, whatever value is written.
    static constexpr QStringView ContinuedMarker = u"<--";

    //! Property-bag defaults.
    static constexpr uint DefaultBackColor = 0x8000000Au;
    static constexpr bool DefaultIsActualDay = false;
    //! The labels' default text colour (system colour "button text"). Init colours both labels
    //! with its ForeColor argument but stores only its BackColor; ForeColor() is the property.
    static constexpr uint DefaultForeColor = 0x80000012u;
    //! Pure red: the day number of a holiday.
    static constexpr uint HolidayColor = 255u;

    explicit ctlEntry(QObject *parent = nullptr);
    ~ctlEntry() override;

    /*!
        Fills the row with one appointment (or, for a header, one day). \a time "00:00" shows
        no time. The height becomes lblText's height + 1 and the caption is laid out again.
    */
    void Init(qint32 dateId, qint16 listindex, const QString &time, const kvDate &dateBegin,
              const kvDate &dateEnd, const QString &text, const QString &remark,
              const QString &document, qint16 imgId, uint backColor, uint foreColor);

    // The record (read back by the tooltip and the edit flow).
    qint32 DateID() const { return m_dateId; }
    kvDate datDateBegin() const { return m_dateBegin; }
    kvDate datDateEnd() const { return m_dateEnd; }
    //! The whole text, however the caption was shortened.
    QString Text() const { return m_text; }
    QString Remark() const { return m_remark; }
    QString Document() const { return m_document; }
    //! The caption of lblTime: "" for a row beginning at 00:00, "<--" for a continued one.
    QString Time() const { return m_lblTime.Caption; }
    //! The full Text when the caption had to be shortened, else "".
    QString OverflowText() const;

    qint16 ImgId() const { return m_imgId; }
    void setImgId(qint16 imgId) { m_imgId = imgId; }
    qint16 Listindex() const { return m_listindex; }
    void setListindex(qint16 listindex) { m_listindex = listindex; }

    uint BackColor() const { return m_backColor; }
    void setBackColor(uint color);
    uint ForeColor() const { return m_foreColor; }
    void setForeColor(uint color);
    //! The row's own background behind the labels, set by Init only.
    uint RowBackColor() const { return m_rowBackColor; }

    bool IsActualDay() const { return m_isActualDay; }
    void setIsActualDay(bool isActualDay);
    bool IsContinuedDate() const { return m_isContinuedDate; }
    void setIsContinuedDate(bool isContinuedDate);
    QString PublicHolidayName() const { return m_publicHolidayName; }
    void setPublicHolidayName(const QString &name);
    bool ShowLineSeperator() const { return m_linSeperator.Visible; }
    void setShowLineSeperator(bool show);

    /*!
        A row has no window. hWnd is an opaque handle that tells rows apart (its address,
        unique while the row lives), which is all the tooltip tracking compares it for; it is
        never a window-system handle.
    */
    quintptr hWnd() const { return quintptr(this); }

    // Geometry in the cell's inner area; a change of size lays the row out again (Resize).
    int Left() const { return m_geometry.x(); }
    int Top() const { return m_geometry.y(); }
    int Width() const { return m_geometry.width(); }
    int Height() const { return m_geometry.height(); }
    QRect geometry() const { return m_geometry; }
    void Move(int left, int top, int width, int height);
    void setLeft(int left);
    void setTop(int top);
    void setWidth(int width);
    void setHeight(int height);
    bool Visible() const { return m_visible; }
    void setVisible(bool visible) { m_visible = visible; }

    QFont font() const { return m_font; }
    void setFont(const QFont &font);

    const Label &lblTime() const { return m_lblTime; }
    const Label &lblText() const;
    const Line &linSeperator() const { return m_linSeperator; }

    void InitProperties();
    void ReadProperties(const kvPropertyBag &bag);
    void WriteProperties(kvPropertyBag &bag) const;

    //! The part of the row at \a rowPos (row pixels); None outside the row.
    Part HitTest(QPointF rowPos) const;

    // Mouse input from the cell, at \a rowPos in row pixels; each raises the matching signal.
    void HandleMouseMove(QPointF rowPos, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers);
    void HandleMousePress(QPointF rowPos, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    void HandleMouseRelease(QPointF rowPos, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    void HandleDoubleClick(QPointF rowPos);

    //! Paints the row at its geometry; \a palette resolves system colours.
    void Paint(QPainter &painter, const QPalette &palette) const;

    //! The events' Button argument: 1 left, 2 right, 4 middle, or-ed for MouseMove.
    static qint16 VbButton(Qt::MouseButtons buttons);
    //! The events' Shift argument: 1 Shift, 2 Ctrl, 4 Alt.
    static qint16 VbShift(Qt::KeyboardModifiers modifiers);

Q_SIGNALS:
    //! A label was double-clicked; Caption is that label's caption.
    void DblClick(qint32 DateID, const kvDate &datDateBegin, const kvDate &datDateEnd,
                  const QString &Caption, const QString &Remark);
    void MouseMove(qint16 Button, qint16 Shift, float X, float Y);
    //! Raised for the row background only; a press on a label raises nothing.
    void MouseDown(qint16 Button, qint16 Shift, float X, float Y);
    void MouseUp(qint16 Button, qint16 Shift, float X, float Y);

private:
    void Resize();
    bool setSize(int width, int height);
    void LayOutCaption();
    void EnsureLayout() const;
    kvShapedTextCache &MeasuringTexts() const;
    kvShapedTextCache &LabelTexts(bool bold) const;
    void ApplyHolidayLook();
    const Label *LabelAt(Part part) const;
    QPointF ToRowPixels(Part part, QPointF rowPos) const;
    static QPointF LabelToRow(const Label &label, QPointF labelPos);
    void PaintLabel(QPainter &painter, const QPalette &palette, const Label &label) const;
    const QStaticText &Shaped(const Label &label) const;

    qint32 m_dateId = 0;
    qint16 m_listindex = 0;
    qint16 m_imgId = 0;
    kvDate m_dateBegin;
    kvDate m_dateEnd;
    QString m_text;
    QString m_remark;
    QString m_document;
    mutable QString m_overflowText;
    QString m_publicHolidayName;
    uint m_backColor = DefaultBackColor;
    uint m_foreColor = DefaultForeColor;
    uint m_rowBackColor = DefaultBackColor;
    bool m_isActualDay = DefaultIsActualDay;
    bool m_isContinuedDate = false;
    bool m_visible = false;
    QRect m_geometry;
    QFont m_font;
    // The shared caches of m_font and of the labels' regular and bold faces; taken on first use.
    mutable std::shared_ptr<kvShapedTextCache> m_texts;
    mutable std::shared_ptr<kvShapedTextCache> m_labelTexts[2];
    // Laid out on first use (LayOutCaption).
    mutable bool m_layoutPending = false;
    Label m_lblTime;
    mutable Label m_lblText;

    //! A label's caption as last painted, kept so that a repaint looks nothing up.
    struct ShapedCaption
    {
        QStaticText text;
        bool bold = false;
    };
    mutable ShapedCaption m_shapedTime;
    mutable ShapedCaption m_shapedText;
    Line m_linSeperator;
};
