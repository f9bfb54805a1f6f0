#pragma once

#include "kvRuntimeError.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariant>

#include <functional>
#include <map>
#include <type_traits>

/*!
    \file kvControlArray.h
    \brief kvControlArray, an array of child controls (Load, Unload, element by index).
*/

/*!
    \brief An array of child controls: elements created and destroyed at run time by index.

    Element 0 is the hidden template; it is created by the constructor and cannot be
    unloaded. Every element is made by the factory, named after the array with its decimal
    index ("ctlDay12", "KontextDay6") and carries the index in the dynamic property "Index".
    The array owns its elements: Unload() and the destructor delete them at once, so an
    element must not be unloaded from within one of its own signals.
    Misuse throws kvRuntimeError 340, 360 or 362.
*/
template <typename T>
class kvControlArray
{
    static_assert(std::is_base_of_v<QObject, T>, "control array elements must be QObjects");

public:
    //! Creates the element for \a index (its parent, its look); must not return nullptr.
    using Factory = std::function<T *(int index)>;

    //! An array called \a name whose elements \a factory makes; loads element 0, the template.
    kvControlArray(const QString &name, Factory factory)
        : m_name(name), m_factory(std::move(factory))
    {
        Load(0);
    }

    //! Deletes every loaded element, the template included.
    ~kvControlArray()
    {
        for (const auto &[index, element] : m_elements)
            delete element.data();
    }

    Q_DISABLE_COPY_MOVE(kvControlArray)

    //! The array's name, the prefix of its elements' objectNames.
    QString name() const { return m_name; }

    /*!
        Creates element \a index (0 to 32767) with the factory, names it and returns it.
        Throws 340 outside that range and 360 when the index is already loaded.
    */
    T *Load(int index)
    {
        if (index < 0 || index > maximumIndex)
            throw kvRuntimeError::controlArrayElementMissing(index);
        if (isLoaded(index))
            throw kvRuntimeError::objectAlreadyLoaded();
        T *element = m_factory(index);
        Q_ASSERT_X(element, "kvControlArray::Load", "the factory returned no element");
        element->setObjectName(m_name + QString::number(index));
        element->setProperty("Index", index);
        m_elements.insert_or_assign(index, QPointer<T>(element));
        return element;
    }

    //! Deletes element \a index at once; throws 362 for 0 and 340 when it is not loaded.
    void Unload(int index)
    {
        if (index == 0)
            throw kvRuntimeError::cannotUnloadDesignTimeControl();
        T *element = (*this)(index);
        m_elements.erase(index);
        delete element;
    }

    //! The element \a index; throws 340 when it is not loaded.
    T *operator()(int index) const
    {
        const auto it = m_elements.find(index);
        if (it == m_elements.end() || it->second.isNull())
            throw kvRuntimeError::controlArrayElementMissing(index);
        return it->second.data();
    }

    //! An element deleted from outside (with its parent, say) no longer counts as loaded.
    bool isLoaded(int index) const
    {
        const auto it = m_elements.find(index);
        return it != m_elements.end() && !it->second.isNull();
    }

    //! The loaded elements, the template included.
    int Count() const { return int(indexes().size()); }
    //! The lowest loaded index: 0 while the template exists.
    int LBound() const
    {
        const QList<int> loaded = indexes();
        return loaded.isEmpty() ? 0 : loaded.constFirst();
    }
    //! The highest loaded index; -1 when even the template is gone, so that LBound() .. UBound() is empty.
    int UBound() const
    {
        const QList<int> loaded = indexes();
        return loaded.isEmpty() ? -1 : loaded.constLast();
    }

    //! The indexes of the loaded elements in ascending order, 0 first.
    QList<int> indexes() const
    {
        QList<int> result;
        for (const auto &[index, element] : m_elements) {
            if (!element.isNull())
                result.append(index);
        }
        return result;
    }

private:
    static constexpr int maximumIndex = 32767;

    QString m_name;
    Factory m_factory;
    std::map<int, QPointer<T>> m_elements;
};
