#pragma once

#include "kvkalivo_export.h"

#include <QString>

class QWidget;

/*!
    \brief The file-open dialog service, with VB CommonDialog filters.

    A VB filter is a "|"-separated list of description and pattern pairs, patterns separated
    by ";": "Textdateien (*.txt)|*.txt|Alle Dateien|*.*". The real one is kvSystemFileDialog;
    tests use kvScriptedFileDialog.
*/
class KVKALIVO_EXPORT kvFileDialog
{
public:
    virtual ~kvFileDialog();

    //! The chosen file, or an empty string when the user cancelled.
    virtual QString GetOpenFileName(QWidget *parent, const QString &title,
                                    const QString &initialPath, const QString &vbFilter) = 0;

    /*!
        Converts a VB filter into a Qt name filter list: "Beschreibung|*.doc|Alle Dateien|*.*"
        becomes "Beschreibung (*.doc);;Alle Dateien (*)". "*.*" means every file, as on Windows.
        A description that already ends in a parenthesised pattern list, VB's way of showing
        the patterns, has it replaced by the real ones, which is where Qt reads them from.
    */
    static QString ToQtFilter(const QString &vbFilter);
    //! One VB pattern list ("*.bat;*.cmd") as Qt patterns ("*.bat *.cmd").
    static QString ToQtPatterns(const QString &vbPatterns);
};
