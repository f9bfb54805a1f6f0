#include "ctlToolTip.h"

ctlToolTip::ctlToolTip(QWidget *parent)
    : QFrame(parent)
{
    setObjectName(QStringLiteral("ctlToolTip"));
    setFrameShape(QFrame::Box);
    hide();
}

void ctlToolTip::setToolTipBackColor1(uint color)
{
    m_toolTipBackColor1 = color;
    update();
    Q_EMIT PropertyChanged(QStringLiteral("ToolTipBackColor1"));
}

void ctlToolTip::setToolTipBackColor2(uint color)
{
    m_toolTipBackColor2 = color;
    update();
    Q_EMIT PropertyChanged(QStringLiteral("ToolTipBackColor2"));
}
