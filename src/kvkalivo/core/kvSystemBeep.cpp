#include "kvSystemBeep.h"

#include <QApplication>

void kvSystemBeep::Beep()
{
    QApplication::beep();
}
