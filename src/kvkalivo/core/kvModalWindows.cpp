#include "kvModalWindows.h"

#include <QWidget>

kvModalWindows &kvModalWindows::ThreadInstance()
{
    static thread_local kvModalWindows instance;
    return instance;
}

void kvModalWindows::PrepareToOpen()
{
    Q_EMIT ThreadInstance().opening();
    if (QWidget *grabber = QWidget::mouseGrabber())
        grabber->releaseMouse();
}
