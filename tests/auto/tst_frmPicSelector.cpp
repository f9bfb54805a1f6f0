#include "frmPicSelector.h"
#include "kvTestSupport.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageWriter>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QTabBar>
#include <QTemporaryDir>
#include <QThread>
#include <QToolButton>
#include <QtTest>

#include <memory>

namespace {

const QList<qint16> builtinSizes = { 21, 13, 8, 13, 9, 11 };

//! A distinct colour per ImageID, so that a test can tell which file a picture came from.
QRgb colourOf(int imageId)
{
    return QColor::fromHsv(imageId * 47 % 360, 200 + imageId % 56, 255 - imageId % 64).rgb();
}

bool writeIcon(const QDir &folder, const QString &name, QRgb colour)
{
    QImage image(32, 32, QImage::Format_ARGB32);
    image.fill(colour);
    return image.save(folder.filePath(name), "ICO");
}

bool writeIcon(const QDir &folder, int imageId)
{
    return writeIcon(folder, QString::number(imageId) + QStringLiteral(".ico"), colourOf(imageId));
}

bool writeBytes(const QDir &folder, const QString &name, const QByteArray &bytes)
{
    QFile file(folder.filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray randomBytes(int size, quint32 seed)
{
    QRandomGenerator generator(seed);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = char(generator.bounded(256));
    return bytes;
}

//! Writes the icons 11 .. 1n of \a category with n = \a count.
bool writeCategory(const QDir &folder, int category, int count)
{
    for (int number = 1; number <= count; ++number) {
        if (!writeIcon(folder, (QString::number(category) + QString::number(number)).toInt()))
            return false;
    }
    return true;
}

QRgb centreColour(const QIcon &icon)
{
    return icon.pixmap(QSize(32, 32)).toImage().pixel(16, 16);
}

frmPicSelector &picker()
{
    return frmPicSelector::ThreadInstance();
}

//! The picture control with \a tag, found on the container of its tab.
QToolButton *pictureWithTag(const QString &tag)
{
    const int tab = tag.left(1).toInt();
    const auto pictures = picker().PicContainer()(tab)->findChildren<QToolButton *>();
    for (QToolButton *picture : pictures) {
        if (picture->property("Tag").toString() == tag)
            return picture;
    }
    return nullptr;
}

void showPicker()
{
    picker().show();
    QVERIFY(QTest::qWaitForWindowExposed(&picker()));
}

} // namespace

class tst_frmPicSelector : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(QImageWriter::supportedImageFormats().contains("ico"));
    }

    void init()
    {
        picker().TabStrip()->setCurrentIndex(0);
        picker().loadPics(QString());
        picker().Reset();
    }

    void cleanup()
    {
        picker().hide();
    }

    // --- The thread's picker --------------------------------------------------------------

    void oneHiddenPickerPerThread()
    {
        frmPicSelector &first = frmPicSelector::ThreadInstance();
        QVERIFY(frmPicSelector::HasThreadInstance());
        QCOMPARE(&frmPicSelector::ThreadInstance(), &first);
        QVERIFY(!first.isVisible());
        QVERIFY(first.isModal());
        QCOMPARE(first.objectName(), QStringLiteral("frmPicSelector"));
        QCOMPARE(first.windowTitle(), QStringLiteral("Symbol auswählen"));

        bool otherThreadHasOne = true;
        std::unique_ptr<QThread> other(QThread::create([&otherThreadHasOne] {
            otherThreadHasOne = frmPicSelector::HasThreadInstance();
        }));
        other->start();
        QVERIFY(other->wait());
        QVERIFY(!otherThreadHasOne);
    }

    void namedControls()
    {
        QCOMPARE(picker().findChild<QTabBar *>(QStringLiteral("TabStrip")), picker().TabStrip());
        QCOMPARE(picker().findChild<QScrollBar *>(QStringLiteral("VScroll")), picker().VScroll());
        for (int tab = 1; tab <= 6; ++tab) {
            QCOMPARE(picker().findChild<QWidget *>(QStringLiteral("PicContainer%1").arg(tab)),
                     picker().PicContainer()(tab));
        }
        QCOMPARE(picker().findChild<QToolButton *>(QStringLiteral("Img31")), picker().Img(3)(1));
    }

