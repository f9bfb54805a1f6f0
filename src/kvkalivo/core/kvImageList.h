#pragma once

#include "kvkalivo_export.h"

#include <QIcon>
#include <QList>
#include <QPixmap>
#include <QSize>

/*!
    \file kvImageList.h
    \brief kvImageList, the common controls' ImageList.
*/

/*!
    \brief The common controls' ImageList: pictures of one size under 1-based indexes.

    Pictures are kept as icons, so a list renders each of them crisply at its own size
    (an .ico file with 16- and 32-pixel images gives the 16-pixel one to a small list).
*/
class KVKALIVO_TESTS_EXPORT kvImageList
{
public:
    //! An empty list whose pictures render at \a imageSize pixels.
    explicit kvImageList(QSize imageSize);

    //! The size every picture renders at, in pixels.
    QSize ImageSize() const { return m_imageSize; }
    //! The number of pictures; their indexes are 1 .. Count().
    int Count() const { return int(m_images.size()); }

    //! Appends \a picture; returns its index (1-based).
    int Add(const QIcon &picture);
    //! Removes every picture.
    void Clear();

    //! The picture at \a index (1 .. Count()); throws kvRuntimeError 35600 outside that range.
    QIcon ListImage(int index) const;
    //! The picture at \a index rendered at the list's size.
    QPixmap Picture(int index) const;

private:
    QSize m_imageSize;
    QList<QIcon> m_images;
};
