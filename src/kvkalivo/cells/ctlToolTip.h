#pragma once

#include "kvkalivo_export.h"

#include <QFrame>

class QLabel;

/*!
    \brief The appointment tooltip that kvKalivo shows over a row.

    A child of the control (not a top-level window) with a 1-pixel border. Inside the border
    the first line holds lblTime (left 0, width 35) and lblText (left 35, width 346), both
    16 pixels high on ToolTipBackColor1; lblRemark (top 16, the full width) shows the remark
    word-wrapped on ToolTipBackColor2. Resize() sizes the control to its content (at most
    383 pixels wide, border included); it throws kvRuntimeError 6 when the 16-bit arithmetic
    overflows, and the caller reports it.

    The control keeps one hidden instance and passes its ToolTipBackColor1/2 through.
*/
class KVKALIVO_TESTS_EXPORT ctlToolTip : public QFrame
{
    Q_OBJECT
    Q_PROPERTY(QString Time READ Time WRITE setTime)
    Q_PROPERTY(QString Text READ Text WRITE setText)
    Q_PROPERTY(QString Remark READ Remark WRITE setRemark)
    Q_PROPERTY(qint32 DateID READ DateID WRITE setDateID)
    Q_PROPERTY(qint16 MinWidth READ MinWidth WRITE setMinWidth)
    Q_PROPERTY(qint16 NormalWidth READ NormalWidth WRITE setNormalWidth)
    Q_PROPERTY(uint ToolTipBackColor1 READ ToolTipBackColor1 WRITE setToolTipBackColor1)
    Q_PROPERTY(uint ToolTipBackColor2 READ ToolTipBackColor2 WRITE setToolTipBackColor2)

public:
    //! System colour "info background" for the first line, white for the remark.
    static constexpr uint DefaultToolTipBackColor1 = 0x80000018u;
    static constexpr uint DefaultToolTipBackColor2 = 0x00FFFFFFu;

    explicit ctlToolTip(QWidget *parent = nullptr);

    QString Time() const;
    void setTime(const QString &time);
    QString Text() const;
    void setText(const QString &text);
    QString Remark() const;
    void setRemark(const QString &remark);

    qint32 DateID() const { return m_dateID; }
    void setDateID(qint32 id) { m_dateID = id; }
    qint16 MinWidth() const { return m_minWidth; }
    void setMinWidth(qint16 width) { m_minWidth = width; }
    qint16 NormalWidth() const { return m_normalWidth; }
    void setNormalWidth(qint16 width) { m_normalWidth = width; }

    uint ToolTipBackColor1() const { return m_toolTipBackColor1; }
    void setToolTipBackColor1(uint color);
    uint ToolTipBackColor2() const { return m_toolTipBackColor2; }
    void setToolTipBackColor2(uint color);

    //! Sizes the tooltip to its texts; it also runs on every size change.
    void Resize();

Q_SIGNALS:
    void PropertyChanged(const QString &name);
    //! The tooltip was clicked; the control hides it.
    void Click();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QLabel *CreateLabel(const QString &name, const QString &caption);
    int CaptionWidth(const QString &caption) const;
    int ClampedWidth(qint16 w) const;
    int RemarkHeight(int width) const;
    void PlaceLabels(int width);
    void ApplyColors();
    bool PaintElidedText();

    QWidget *m_client = nullptr;
    QLabel *m_lblTime = nullptr;
    QLabel *m_lblText = nullptr;
    QLabel *m_lblRemark = nullptr;
    qint32 m_dateID = 0;
    qint16 m_minWidth = 0;
    qint16 m_normalWidth = 0;
    uint m_toolTipBackColor1 = DefaultToolTipBackColor1;
    uint m_toolTipBackColor2 = DefaultToolTipBackColor2;
};