    void tabCaptions()
    {
        const QStringList expected = { QStringLiteral("Business"), QStringLiteral("Sport"),
                                       QStringLiteral("Freizeit"), QStringLiteral("Reise"),
                                       QStringLiteral("Symbol"), QStringLiteral("Sonstige") };
        QCOMPARE(picker().TabStrip()->count(), 6);
        for (int i = 0; i < 6; ++i)
            QCOMPARE(picker().TabStrip()->tabText(i), expected.at(i));
    }

    void categoriesAreBoundToTheFixedImageArrays()
    {
        const int arrayOfCategory[] = { 1, 3, 4, 6, 2, 5 };
        for (int category = 1; category <= 6; ++category) {
            kvControlArray<QToolButton> &pictures = picker().CategoryImages(category);
            QCOMPARE(&pictures, &picker().Img(arrayOfCategory[category - 1]));
            QCOMPARE(pictures.Count(), builtinSizes.at(category - 1) + 1);
            QCOMPARE(pictures(1)->property("Tag").toString(), QStringLiteral("%1_1").arg(category));
            QCOMPARE(pictures(1)->parentWidget(), picker().PicContainer()(category));
            QVERIFY(pictures(0)->isHidden());
        }
    }

    // --- Loading ------------------------------------------------------------------------------

