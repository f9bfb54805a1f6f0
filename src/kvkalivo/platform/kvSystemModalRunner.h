#pragma once

#include "kvModalRunner.h"

//! The real modal runner: QDialog::exec().
class KVKALIVO_EXPORT kvSystemModalRunner : public kvModalRunner
{
public:
    int Exec(QDialog &dialog) override;
};
