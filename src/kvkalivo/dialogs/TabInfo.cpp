#include "TabInfo.h"

qint16 TabInfo::RowCount() const
{
    return m_rowCount;
}

void TabInfo::setRowCount(qint16 rowCount)
{
    m_rowCount = rowCount;
}

qint16 TabInfo::MaxSrollPosition() const
{
    return m_maxSrollPosition;
}

void TabInfo::setMaxSrollPosition(qint16 position)
{
    m_maxSrollPosition = position;
}

qint16 TabInfo::SrollPosition() const
{
    return m_srollPosition;
}

void TabInfo::setSrollPosition(qint16 position)
{
    m_srollPosition = position;
}

qint16 TabInfo::LinkedCategory() const
{
    return m_linkedCategory;
}

void TabInfo::setLinkedCategory(qint16 category)
{
    m_linkedCategory = category;
}
