#include "ctlDay.h"
#include "frmPicSelector.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageWriter>
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
    imageId = qAbs(imageId);
    return QColor::fromHsv(imageId * 47 % 360, 200 + imageId % 56, 255 - imageId % 64).rgb();
}

bool writeIcon(const QDir &folder, const QString &name, QRgb colour)
{
    QImage image(32, 32, QImage::Format_ARGB32);
    image.fill(colour);
    return image.save(folder.filePath(name), "ICO");
}

bool writeBytes(const QDir &folder, const QString &name, const QByteArray &bytes)
{
    QFile file(folder.filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

//! The ImageIDs of the first \a count pictures of \a category.
QList<int> category(int category, int count)
{
    QList<int> ids;
    for (int number = 1; number <= count; ++number)
        ids << (QString::number(category) + QString::number(number)).toInt();
    return ids;
}

QRgb centreColour(const QIcon &icon)
{
    return icon.pixmap(QSize(32, 32)).toImage().pixel(16, 16);
}

frmPicSelector &picker()
{
    return frmPicSelector::ThreadInstance();
}

qint16 indexOf(int imageId)
{
    qint16 id = qint16(imageId);
    return picker().ConvertImgID2ImageListIndex(id);
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

private:
    QTemporaryDir m_temporary;
    int m_folders = 0;

    //! A fresh folder holding the icons \a imageIds.
    QDir folderWith(const QList<int> &imageIds)
    {
        QDir folder(m_temporary.path());
        const QString name = QString::number(++m_folders);
        folder.mkdir(name);
        folder.cd(name);
        for (int id : imageIds)
            writeIcon(folder, QString::number(id) + QStringLiteral(".ico"), colourOf(id));
        return folder;
    }

private slots:
    void initTestCase() { QVERIFY(QImageWriter::supportedImageFormats().contains("ico")); }

    void init()
    {
        picker().TabStrip()->setCurrentIndex(0);
        picker().loadPics(QString());
        picker().Reset();
    }

    void cleanup() { picker().hide(); }

    // One hidden modal picker per thread; Escape and Close hide it and keep the selection.
    void oneHiddenModalPickerPerThread()
    {
        frmPicSelector &first = frmPicSelector::ThreadInstance();
        QCOMPARE(&frmPicSelector::ThreadInstance(), &first);
        QVERIFY(!first.isVisible() && first.isModal());
        bool otherThreadHasOne = true;
        std::unique_ptr<QThread> other(QThread::create([&] { otherThreadHasOne = frmPicSelector::HasThreadInstance(); }));
        other->start();
        QVERIFY(other->wait());
        QVERIFY(!otherThreadHasOne);
        showPicker();
        QTest::mouseClick(picker().CategoryImages(1)(4), Qt::LeftButton);
        showPicker();
        picker().TabStrip()->setFocus();
        QTest::keyClick(picker().TabStrip(), Qt::Key_Escape);
        QVERIFY(!picker().isVisible());
        showPicker();
        picker().close();
        QVERIFY(!picker().isVisible());
        QCOMPARE(picker().ImgId(), qint16(14));
        QVERIFY(frmPicSelector::HasThreadInstance());
    }

    // A sub folder holds a .png and maybe a folder named like an icon, but no .ico file.
    void noUsableFolderGivesTheBuiltinSet_data()
    {
        QTest::addColumn<QString>("path");
        const QDir folder = folderWith({11});
        QVERIFY(folder.mkpath(QStringLiteral("sub/11.ico")));
        QVERIFY(QImage(32, 32, QImage::Format_ARGB32).save(folder.filePath(QStringLiteral("sub/11.png"))));
        QTest::newRow("empty path") << QString();
        QTest::newRow("missing folder") << folder.filePath(QStringLiteral("does-not-exist"));
        QTest::newRow("no .ico file, a folder named 11.ico") << folder.filePath(QStringLiteral("sub"));
    }
    void noUsableFolderGivesTheBuiltinSet()
    {
        QFETCH(QString, path);
        picker().loadPics(path);
        QCOMPARE(picker().IconFolder(), path);
        QCOMPARE(picker().CategorySizes(), builtinSizes);
        QCOMPARE(picker().ImageListBig().Count(), 75);
        QCOMPARE(picker().ImageListSmall().Count(), 75);
    }

    // Sizes are the highest picture number; names that are no ImageID are ignored, yet they
    // make the folder the one used.
    void folderContents_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QList<qint16>>("sizes");
        QTest::addColumn<int>("lastId");   // the last picture; its index is the count
        QTest::addColumn<int>("count");
        QTest::newRow("gapless, any case of .ico") << QStringList{"11.ico", "12.ico", "13.ico", "21.ICO"}
                                                   << QList<qint16>{3, 1, 0, 0, 0, 0} << 21 << 4;
        QTest::newRow("only ignored names") << QStringList{"71.ico"} << QList<qint16>(6, 0) << 11 << 0;
        for (const char *name : {"71.ico", "912.ico", "abc.ico", "1a.ico", "-12.ico", "1.5.ico", " 12.ico", "012.ico",
                                 "40000.ico", "1000000000000000000000.ico"})
            QTest::addRow("ignores %s", name) << QStringList{"11.ico", name} << QList<qint16>{1, 0, 0, 0, 0, 0} << 11 << 1;
    }
    void folderContents()
    {
        QFETCH(QStringList, files);
        QFETCH(QList<qint16>, sizes);
        QFETCH(int, lastId);
        QFETCH(int, count);
        const QDir folder = folderWith({});
        for (const QString &name : files)
            QVERIFY(writeIcon(folder, name, colourOf(QStringView(name).chopped(4).toInt())));
        picker().loadPics(folder.path());
        QCOMPARE(picker().CategorySizes(), sizes);
        QCOMPARE(picker().ImageListBig().Count(), count);
        QCOMPARE(picker().ImageListSmall().Count(), count);
        QCOMPARE(indexOf(lastId), qint16(count));
        if (count > 0) {
            QCOMPARE(centreColour(picker().ImageListSmall().ListImage(count)), colourOf(lastId));
            QCOMPARE(centreColour(picker().CategoryImages(lastId / 10)(lastId % 10)->icon()), colourOf(lastId));
        }
    }

    // A missing or unreadable file adds no picture: later pictures move up one index.
    void brokenIconFilesLeaveGaps()
    {
        const QDir folder = folderWith({11, 13, 21});
        QVERIFY(writeBytes(folder, QStringLiteral("12.ico"), QByteArray(600, '\x5a')));
        QVERIFY(writeBytes(folder, QStringLiteral("14.ico"), QByteArray()));
        QFile valid(folder.filePath(QStringLiteral("13.ico")));
        QVERIFY(valid.open(QIODevice::ReadOnly));
        QVERIFY(writeBytes(folder, QStringLiteral("15.ico"), valid.readAll().left(30)));
        // An ICO header that claims 65535 images, followed by noise.
        QVERIFY(writeBytes(folder, QStringLiteral("16.ico"), QByteArray::fromHex("00000100ffff") + QByteArray(2000, '\x7f')));
        picker().loadPics(folder.path());
        QCOMPARE(picker().CategorySizes(), (QList<qint16>{ 6, 1, 0, 0, 0, 0 }));
        QCOMPARE(picker().ImageListSmall().Count(), 3);
        QCOMPARE(centreColour(picker().ImageListBig().ListImage(2)), colourOf(13));
        QCOMPARE(indexOf(12), qint16(2));  // shows 13.ico
        QCOMPARE(indexOf(13), qint16(3));  // shows 21.ico
        QCOMPARE(indexOf(21), qint16(3));  // 7, clamped
        kvControlArray<QToolButton> &business = picker().CategoryImages(1);
        QCOMPARE(business.Count(), 7);
        QCOMPARE(centreColour(business(3)->icon()), colourOf(21));
        QVERIFY(business(3)->isEnabled());
        QVERIFY(!business(4)->isEnabled() && business(6)->icon().isNull() && !business(6)->isHidden());
    }

    void reloadingReplacesThePictureControls()
    {
        picker().loadPics(folderWith(category(1, 26)).path());
        QCOMPARE(picker().CategoryImages(1).Count(), 27);
        picker().loadPics(QString());
        QCOMPARE(picker().CategoryImages(1).UBound(), 21);
        QCOMPARE(picker().CategoryImages(2).Count(), 14);
        QCOMPARE(picker().PicContainer()(1)->findChildren<QToolButton *>().size(), 22);
    }

    //! The day cells show the pictures the picker loaded; when the picker goes, they show the built-in set.
    void dayCellsShareThePickersIcons()
    {
        picker().loadPics(folderWith({11, 21}).path());
        ctlDay cell;
        cell.AddDate(1, {}, {}, QStringLiteral("a"), {}, {}, 21, 0xFFFFFFu, 0);
        QCOMPARE(cell.imgDateImage(1).Picture.toImage().pixel(8, 8), colourOf(21));
        delete &picker();
        QVERIFY(!frmPicSelector::HasThreadInstance());
        cell.AddDate(2, {}, {}, QStringLiteral("b"), {}, {}, 21, 0xFFFFFFu, 0);
        QVERIFY(!cell.imgDateImage(2).Picture.isNull());
        QVERIFY(cell.imgDateImage(2).Picture.toImage().pixel(8, 8) != colourOf(21));
        QCOMPARE(picker().CategorySizes(), builtinSizes);
    }

    // Rows move by 32 pixels; each tab keeps its own position; the wheel over the pictures scrolls.
    void scrolling()
    {
        picker().loadPics(folderWith(category(1, 31) + category(2, 26) + QList<int>{41}).path());
        const qint16 rows[] = { 7, 6, 1, 1, 1, 1 };   // empty: (0 - 1) \ 5 + 1 = 1, truncating
        const qint16 limits[] = { 3, 2, 1, 1, 1, 1 };
        for (int tab = 0; tab < 6; ++tab) {
            QCOMPARE(picker().TabInfos().at(tab).RowCount(), rows[tab]);
            QCOMPARE(picker().TabInfos().at(tab).MaxSrollPosition(), limits[tab]);
            QCOMPARE(picker().TabInfos().at(tab).LinkedCategory(), qint16(tab + 1));
            QCOMPARE(picker().TabInfos().at(tab).SrollPosition(), qint16(1));
        }
        kvControlArray<QToolButton> &business = picker().CategoryImages(1);
        QTabBar *tabs = picker().TabStrip();
        QScrollBar *scroll = picker().VScroll();
        QCOMPARE(scroll->maximum(), 3);
        scroll->setValue(2);
        QCOMPARE(business(1)->pos(), QPoint(0, -32));
        QCOMPARE(business(9)->pos(), QPoint(96, 0));
        scroll->setValue(3);
        tabs->setCurrentIndex(1);
        QCOMPARE(scroll->maximum(), 2);
        QCOMPARE(scroll->value(), 1); // not the first tab's 3, clamped to 2
        scroll->setValue(2);
        tabs->setCurrentIndex(2);
        QCOMPARE(scroll->value(), 1);
        tabs->setCurrentIndex(0);
        QCOMPARE(scroll->value(), 3);
        QCOMPARE(business(11)->y(), 0);
        tabs->setCurrentIndex(1);
        QCOMPARE(picker().CategoryImages(2)(6)->y(), 0);
        QCOMPARE(picker().TabInfos().at(0).SrollPosition(), qint16(3));
        tabs->setCurrentIndex(0);
        scroll->setValue(1);
        showPicker();
        QWidget *container = picker().PicContainer()(1);
        const QPoint centre = container->rect().center();
        QWheelEvent wheel(centre, container->mapToGlobal(centre), QPoint(), QPoint(0, -120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(container, &wheel);
        QVERIFY(scroll->value() > 1);
    }

    void imageIdsToIndexes_data()
    {
        QTest::addColumn<int>("imageId");
        QTest::addColumn<int>("index");
        for (int id : { 10, 0, -32768 })
            QTest::addRow("%d has none", id) << id << 0;
        const int ids[][2] = {{11, 1}, {112, 12}, {121, 21}, {23, 24}, {61, 65}, {611, 75}, {612, 75}, {71, 75}, {32767, 75}};
        for (const auto &[id, index] : ids)
            QTest::addRow("%d", id) << id << index;
    }
    void imageIdsToIndexes()
    {
        QFETCH(int, imageId);
        QFETCH(int, index);
        qint16 id = qint16(imageId);
        QCOMPARE(picker().ConvertImgID2ImageListIndex(id), qint16(index));
        QCOMPARE(id, qint16(imageId));
    }

    void aClickChoosesAndHides_data()
    {
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("tag");
        QTest::addColumn<int>("imageId");
        QTest::addColumn<int>("index");
        QTest::newRow("third of the second tab") << 1 << "2_3" << 23 << 24;
        QTest::newRow("two-digit number") << 0 << "1_12" << 112 << 12;
        QTest::newRow("last picture") << 5 << "6_11" << 611 << 75;
    }
    void aClickChoosesAndHides()
    {
        QFETCH(int, tab);
        QFETCH(QString, tag);
        QFETCH(int, imageId);
        QFETCH(int, index);
        showPicker();
        QTabBar *tabs = picker().TabStrip();
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(tab).center());
        QToolButton *picture = picker().CategoryImages(tag.left(1).toInt())(tag.mid(2).toInt());
        QVERIFY(picture->isVisible());
        QTest::mouseClick(picture, Qt::LeftButton);
        QCOMPARE(picker().Selection(), tag);
        QCOMPARE(picker().ImgId(), qint16(imageId));
        QCOMPARE(picker().GetImgListIndex(), qint16(index));
        QVERIFY(!picker().isVisible());
        QCOMPARE(picker().result(), int(QDialog::Accepted));
        picker().Reset();
        QCOMPARE(picker().ImgId(), qint16(0));
        QCOMPARE(picker().GetImgListIndex(), qint16(0));
    }
};

QTEST_MAIN(tst_frmPicSelector)
#include "tst_frmPicSelector.moc"
