#include "kvSystemModalRunner.h"

#include <QDialog>

int kvSystemModalRunner::Exec(QDialog &dialog)
{
    return dialog.exec();
}