    void noUsableFolderGivesTheBuiltinSet_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("empty path") << QStringLiteral("empty");
        QTest::newRow("missing folder") << QStringLiteral("missing");
        QTest::newRow("folder without .ico") << QStringLiteral("no-ico");
        QTest::newRow("path is a file") << QStringLiteral("file");
        QTest::newRow("only a subfolder named 11.ico") << QStringLiteral("subfolder");
    }

    void noUsableFolderGivesTheBuiltinSet()
    {
        QFETCH(QString, kind);
        QTemporaryDir temporary;
        QVERIFY(temporary.isValid());
        const QDir folder(temporary.path());
        QString path;
        if (kind == QStringLiteral("missing")) {
            path = folder.filePath(QStringLiteral("does-not-exist"));
        } else if (kind == QStringLiteral("no-ico")) {
            QImage image(32, 32, QImage::Format_ARGB32);
            image.fill(Qt::red);
            QVERIFY(image.save(folder.filePath(QStringLiteral("11.png"))));
            QVERIFY(writeBytes(folder, QStringLiteral("readme.txt"), "icons"));
            path = folder.path();
        } else if (kind == QStringLiteral("file")) {
            QVERIFY(writeIcon(folder, 11));
            path = folder.filePath(QStringLiteral("11.ico"));
        } else if (kind == QStringLiteral("subfolder")) {
            QVERIFY(folder.mkdir(QStringLiteral("11.ico")));
            path = folder.path();
        }

        picker().loadPics(path);
        QCOMPARE(picker().IconFolder(), path);
        QCOMPARE(picker().CategorySizes(), builtinSizes);
        QCOMPARE(picker().ImageListBig().Count(), 75);
        QCOMPARE(picker().ImageListSmall().Count(), 75);
    }

    void folderSizesAndIndexes()
    {
        QTemporaryDir temporary;
        const QDir folder(temporary.path());
        for (int id : { 11, 12, 13, 21 })
            QVERIFY(writeIcon(folder, id));
        picker().loadPics(folder.path());

        QCOMPARE(picker().CategorySizes(), (QList<qint16>{ 3, 1, 0, 0, 0, 0 }));
        QCOMPARE(picker().ImageListBig().Count(), 4);
        QCOMPARE(picker().ImageListSmall().Count(), 4);
        qint16 id = 21;
        QCOMPARE(picker().ConvertImgID2ImageListIndex(id), qint16(4));
        QCOMPARE(id, qint16(21));
        QCOMPARE(centreColour(picker().ImageListBig().ListImage(4)), colourOf(21));
        QCOMPARE(centreColour(picker().ImageListSmall().ListImage(4)), colourOf(21));
        QCOMPARE(picker().ImageListSmall().Picture(4).size(), QSize(16, 16));
        QCOMPARE(picker().ImageListBig().Picture(4).size(), QSize(32, 32));
        QCOMPARE(picker().Img(3)(1)->property("Tag").toString(), QStringLiteral("2_1"));
        QCOMPARE(centreColour(picker().Img(3)(1)->icon()), colourOf(21));
        QCOMPARE(picker().Img(1).Count(), 4);
        QCOMPARE(picker().Img(4).Count(), 1); // category 3 is empty: only the template
    }

    void namesThatAreNotIconsAreIgnored_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("category 7") << QStringLiteral("71.ico");
        QTest::newRow("category 9") << QStringLiteral("912.ico");
        QTest::newRow("letters") << QStringLiteral("abc.ico");
        QTest::newRow("digits and letters") << QStringLiteral("1a.ico");
        QTest::newRow("sign") << QStringLiteral("-12.ico");
        QTest::newRow("decimal point") << QStringLiteral("1.5.ico");
        QTest::newRow("blank") << QStringLiteral(" 12.ico");
        QTest::newRow("category 0") << QStringLiteral("012.ico");
        QTest::newRow("not an Integer") << QStringLiteral("40000.ico");
        QTest::newRow("far too long") << QStringLiteral("1000000000000000000000.ico");
    }

    void namesThatAreNotIconsAreIgnored()
    {
        QFETCH(QString, name);
        QTemporaryDir temporary;
        const QDir folder(temporary.path());
        QVERIFY(writeIcon(folder, 11));
        QVERIFY(writeIcon(folder, name, qRgb(0, 0, 0)));
        picker().loadPics(folder.path());
        QCOMPARE(picker().CategorySizes(), (QList<qint16>{ 1, 0, 0, 0, 0, 0 }));
        QCOMPARE(picker().ImageListBig().Count(), 1);
        QCOMPARE(centreColour(picker().ImageListBig().ListImage(1)), colourOf(11));
    }

    // The folder is usable (it has .ico files), so the built-in set is not used.
    void folderWithOnlyIgnoredNamesIsEmpty()
    {
        QTemporaryDir temporary;
        const QDir folder(temporary.path());
        QVERIFY(writeIcon(folder, 71));
        QVERIFY(writeIcon(folder, QStringLiteral("abc.ico"), qRgb(0, 0, 0)));
        picker().loadPics(folder.path());
        QCOMPARE(picker().CategorySizes(), (QList<qint16>{ 0, 0, 0, 0, 0, 0 }));
        QCOMPARE(picker().ImageListBig().Count(), 0);
        QCOMPARE(picker().ImageListSmall().Count(), 0);
        QCOMPARE(picker().CategoryImages(1).Count(), 1);
        QCOMPARE(picker().TabInfos().at(0).RowCount(), qint16(1));
        qint16 id = 11;
        QCOMPARE(picker().ConvertImgID2ImageListIndex(id), qint16(0));
    }

    void extensionCaseDoesNotMatter()
    {
        QTemporaryDir temporary;
        const QDir folder(temporary.path());
        QVERIFY(writeIcon(folder, QStringLiteral("11.ICO"), colourOf(11)));
        QVERIFY(writeIcon(folder, QStringLiteral("12.Ico"), colourOf(12)));
        picker().loadPics(folder.path());
        QCOMPARE(picker().CategorySizes(), (QList<qint16>{ 2, 0, 0, 0, 0, 0 }));
        QCOMPARE(picker().ImageListBig().Count(), 2);
        QCOMPARE(centreColour(picker().ImageListBig().ListImage(2)), colourOf(12));
    }

    void iconFilesWithSeveralSizes()
    {
        QTemporaryDir temporary;
        const QDir folder(temporary.path());
        QImageWriter writer(folder.filePath(QStringLiteral("11.ico")), "ico");
        QImage image(48, 48, QImage::Format_ARGB32);
        image.fill(colourOf(11));
        QVERIFY(writer.write(image));
        picker().loadPics(folder.path());
        QCOMPARE(picker().ImageListBig().Count(), 1);
        QCOMPARE(picker().ImageListBig().Picture(1).size(), QSize(32, 32));
        QCOMPARE(picker().ImageListSmall().Picture(1).size(), QSize(16, 16));
    }

    // A missing or unreadable file adds no picture: later pictures move up one index.
    void gapInTheNumbering()
    {
        QTemporaryDir temporary;
        const QDir folder(temporary.path());
        for (int id : { 11, 13, 21 })
            QVERIFY(writeIcon(folder, id));
        picker().loadPics(folder.path());

        QCOMPARE(picker().CategorySizes(), (QList<qint16>{ 3, 1, 0, 0, 0, 0 }));
        QCOMPARE(picker().ImageListBig().Count(), 3);
        qint16 id = 13;
        QCOMPARE(picker().ConvertImgID2ImageListIndex(id), qint16(3));
        QCOMPARE(centreColour(picker().ImageListBig().ListImage(3)), colourOf(21));
        id = 21;
        QCOMPARE(picker().ConvertImgID2ImageListIndex(id), qint16(3)); // 4, clamped

        kvControlArray<QToolButton> &business = picker().CategoryImages(1);
        QCOMPARE(business.Count(), 4);
        QCOMPARE(centreColour(business(2)->icon()), colourOf(13));
        QCOMPARE(centreColour(business(3)->icon()), colourOf(21));
        QToolButton *sport = picker().CategoryImages(2)(1);
        QVERIFY(sport->icon().isNull());
        QVERIFY(!sport->isEnabled());
        QVERIFY(!sport->isHidden());
    }

    void brokenIconFiles()
    {
        QTemporaryDir temporary;
        const QDir folder(temporary.path());
        QVERIFY(writeIcon(folder, 11));
        QVERIFY(writeBytes(folder, QStringLiteral("12.ico"), randomBytes(600, 12)));
        QVERIFY(writeIcon(folder, 13));
        QVERIFY(writeBytes(folder, QStringLiteral("14.ico"), QByteArray()));
        QFile valid(folder.filePath(QStringLiteral("13.ico")));
        QVERIFY(valid.open(QIODevice::ReadOnly));
        QVERIFY(writeBytes(folder, QStringLiteral("15.ico"), valid.readAll().left(30)));
        // An ICO header that claims 65535 images, followed by noise.
        QVERIFY(writeBytes(folder, QStringLiteral("16.ico"),
                           QByteArray::fromHex("00000100ffff") + randomBytes(2000, 16)));
        QVERIFY(writeIcon(folder, 21));
        picker().loadPics(folder.path());

        QCOMPARE(picker().CategorySizes(), (QList<qint16>{ 6, 1, 0, 0, 0, 0 }));
        QCOMPARE(picker().ImageListBig().Count(), 3);
        QCOMPARE(picker().ImageListSmall().Count(), 3);
        QCOMPARE(centreColour(picker().ImageListBig().ListImage(1)), colourOf(11));
        QCOMPARE(centreColour(picker().ImageListBig().ListImage(2)), colourOf(13));
        QCOMPARE(centreColour(picker().ImageListBig().ListImage(3)), colourOf(21));
        // 12.ico added no picture: ImageID 12 shows 13.ico, 13 shows 21.ico, 14 and on clamp.
        qint16 id = 12;
        QCOMPARE(picker().ConvertImgID2ImageListIndex(id), qint16(2));
        id = 13;
        QCOMPARE(picker().ConvertImgID2ImageListIndex(id), qint16(3));
        id = 21;
        QCOMPARE(picker().ConvertImgID2ImageListIndex(id), qint16(3)); // 7, clamped
        kvControlArray<QToolButton> &business = picker().CategoryImages(1);
        QCOMPARE(business.Count(), 7);
        QCOMPARE(centreColour(business(2)->icon()), colourOf(13));
        QVERIFY(business(3)->isEnabled());
        QVERIFY(!business(4)->isEnabled());
        QVERIFY(business(6)->icon().isNull());
    }

    void reloadingReplacesThePictureControls()
    {
        QTemporaryDir temporary;
        const QDir folder(temporary.path());
        QVERIFY(writeCategory(folder, 1, 26));
        picker().loadPics(folder.path());
        QCOMPARE(picker().CategoryImages(1).Count(), 27);
        QCOMPARE(picker().CategoryImages(2).Count(), 1);
        picker().loadPics(QString());
        QCOMPARE(picker().CategoryImages(1).Count(), 22);
        QCOMPARE(picker().CategoryImages(1).UBound(), 21);
        QCOMPARE(picker().CategoryImages(2).Count(), 14);
        QCOMPARE(picker().PicContainer()(1)->findChildren<QToolButton *>().size(), 22);
    }

    // --- Arranging ----------------------------------------------------------------------------

    void rowCountsAndScrollLimits()
    {
        QTemporaryDir temporary;
        const QDir folder(temporary.path());
        QVERIFY(writeCategory(folder, 1, 26));
        QVERIFY(writeCategory(folder, 2, 25));
        QVERIFY(writeCategory(folder, 4, 1));
        picker().loadPics(folder.path());

        const QList<TabInfo> &tabs = picker().TabInfos();
        QCOMPARE(tabs.size(), 6);
        QCOMPARE(tabs.at(0).RowCount(), qint16(6));
        QCOMPARE(tabs.at(0).MaxSrollPosition(), qint16(2));
        QCOMPARE(tabs.at(1).RowCount(), qint16(5));
        QCOMPARE(tabs.at(1).MaxSrollPosition(), qint16(1));
        // An empty category: (0 - 1) \ 5 + 1 = 1 with VB's truncating division.
        QCOMPARE(tabs.at(2).RowCount(), qint16(1));
        QCOMPARE(tabs.at(2).MaxSrollPosition(), qint16(1));
        QCOMPARE(tabs.at(3).RowCount(), qint16(1));
        for (int tab = 1; tab <= 6; ++tab) {
            QCOMPARE(tabs.at(tab - 1).LinkedCategory(), qint16(tab));
            QCOMPARE(tabs.at(tab - 1).SrollPosition(), qint16(1));
        }
        QCOMPARE(picker().VScroll()->maximum(), 2);
        QCOMPARE(picker().VScroll()->value(), 1);
    }

    void builtinRowCounts()
    {
        const qint16 rows[] = { 5, 3, 2, 3, 2, 3 };
        for (int tab = 0; tab < 6; ++tab) {
            QCOMPARE(picker().TabInfos().at(tab).RowCount(), rows[tab]);
            QCOMPARE(picker().TabInfos().at(tab).MaxSrollPosition(), qint16(1));
        }
    }

    void picturesFormAGridOfFiveColumns()
    {
        kvControlArray<QToolButton> &business = picker().CategoryImages(1);
        for (int i = 1; i <= 21; ++i) {
            const int row = (i - 1) / 5 + 1;
            const int column = (i - 1) % 5 + 1;
            QCOMPARE(business(i)->geometry(), QRect((column - 1) * 32, (row - 1) * 32, 33, 33));
            QCOMPARE(business(i)->property("Tag").toString(), QStringLiteral("1_%1").arg(i));
            QVERIFY(!business(i)->isHidden());
        }
        QCOMPARE(picker().PicContainer()(1)->size(), QSize(161, 161));
    }

    void onlyTheSelectedTabsContainerIsShown()
    {
        for (int selected = 0; selected < 6; ++selected) {
            picker().TabStrip()->setCurrentIndex(selected);
            for (int tab = 1; tab <= 6; ++tab)
                QCOMPARE(picker().PicContainer()(tab)->isHidden(), tab != selected + 1);
        }
        QVERIFY(picker().PicContainer()(0)->isHidden());
    }

    void scrollingMovesRowsBy32Pixels()
    {
        QTemporaryDir temporary;
        const QDir folder(temporary.path());
        QVERIFY(writeCategory(folder, 1, 26));
        picker().loadPics(folder.path());
        kvControlArray<QToolButton> &business = picker().CategoryImages(1);
        picker().VScroll()->setValue(2);
        QCOMPARE(picker().TabInfos().at(0).SrollPosition(), qint16(2));
        QCOMPARE(business(1)->pos(), QPoint(0, -32));
        QCOMPARE(business(6)->pos(), QPoint(0, 0));
        QCOMPARE(business(9)->pos(), QPoint(96, 0));
        QCOMPARE(business(26)->pos(), QPoint(0, 128));
        picker().VScroll()->setValue(1);
        QCOMPARE(business(26)->pos(), QPoint(0, 160));
    }

    void theWheelOverThePicturesScrolls()
    {
        QTemporaryDir temporary;
        const QDir folder(temporary.path());
        QVERIFY(writeCategory(folder, 1, 31));
        picker().loadPics(folder.path());
        showPicker();
        QWidget *container = picker().PicContainer()(1);
        const QPoint centre = container->rect().center();
        QWheelEvent wheel(centre, container->mapToGlobal(centre), QPoint(), QPoint(0, -120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        // A real wheel event over a picture propagates to its container; a sent one does not.
        QApplication::sendEvent(container, &wheel);
        QVERIFY(picker().VScroll()->value() > 1);
        const QString name = QStringLiteral("/frmPicSelector-scrolled.png");
        QVERIFY(picker().grab().save(galleryFolder() + name));
    }

    void switchingTabsKeepsEachTabsScrollPosition()
    {
        QTemporaryDir temporary;
        const QDir folder(temporary.path());
        QVERIFY(writeCategory(folder, 1, 31)); // 7 rows: positions 1 .. 3
        QVERIFY(writeCategory(folder, 2, 26)); // 6 rows: positions 1 .. 2
        picker().loadPics(folder.path());
        QTabBar *tabs = picker().TabStrip();
        QScrollBar *scroll = picker().VScroll();

        scroll->setValue(3);
        tabs->setCurrentIndex(1);
        QCOMPARE(scroll->maximum(), 2);
        QCOMPARE(scroll->value(), 1); // not the first tab's 3, clamped to 2
        QCOMPARE(picker().TabInfos().at(1).SrollPosition(), qint16(1));
        scroll->setValue(2);
        tabs->setCurrentIndex(2);
        QCOMPARE(scroll->maximum(), 1);
        QCOMPARE(scroll->value(), 1);

        tabs->setCurrentIndex(0);
        QCOMPARE(scroll->maximum(), 3);
        QCOMPARE(scroll->value(), 3);
        QCOMPARE(picker().CategoryImages(1)(11)->y(), 0);
        tabs->setCurrentIndex(1);
        QCOMPARE(scroll->value(), 2);
        QCOMPARE(picker().CategoryImages(2)(6)->y(), 0);
        QCOMPARE(picker().TabInfos().at(0).SrollPosition(), qint16(3));
        QCOMPARE(picker().TabInfos().at(1).SrollPosition(), qint16(2));
    }

    // --- Numbering ----------------------------------------------------------------------------

    void imageIdsBelow11HaveNoIndex_data()
    {
        QTest::addColumn<int>("imageId");
        for (int id : { 5, 0, 10, -1, -32768 })
            QTest::addRow("%d", id) << id;
    }

    void imageIdsBelow11HaveNoIndex()
    {
        QFETCH(int, imageId);
        qint16 id = qint16(imageId);
        QCOMPARE(picker().ConvertImgID2ImageListIndex(id), qint16(0));
    }

    void imageIdsToIndexes_data()
    {
        QTest::addColumn<int>("imageId");
        QTest::addColumn<int>("index");
        QTest::newRow("first") << 11 << 1;
        QTest::newRow("12th business") << 112 << 12;
        QTest::newRow("last business") << 121 << 21;
        QTest::newRow("third sport") << 23 << 24;
        QTest::newRow("first Sonstige") << 61 << 65;
        QTest::newRow("last") << 611 << 75;
        QTest::newRow("beyond category 6") << 612 << 75;
        QTest::newRow("far beyond") << 6999 << 75;
        QTest::newRow("category 7") << 71 << 75;
        QTest::newRow("largest Integer") << 32767 << 75;
    }

    void imageIdsToIndexes()
    {
        QFETCH(int, imageId);
        QFETCH(int, index);
        qint16 id = qint16(imageId);
        QCOMPARE(picker().ConvertImgID2ImageListIndex(id), qint16(index));
    }

    void resetClearsTheSelection()
    {
        showPicker();
        QTest::mouseClick(pictureWithTag(QStringLiteral("1_2")), Qt::LeftButton);
        QCOMPARE(picker().ImgId(), qint16(12));
        picker().Reset();
        QVERIFY(picker().Selection().isEmpty());
        QCOMPARE(picker().GetImgListIndex(), qint16(0));
        QCOMPARE(picker().ImgId(), qint16(0));
    }

    void clickOnTheThirdPictureOfTheSecondTab()
    {
        showPicker();
        QTabBar *tabs = picker().TabStrip();
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(1).center());
        QCOMPARE(tabs->currentIndex(), 1);
        QToolButton *tennis = picker().CategoryImages(2)(3);
        QVERIFY(tennis->isVisible());
        QTest::mouseClick(tennis, Qt::LeftButton);
        QCOMPARE(picker().Selection(), QStringLiteral("2_3"));
        QCOMPARE(picker().GetImgListIndex(), qint16(24));
        QCOMPARE(picker().ImgId(), qint16(23));
        QVERIFY(!picker().isVisible());
        QCOMPARE(picker().result(), int(QDialog::Accepted));
    }

    void selectionOfATwoDigitPictureNumber()
    {
        showPicker();
        QTest::mouseClick(pictureWithTag(QStringLiteral("1_12")), Qt::LeftButton);
        QCOMPARE(picker().ImgId(), qint16(112));
        QCOMPARE(picker().GetImgListIndex(), qint16(12));
        picker().TabStrip()->setCurrentIndex(5);
        showPicker();
        QTest::mouseClick(pictureWithTag(QStringLiteral("6_11")), Qt::LeftButton);
        QCOMPARE(picker().ImgId(), qint16(611));
        QCOMPARE(picker().GetImgListIndex(), qint16(75));
    }

    void escapeHidesWithoutChangingTheSelection()
    {
        showPicker();
        QTest::mouseClick(pictureWithTag(QStringLiteral("1_4")), Qt::LeftButton);
        showPicker();
        QTest::keyClick(&picker(), Qt::Key_Escape);
        QVERIFY(!picker().isVisible());
        QCOMPARE(picker().ImgId(), qint16(14));

        showPicker();
        picker().TabStrip()->setFocus();
        QTest::keyClick(picker().TabStrip(), Qt::Key_Escape);
        QVERIFY(!picker().isVisible());
        QCOMPARE(picker().Selection(), QStringLiteral("1_4"));
    }

    void closingHasNoEffectOfItsOwn()
    {
        showPicker();
        QTest::mouseClick(pictureWithTag(QStringLiteral("5_2")), Qt::LeftButton);
        showPicker();
        picker().close();
        QVERIFY(!picker().isVisible());
        QCOMPARE(picker().ImgId(), qint16(52));
        QVERIFY(frmPicSelector::HasThreadInstance());
    }

    // --- The built-in set ---------------------------------------------------------------------

    void builtinPicturesAreCrispAtBothSizes()
    {
        QCOMPARE(picker().ImageListBig().Count(), 75);
        QCOMPARE(picker().ImageListSmall().Count(), 75);
        for (int index = 1; index <= 75; ++index) {
            const QIcon icon = picker().ImageListBig().ListImage(index);
            QVERIFY(icon.availableSizes().contains(QSize(16, 16)));
            QVERIFY(icon.availableSizes().contains(QSize(32, 32)));
            const QImage big = picker().ImageListBig().Picture(index).toImage();
            const QImage small = picker().ImageListSmall().Picture(index).toImage();
            QCOMPARE(big.size(), QSize(32, 32));
            QCOMPARE(small.size(), QSize(16, 16));
            QVERIFY(!big.isNull());
            QVERIFY(!small.isNull());
        }
        for (int category = 1; category <= 6; ++category) {
            for (int number = 1; number <= builtinSizes.at(category - 1); ++number) {
                for (int size : { 16, 32 }) {
                    const QImage image(QStringLiteral(":/kvkalivo/icons/%1/%2%3.png")
                                               .arg(size).arg(category).arg(number));
                    QCOMPARE(image.size(), QSize(size, size));
                    QVERIFY(image.hasAlphaChannel());
                }
            }
        }
    }

    void builtinPicturesAllDiffer_data()
    {
        QTest::addColumn<int>("size");
        QTest::newRow("16 px") << 16;
        QTest::newRow("32 px") << 32;
    }

    void builtinPicturesAllDiffer()
    {
        QFETCH(int, size);
        QList<QImage> images;
        for (int index = 1; index <= 75; ++index) {
            images.append(picker().ImageListBig().ListImage(index).pixmap(QSize(size, size))
                                  .toImage().convertToFormat(QImage::Format_ARGB32));
        }
        for (int a = 0; a < images.size(); ++a) {
            for (int b = a + 1; b < images.size(); ++b) {
                if (images.at(a) == images.at(b))
                    QFAIL(qPrintable(QStringLiteral("pictures %1 and %2 are equal")
                                             .arg(a + 1).arg(b + 1)));
            }
        }
    }

    // --- What a person sees -------------------------------------------------------------------

    void looksLikeAPicker()
    {
        showPicker();
        const QSize size = picker().size();
        QCOMPARE(picker().minimumSize(), size);
        QCOMPARE(picker().maximumSize(), size);
        QTabBar *tabs = picker().TabStrip();
        QVERIFY(picker().rect().contains(tabs->geometry()));
        for (int i = 0; i < tabs->count(); ++i)
            QVERIFY(tabs->rect().contains(tabs->tabRect(i)));

        QWidget *frame = picker().VScroll()->parentWidget();
        const QRect frameRect = frame->geometry();
        QVERIFY(picker().rect().contains(frameRect));
        QVERIFY(frameRect.top() > tabs->geometry().bottom());
        const QRect view = picker().PicContainer()(1)->geometry();
        QCOMPARE(view.size(), QSize(161, 161));
        QVERIFY(frame->rect().contains(view));
        const QRect scroll = picker().VScroll()->geometry();
        QVERIFY(frame->rect().contains(scroll));
        QVERIFY(!scroll.intersects(view));
        QCOMPARE(scroll.height(), view.height());

        for (int tab = 1; tab <= 6; ++tab) {
            tabs->setCurrentIndex(tab - 1);
            const QImage image = picker().grab().toImage();
            QCOMPARE(image.size(), size);
            const QString name = QStringLiteral("/frmPicSelector-tab%1.png").arg(tab);
            QVERIFY(image.save(galleryFolder() + name));
        }
    }
};

QTEST_MAIN(tst_frmPicSelector)
#include "tst_frmPicSelector.moc"
