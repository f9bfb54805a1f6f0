#pragma once

#include "kvkalivo_export.h"

#include <QObject>
#include <QString>

/*!
    \brief The error object handed to the host with the \c Error event (Part 1.3).

    One instance exists per thread. Every report overwrites both properties of that same
    instance before the event is raised, so a host that keeps a reference sees it change.
    A control's construction (Initialize) replaces the thread's instance with a new one;
    the replaced instance stays alive until the thread ends, so a reference a host kept
    never dangles.
*/
class KVKALIVO_EXPORT kvError : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Description READ Description WRITE setDescription)
    Q_PROPERTY(qint16 Number READ Number WRITE setNumber)

public:
    explicit kvError(QObject *parent = nullptr);

    //! Text of the underlying failure.
    QString Description() const { return m_description; }
    void setDescription(const QString &description) { m_description = description; }

    //! The control's error code (Part 1.3's table).
    qint16 Number() const { return m_number; }
    void setNumber(qint16 number) { m_number = number; }

    //! The thread's current instance (created on first use).
    static kvError &ThreadInstance();
    //! Creates a new instance for this thread and makes it the current one (Part 1.1, Initialize step 1).
    static kvError &ReplaceThreadInstance();

private:
    QString m_description;
    qint16 m_number = 0;
};
