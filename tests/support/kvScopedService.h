#pragma once

#include "kvPlatform.h"

#include <QtGlobal>

#include <type_traits>

/*!
    \brief Installs a service on the current thread for the lifetime of a scope, then puts
    back whatever was installed before.
*/
template <typename Implementation>
class kvScopedService
{
public:
    //! The service interface that \a Implementation fills (kvMessageBox, kvShell, ...).
    using Service = std::remove_pointer_t<decltype(kvPlatform::exchange(
            static_cast<Implementation *>(nullptr)))>;

    //! Installs \a service (not owned) on the current thread.
    explicit kvScopedService(Implementation &service)
        : m_previous(kvPlatform::exchange(static_cast<Service *>(&service)))
    {
    }

    //! Puts back the service installed before.
    ~kvScopedService() { kvPlatform::exchange(m_previous); }

private:
    Q_DISABLE_COPY_MOVE(kvScopedService)

    Service *m_previous;
};
