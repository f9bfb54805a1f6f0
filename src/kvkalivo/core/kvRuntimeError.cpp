#include "kvRuntimeError.h"

kvRuntimeError::kvRuntimeError(int number, const QString &description)
    : std::runtime_error(description.toStdString()), m_number(number), m_description(description)
{
}

kvRuntimeError::~kvRuntimeError() = default;

kvRuntimeError kvRuntimeError::overflow()
{
    return kvRuntimeError(Overflow, QStringLiteral("Überlauf"));
}

kvRuntimeError kvRuntimeError::divisionByZero()
{
    return kvRuntimeError(DivisionByZero, QStringLiteral("Division durch Null"));
}

kvRuntimeError kvRuntimeError::controlArrayElementMissing(int index)
{
    return kvRuntimeError(ControlArrayElementMissing,
                          QStringLiteral("Steuerelementarray-Element '%1' ist nicht vorhanden").arg(index));
}

kvRuntimeError kvRuntimeError::objectAlreadyLoaded()
{
    return kvRuntimeError(ObjectAlreadyLoaded, QStringLiteral("Objekt bereits geladen"));
}

kvRuntimeError kvRuntimeError::cannotUnloadDesignTimeControl()
{
    return kvRuntimeError(CannotUnloadDesignTimeControl,
                          QStringLiteral("In der Entwurfszeit erstellte Steuerelemente können nicht entladen werden"));
}
