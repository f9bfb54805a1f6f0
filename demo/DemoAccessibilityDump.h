#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

class QAccessibleInterface;
class QTextStream;

/*!
    For tests that drive the demo through a real window (tests/e2e): writes what an assistive
    tool sees of the application's visible windows into a file, whenever it changes (checked
    ten times a second). One line per object, tab-separated: role, name, the parent's name,
    the window's name, objectName, x, y, width, height on the screen, and the states (focused,
    selected, disabled). So a test finds "09:00 Teambesprechung" or the button "Nein" as a screen reader
    would, and moves the real mouse there.
*/
class DemoAccessibilityDump : public QObject
{
    Q_OBJECT

public:
    explicit DemoAccessibilityDump(const QString &path, QObject *parent = nullptr);

    //! The current dump of every visible window.
    static QString Dump();

private:
    void WriteIfChanged();
    static void DumpTree(QAccessibleInterface *object, const QString &window, QTextStream &out,
                         int depth);

    QString m_path;
    QString m_written;
    QTimer m_timer;
};
