#pragma once

#include <QPoint>
#include <QtGlobal>

class QIcon;
class frmEdit;

/*!
    \brief The icon row of the appointment editor: the icon box, whose ImageID is its "Tag"
    property, and the buttons and context menu that choose an icon in the picker or remove it.
*/
class kvEditIconRow
{
public:
    explicit kvEditIconRow(frmEdit &editor);

    void SetEnabled(bool enabled);
    //! Shows the small picture of \a imageId at \a listIndex; IDs below 11 show none.
    void ShowLoadedIcon(qint16 imageId, qint16 listIndex);
    //! Puts the picker beside the icon box.
    void PlacePicker();

    void ImgIcon_MouseUp(Qt::MouseButton button, const QPoint &position);
    void ChooseIcon();
    void DeleteIcon();

private:
    void ShowIconPicture(const QIcon &picture);

    frmEdit &m_editor;
};
