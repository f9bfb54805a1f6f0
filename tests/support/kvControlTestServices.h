#pragma once

#include "kvFixedClock.h"
#include "kvScopedService.h"
#include "kvScriptedMessageBox.h"

#include <QDate>
#include <QTime>

/*!
    The services a control test installs for its whole run: a clock that says it is
    \a today at 09:41, and a scripted message box that records every report.
*/
class kvControlTestServices
{
public:
    explicit kvControlTestServices(QDate today)
        : m_clock(kvDate::fromDate(today, QTime(9, 41)))
        , m_installedClock(m_clock)
        , m_installedMessageBox(m_messageBox)
    {
    }

    kvScriptedMessageBox &messageBox() { return m_messageBox; }
    kvFixedClock &clock() { return m_clock; }

private:
    kvFixedClock m_clock;
    kvScriptedMessageBox m_messageBox;
    kvScopedService<kvFixedClock> m_installedClock;
    kvScopedService<kvScriptedMessageBox> m_installedMessageBox;
};
