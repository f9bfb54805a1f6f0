#include "kvImageList.h"

#include "kvRuntimeError.h"

kvImageList::kvImageList(QSize imageSize)
    : m_imageSize(imageSize)
{
}

int kvImageList::Add(const QIcon &picture)
{
    m_images.append(picture);
    return Count();
}

void kvImageList::Clear()
{
    m_images.clear();
}

QIcon kvImageList::ListImage(int index) const
{
    if (index < 1 || index > Count())
        throw kvRuntimeError(35600, QStringLiteral("Index außerhalb des gültigen Bereichs"));
    return m_images.at(index - 1);
}

QPixmap kvImageList::Picture(int index) const
{
    return ListImage(index).pixmap(m_imageSize);
}
