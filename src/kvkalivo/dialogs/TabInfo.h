#pragma once

#include "kvkalivo_export.h"

#include <QtGlobal>

/*!
    \brief The scroll state of one tab of the icon picker.

    The spelling "Sroll" of two properties is deliberate: it is part of the class's
    interface, and code that uses TabInfo calls these names.
*/
class KVKALIVO_TESTS_EXPORT TabInfo
{
public:
    //! Rows of the tab's category: (size - 1) \ 5 + 1.
    qint16 RowCount() const;
    void setRowCount(qint16 rowCount);

    //! Largest scroll position: RowCount - 4 when RowCount > 5, else 1.
    qint16 MaxSrollPosition() const;
    void setMaxSrollPosition(qint16 position);

    //! First visible row, starting at 1.
    qint16 SrollPosition() const;
    void setSrollPosition(qint16 position);

    //! The category whose pictures the tab shows.
    qint16 LinkedCategory() const;
    void setLinkedCategory(qint16 category);

private:
    qint16 m_rowCount = 0;
    qint16 m_maxSrollPosition = 0;
    qint16 m_srollPosition = 0;
    qint16 m_linkedCategory = 0;
};
