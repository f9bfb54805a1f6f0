#pragma once

#include "kvkalivo_export.h"

#include <QFrame>

/*!
    \brief Part 3.5: the appointment tooltip that kvKalivo shows over a row.

    The control keeps one hidden instance and passes its ToolTipBackColor1/2 through.
*/
class KVKALIVO_EXPORT ctlToolTip : public QFrame
{
    Q_OBJECT
    Q_PROPERTY(uint ToolTipBackColor1 READ ToolTipBackColor1 WRITE setToolTipBackColor1)
    Q_PROPERTY(uint ToolTipBackColor2 READ ToolTipBackColor2 WRITE setToolTipBackColor2)

public:
    //! System colour "info background" for the first line, white for the remark.
    static constexpr uint DefaultToolTipBackColor1 = 0x80000018u;
    static constexpr uint DefaultToolTipBackColor2 = 0x00FFFFFFu;

    explicit ctlToolTip(QWidget *parent = nullptr);

    uint ToolTipBackColor1() const { return m_toolTipBackColor1; }
    void setToolTipBackColor1(uint color);
    uint ToolTipBackColor2() const { return m_toolTipBackColor2; }
    void setToolTipBackColor2(uint color);

Q_SIGNALS:
    void PropertyChanged(const QString &name);

private:
    uint m_toolTipBackColor1 = DefaultToolTipBackColor1;
    uint m_toolTipBackColor2 = DefaultToolTipBackColor2;
};
