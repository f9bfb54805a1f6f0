#pragma once

#include "kvModalRunner.h"

/*!
    \file kvSystemModalRunner.h
    \brief kvSystemModalRunner, the modal runner's real implementation.
*/

//! The real modal runner: QDialog::exec(), after kvModalWindows::PrepareToOpen().
class KVKALIVO_TESTS_EXPORT kvSystemModalRunner : public kvModalRunner
{
public:
    int Exec(QDialog &dialog) override;
};
