#include "kvRuntimeError.h"

#include <QSharedData>

class kvRuntimeErrorPrivate : public QSharedData
{
public:
    int number = 0;
    QString description;
};

kvRuntimeError::kvRuntimeError(int number, const QString &description)
    : std::runtime_error(description.toStdString()), d(new kvRuntimeErrorPrivate)
{
    d->number = number;
    d->description = description;
}

kvRuntimeError::kvRuntimeError(const kvRuntimeError &other) = default;
kvRuntimeError::kvRuntimeError(kvRuntimeError &&other) noexcept = default;
kvRuntimeError &kvRuntimeError::operator=(const kvRuntimeError &other) = default;
kvRuntimeError &kvRuntimeError::operator=(kvRuntimeError &&other) noexcept = default;
kvRuntimeError::~kvRuntimeError() = default;

int kvRuntimeError::number() const noexcept
{
    return d->number;
}

QString kvRuntimeError::description() const
{
    return d->description;
}

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
