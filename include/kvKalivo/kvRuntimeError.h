#pragma once

#include "kvkalivo_export.h"

#include <QSharedDataPointer>
#include <QString>

#include <stdexcept>

class kvRuntimeErrorPrivate;

/*!
    \file kvRuntimeError.h
    \brief kvRuntimeError, the exception behind every reported failure and every data-layer error.
*/

/*!
    \brief A run-time failure carrying an error number and its German description.

    The control's routines throw it; their error reporting (kvErrorReporting) catches it
    and reports description(). It never leaves a public function. what() is the description
    in UTF-8.
*/
class KVKALIVO_EXPORT kvRuntimeError : public std::runtime_error
{
public:
    //! The numbers of the failures the platform layer raises itself.
    enum Number {
        Overflow = 6,                        //!< "Überlauf": a value does not fit its integer type
        DivisionByZero = 11,                 //!< "Division durch Null"
        ControlArrayElementMissing = 340,    //!< a control-array index that is not loaded
        ObjectAlreadyLoaded = 360,           //!< Load() of an index already loaded
        CannotUnloadDesignTimeControl = 362, //!< Unload() of element 0, the template
    };

    //! A failure with the run-time (or ADO) error \a number and its text \a description.
    kvRuntimeError(int number, const QString &description);
    //! A copy of \a other; copies share their data.
    kvRuntimeError(const kvRuntimeError &other);
    //! Takes over \a other's data; \a other may then only be assigned to or destroyed.
    kvRuntimeError(kvRuntimeError &&other) noexcept;
    //! Makes this a copy of \a other.
    kvRuntimeError &operator=(const kvRuntimeError &other);
    //! Takes over \a other's data.
    kvRuntimeError &operator=(kvRuntimeError &&other) noexcept;
    ~kvRuntimeError() override;

    //! The run-time or ADO error number (see Number and kvAdoError::Number).
    int number() const noexcept;
    //! The German text of the failure, or the engine's own message.
    QString description() const;

    //! 6 "Überlauf": a value does not fit its integer type.
    static kvRuntimeError overflow();
    //! 11 "Division durch Null".
    static kvRuntimeError divisionByZero();
    //! 340 "Steuerelementarray-Element 'N' ist nicht vorhanden".
    static kvRuntimeError controlArrayElementMissing(int index);
    //! 360 "Objekt bereits geladen".
    static kvRuntimeError objectAlreadyLoaded();
    //! 362: element 0 of a control array exists from design time and cannot be unloaded.
    static kvRuntimeError cannotUnloadDesignTimeControl();

private:
    QSharedDataPointer<kvRuntimeErrorPrivate> d;
};
