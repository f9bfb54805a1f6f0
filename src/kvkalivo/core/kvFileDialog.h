#pragma once

#include "kvkalivo_export.h"

#include <QString>

class QWidget;

/*!
    \file kvFileDialog.h
    \brief kvFileDialog, the file-open dialog service, with the filter conversion.
*/

/*!
    \brief The file-open dialog service, with bar-separated filters.

    A filter is a "|"-separated list of description and pattern pairs, patterns separated
    by ";": "Textdateien (*.txt)|*.txt|Alle Dateien|*.*". The real one is kvSystemFileDialog;
    tests use kvScriptedFileDialog.
*/
class KVKALIVO_TESTS_EXPORT kvFileDialog
{
public:
    virtual ~kvFileDialog();

    /*!
        Asks for one existing file and returns its path, or an empty string when the user
        cancelled. \a parent owns the dialog, \a title is its caption, \a initialPath the
        folder or file it starts in, \a vbFilter a bar-separated filter (see the class description).
    */
    virtual QString GetOpenFileName(QWidget *parent, const QString &title,
                                    const QString &initialPath, const QString &vbFilter) = 0;

    /*!
        Converts a bar-separated filter into a Qt name filter list: "Beschreibung|*.doc|Alle
        Dateien|*.*" becomes "Beschreibung (*.doc);;Alle Dateien (*)". "*.*" means every file,
        with or without an extension. A description that already ends in a parenthesised
        pattern list, the usual way of showing the patterns in it, has it replaced by the real
        ones, which is where Qt reads them from.
    */
    static QString ToQtFilter(const QString &vbFilter);
    //! One pattern list ("*.bat;*.cmd") as Qt patterns ("*.bat *.cmd").
    static QString ToQtPatterns(const QString &vbPatterns);
};
