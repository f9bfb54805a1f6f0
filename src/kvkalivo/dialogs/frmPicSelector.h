#pragma once

#include "kvkalivo_export.h"

#include "TabInfo.h"
#include "kvControlArray.h"
#include "kvImageList.h"

#include <QDialog>
#include <QList>
#include <QToolButton>

#include <array>
#include <memory>

class QFrame;
class QScrollBar;
class QTabBar;

/*!
    \brief The icon picker. One instance per thread, created on first use and
    hidden between uses; every kvKalivo of the thread shares it.

    It shows the pictures of the thread's kvIconCatalogue in six categories on the tabs of
    \c TabStrip, five to a row, and turns a selection tag ("2_3") into an ImageID and an index
    into the catalogue's lists. \c ImageListBig is the source list (32 pixels) that loadPics()
    fills; \c ImageListSmall is the copy (16 pixels) that arrangePics() refills; both hold the
    same pictures under the same indexes. A new picker loads the built-in set; when the picker
    goes, so do the icons it loaded.

    After a gap in a folder's numbering the ImageIDs show the picture of the next file, the
    last ones are clamped to the last picture, and the picture controls that are left without
    a picture at the end of the list are shown empty and disabled, so that they cannot be
    chosen.
*/
class KVKALIVO_TESTS_EXPORT frmPicSelector : public QDialog
{
    Q_OBJECT

public:
    static constexpr int CategoryCount = 6;
    static constexpr int Columns = 5;
    static constexpr int VisibleRows = 5;
    //! Pitch of the picture grid; the picture controls are one pixel larger and overlap.
    static constexpr int RowHeight = 32;
    static constexpr int PictureControlSize = 33;

    //! The thread's picker, created hidden on first use.
    static frmPicSelector &ThreadInstance();
    static bool HasThreadInstance();
    ~frmPicSelector() override;

    //! Loads the icons of \a folder, or the built-in set when it has none, and arranges them.
    void loadPics(const QString &folder);
    //! Refills ImageListSmall, places one picture control per icon and resets the tabs.
    void arrangePics();

    //! Image-list index of the selection; 0 when nothing is selected.
    qint16 GetImgListIndex() const;
    //! ImageID of the selection ("2_3" gives 23); 0 when nothing is selected.
    qint16 ImgId() const;
    //! Image-list index of \a imageId, at most the list's count; 0 for IDs below 11.
    qint16 ConvertImgID2ImageListIndex(qint16 &imageId) const;
    //! Clears the selection.
    void Reset();

    //! The source list (32-pixel pictures), filled by loadPics().
    kvImageList &ImageListBig();
    //! The copy list (16-pixel pictures), refilled by arrangePics().
    kvImageList &ImageListSmall();

    //! The folder passed to the last loadPics() (the IconPath of the controls).
    QString IconFolder() const;
    //! The tag of the picture last clicked ("2_3"), or empty.
    QString Selection() const;
    //! Number of pictures of each category 1 .. 6.
    QList<qint16> CategorySizes() const;
    //! The scroll state of the tabs 1 .. 6, in tab order.
    const QList<TabInfo> &TabInfos() const;

    QTabBar *TabStrip() const;
    QScrollBar *VScroll() const;
    //! The containers of the tabs: element t holds the pictures that tab t shows.
    kvControlArray<QWidget> &PicContainer();
    //! The picture array Img1 .. Img6 named by \a number.
    kvControlArray<QToolButton> &Img(int number);
    //! The picture array bound to \a category (1 → Img1, 2 → Img3, 3 → Img4, ...).
    kvControlArray<QToolButton> &CategoryImages(int category);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    frmPicSelector();

    void CreateControls();
    QWidget *CreateContainer(int index);
    QToolButton *CreatePictureControl(int category);
    void LayoutControls();
    int PaneTop() const;
    QRect PaneRect() const;

    void UnloadPictureControls();
    void ArrangeCategory(int category, TabInfo &tab);

    int SelectedTab() const;
    void ShowTab(int tab);
    void MovePictures(int category, int position);

    void TabStrip_Click();
    void VScroll_Change(int value);
    void Img_Click(QToolButton *picture);

    QTabBar *m_tabStrip = nullptr;
    QFrame *m_picFrame = nullptr;
    QScrollBar *m_vScroll = nullptr;
    std::unique_ptr<kvControlArray<QWidget>> m_picContainer;
    std::array<std::unique_ptr<kvControlArray<QToolButton>>, CategoryCount> m_img;

    QList<TabInfo> m_tabInfos;
    QString m_selection;
};
