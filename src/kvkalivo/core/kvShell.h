#pragma once

#include "kvkalivo_export.h"

#include <QString>

/*!
    \file kvShell.h
    \brief kvShell, the shell service that opens the editor's linked documents.
*/

/*!
    \brief The shell service: opening a document with its program, as ShellExecute's "open".

    The real one is kvSystemShell; tests use kvScriptedShell.
*/
class KVKALIVO_TESTS_EXPORT kvShell
{
public:
    //! ShellExecute's result convention: above 32 is success.
    enum Result {
        FileNotFound = 2,    //!< SE_ERR_FNF
        NoAssociation = 31,  //!< SE_ERR_NOASSOC: no program is associated with the file
        Opened = 42          //!< a success value (any value above 32 is one)
    };

    virtual ~kvShell();

    //! Opens \a path with the program associated with it; returns a Result.
    virtual int ShellExecuteOpen(const QString &path) = 0;
    //! Lets the user choose a program to open \a path with; false when nothing can offer a choice.
    virtual bool OpenWith(const QString &path) = 0;

    //! Whether a ShellExecuteOpen() \a result means success (above 32).
    static constexpr bool Succeeded(int result) { return result > 32; }
};
