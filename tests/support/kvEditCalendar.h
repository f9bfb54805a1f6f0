#pragma once

#include "ctlDay.h"
#include "ctlEntry.h"
#include "kvControlTestServices.h"
#include "kvKalivoTestAccess.h"
#include "kvScopedService.h"
#include "kvScriptedModalRunner.h"
#include "kvTestCalendar.h"

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

//! Today for the control tests, a Sunday: the week view shows 16 .. 22 November 2026.
inline const QDate fixedToday(2026, 11, 22);

inline kvDate at(const QDate &day, int hour = 0, int minute = 0)
{
    return kvDate::fromDate(day, QTime(hour, minute));
}

//! \a day November 2026 at \a hour : \a minute.
inline kvDate at(int day, int hour = 0, int minute = 0)
{
    return at(QDate(2026, 11, day), hour, minute);
}

//! The calendar on the week of 16 .. 22 November 2026, driven with the mouse as a user would.
struct kvEditCalendar : kvTestCalendar
{
    explicit kvEditCalendar(Database database = Database::Sqlite, QSize size = QSize(1000, 700))
        : kvTestCalendar(size, database)
    {
    }

    //! Day cell of 16 .. 22 November.
    ctlDay *cell(int day) { return kvKalivoTestAccess::DayCell(control, day - 15); }

    QPoint rowPoint(int day, int row)
    {
        const ctlEntry *entry = cell(day)->Entries(qint16(row));
        return QPoint(entry->Left() + entry->Width() / 2, entry->Top() + entry->Height() / 2);
    }

    void doubleClickRow(int day, int row) { doubleClick(cell(day), rowPoint(day, row)); }

    //! Through the window, as a real double-click arrives (press, release, double-click, release).
    void doubleClick(QWidget *widget, QPoint point)
    {
        QTest::mouseDClick(control.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                           widget->mapTo(&control, point));
    }

    //! The pointer moves onto the row (a row that holds the mouse lets go), then right-clicks.
    void rightClickRow(int day, int row)
    {
        const QPoint point = rowPoint(day, row);
        QMouseEvent move(QEvent::MouseMove, point, cell(day)->mapToGlobal(point), Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(cell(day), &move);
        QTest::mouseClick(cell(day), Qt::RightButton, Qt::NoModifier, point);
    }

    //! How many INSERT, UPDATE and DELETE texts were sent.
    int writes() const
    {
        return int(std::count_if(statements.cbegin(), statements.cend(), [](const QString &sql) {
            return sql.startsWith(QStringLiteral("UPDATE"), Qt::CaseInsensitive)
                || sql.startsWith(QStringLiteral("DELETE"), Qt::CaseInsensitive)
                || sql.startsWith(QStringLiteral("INSERT"), Qt::CaseInsensitive);
        }));
    }

    QDateTime firstBegin() { return column(QStringLiteral("DateBegin")).constFirst().toDateTime(); }
};

//! The fixed clock of fixedToday, the scripted message box and a scripted editor runner.
struct kvEditTestServices : kvControlTestServices
{
    kvEditTestServices()
        : kvControlTestServices(fixedToday)
        , installedRunner(runner)
    {
    }
    kvScriptedModalRunner runner;
    kvScopedService<kvScriptedModalRunner> installedRunner;
};

//! An editor session that presses \a button.
inline kvScriptedModalRunner::Action pressButton(const char *button)
{
    return [button](QDialog &dialog) {
        dialog.findChild<QPushButton *>(QString::fromLatin1(button))->click();
        return int(QDialog::Accepted);
    };
}

//! An editor session that types \a name into "txtName" and presses OK.
inline kvScriptedModalRunner::Action typeName(const QString &name)
{
    return [name](QDialog &dialog) {
        dialog.findChild<QLineEdit *>(QStringLiteral("txtName"))->setText(name);
        return pressButton("cmdOK")(dialog);
    };
}
