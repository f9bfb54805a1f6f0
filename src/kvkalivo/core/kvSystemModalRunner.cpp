#include "kvSystemModalRunner.h"

#include "kvModalWindows.h"

#include <QDialog>

int kvSystemModalRunner::Exec(QDialog &dialog)
{
    kvModalWindows::PrepareToOpen();
    return dialog.exec();
}
