#pragma once

#include "kvkalivo_export.h"

class QDialog;

/*!
    \file kvModalRunner.h
    \brief kvModalRunner, the service that runs the control's dialogs modally.
*/

/*!
    \brief Runs a dialog modally. The real one is kvSystemModalRunner (QDialog::exec());
    tests use kvScriptedModalRunner, which runs a script instead of the event loop.
*/
class KVKALIVO_TESTS_EXPORT kvModalRunner
{
public:
    virtual ~kvModalRunner();

    //! Shows \a dialog modally and returns its result code (QDialog::Accepted, Rejected, ...).
    virtual int Exec(QDialog &dialog) = 0;
};
