#pragma once

#include "kvkalivo_export.h"

#include <QObject>
#include <QString>

#include <memory>

class kvErrorPrivate;

/*!
    \file kvError.h
    \brief kvError, the error object of kvKalivo's \c Error signal.
*/

/*!
    \brief The error object handed to the host with the \c Error event.

    One instance exists per thread. Every report overwrites both properties of that same
    instance before the event is raised, so a host that keeps a reference sees it change.
    A control's construction (Initialize) replaces the thread's instance with a new one;
    the replaced instance stays alive until the thread ends, so a reference a host kept
    never dangles.
*/
class KVKALIVO_EXPORT kvError : public QObject
{
    Q_OBJECT
    /*!
        Text of the underlying failure: the database engine's own message, the German text
        of a run-time error such as "Überlauf", or empty for FillGrid's pending code.
    */
    Q_PROPERTY(QString Description READ Description WRITE setDescription)
    /*!
        The control's numbered error code: a fixed code (100 to 1000) or a base
        plus the step that failed (900 to 910, 1100 to 1107, 13 to 20, 14 to 19, 1500 + step).
        0 until the first report.
    */
    Q_PROPERTY(qint16 Number READ Number WRITE setNumber)

public:
    //! An empty error object (Number 0); hosts normally use the thread's instance.
    explicit kvError(QObject *parent = nullptr);
    ~kvError() override;

    //! Text of the underlying failure.
    QString Description() const;
    //! Sets the #Description; the control does so before every \c Error signal.
    void setDescription(const QString &description);

    //! The control's numbered error code.
    qint16 Number() const;
    //! Sets the #Number; the control does so before every \c Error signal.
    void setNumber(qint16 number);

    //! The thread's current instance (created on first use).
    static kvError &ThreadInstance();
    //! Makes a new instance this thread's current one; every new kvKalivo does so first.
    static kvError &ReplaceThreadInstance();

private:
    std::unique_ptr<kvErrorPrivate> const d;
};
