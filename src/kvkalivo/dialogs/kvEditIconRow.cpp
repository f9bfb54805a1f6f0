#include "kvEditIconRow.h"

#include "frmEdit.h"
#include "frmPicSelector.h"
#include "kvEditLayout.h"
#include "kvIconCatalogue.h"
#include "kvImageList.h"
#include "kvModalRunner.h"
#include "kvPlatform.h"

#include <QLabel>
#include <QMenu>
#include <QPushButton>

kvEditIconRow::kvEditIconRow(frmEdit &editor)
    : m_editor(editor)
{
}

void kvEditIconRow::SetEnabled(bool enabled)
{
    for (QWidget *control : { static_cast<QWidget *>(m_editor.m_lblIcon),
                              static_cast<QWidget *>(m_editor.m_imgIcon),
                              static_cast<QWidget *>(m_editor.m_cmdEdit),
                              static_cast<QWidget *>(m_editor.m_cmdDeleteIcon) })
        control->setEnabled(enabled);
}

void kvEditIconRow::ShowLoadedIcon(qint16 imageId, qint16 listIndex)
{
    m_editor.m_imgIcon->setProperty("Tag", QString::number(imageId));
    kvImageList &copyList = kvIconCatalogue::ThreadInstance().SmallIcons();
    if (imageId < 11 || listIndex < 1 || listIndex > copyList.Count())
        ShowIconPicture(QIcon());
    else
        ShowIconPicture(copyList.ListImage(listIndex));
}

// Beside the icon box, measured from the editor's frame position (pos(), not geometry()).
void kvEditIconRow::PlacePicker()
{
    frmPicSelector &picker = frmPicSelector::ThreadInstance();
    const QRect icon = m_editor.m_imgIcon->geometry();
    picker.move(m_editor.pos() + QPoint(icon.left() + icon.width() + 5, icon.top() - 3));
}

void kvEditIconRow::ShowIconPicture(const QIcon &picture)
{
    const int side = kvEditLayout::IconBoxSize - 4;
    if (picture.isNull())
        m_editor.m_imgIcon->clear();
    else
        m_editor.m_imgIcon->setPixmap(
                picture.pixmap(QSize(side, side), m_editor.devicePixelRatio()));
}

void kvEditIconRow::ImgIcon_MouseUp(Qt::MouseButton button, const QPoint &position)
{
    if (!m_editor.m_imgIcon->isEnabled())
        return;
    if (button == Qt::LeftButton)
        ChooseIcon();
    else if (button == Qt::RightButton)
        m_editor.m_kontextmenu->popup(m_editor.m_imgIcon->mapToGlobal(position));
}

void kvEditIconRow::ChooseIcon()
{
    frmPicSelector &picker = frmPicSelector::ThreadInstance();
    picker.Reset();
    PlacePicker();
    kvPlatform::modalRunner().Exec(picker);
    if (picker.GetImgListIndex() != 0)
        m_editor.m_imgIcon->setProperty("Tag", QString::number(picker.ImgId()));
    m_editor.m_iconListIndex = picker.GetImgListIndex();
    if (m_editor.m_iconListIndex < 1)
        return;
    kvImageList &pictures = kvIconCatalogue::ThreadInstance().BigIcons();
    ShowIconPicture(pictures.ListImage(m_editor.m_iconListIndex));
}

void kvEditIconRow::DeleteIcon()
{
    ShowIconPicture(QIcon());
    frmPicSelector::ThreadInstance().Reset();
    m_editor.m_imgIcon->setProperty("Tag", QStringLiteral("0"));
}
