#pragma once

#include "kvImageList.h"

#include <QList>
#include <QPixmap>
#include <QString>

#include <array>

/*!
    \brief The appointment icons of a thread: the pictures of the six categories and their
    numbering, shared by the icon picker and the day cells.

    Icons come from a folder of ".ico" files named by their ImageID (category digit followed
    by the picture number), or from the built-in set of 75 pictures when the folder is empty,
    missing or holds no ".ico" file. \c BigIcons holds the pictures at 32 pixels and
    \c SmallIcons the same pictures under the same 1-based indexes at 16 pixels.

    A folder's pictures are numbered without gaps: a file that is missing or does not load adds
    no picture, so every later picture moves up one index.
*/
class kvIconCatalogue
{
public:
    static constexpr int CategoryCount = 6;

    //! The thread's catalogue, holding the built-in set when nothing else is loaded.
    static kvIconCatalogue &ThreadInstance();
    //! Forgets the loaded icons; the next ThreadInstance() loads the built-in set again.
    static void Unload();

    //! Loads the icons of \a folder, or the built-in set when it has none.
    void Load(const QString &folder);
    //! The folder passed to the last Load().
    QString Folder() const { return m_folder; }

    //! Number of pictures of each category 1 .. 6: the highest picture number found.
    QList<qint16> CategorySizes() const;
    int CategorySize(int category) const { return m_categorySizes.at(category - 1); }
    //! The pictures of the categories before \a category: the index offset of its first one.
    int PicturesBefore(int category) const;
    //! Image-list index of \a imageId, at most the list's count; 0 for IDs below 11.
    qint16 IndexOfImageId(qint16 imageId) const;
    //! The small picture of \a imageId; null when it has no index (ImageIDs 1 to 10 have none).
    QPixmap SmallPicture(qint16 imageId) const;

    kvImageList &BigIcons() { return m_big; }
    kvImageList &SmallIcons() { return m_small; }
    //! Copies every picture of BigIcons into SmallIcons again.
    void RefillSmallIcons();

private:
    kvIconCatalogue();

    void LoadFolder(const QString &folder, const QStringList &iconFiles);
    void LoadBuiltin();

    QString m_folder;
    std::array<qint16, CategoryCount> m_categorySizes {};
    kvImageList m_big;
    kvImageList m_small;
};
