#pragma once

#include "kvFixedClock.h"
#include "kvScopedService.h"
#include "kvScriptedMessageBox.h"

#include <QDate>
#include <QTime>

//! Installed for a test's run: a clock at \a today 09:41 and a message box that records every report.
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

private:
    kvFixedClock m_clock;
    kvScriptedMessageBox m_messageBox;
    kvScopedService<kvFixedClock> m_installedClock;
    kvScopedService<kvScriptedMessageBox> m_installedMessageBox;
};
