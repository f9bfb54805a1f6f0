#include "kvIconCatalogue.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QIcon>
#include <QImageReader>

#include <algorithm>
#include <limits>
#include <memory>
#include <numeric>
#include <optional>

namespace {

constexpr std::array<qint16, kvIconCatalogue::CategoryCount> builtinCategorySizes = {
    21, 13, 8, 13, 9, 11
};

// An .ico file may claim up to 65535 images; real ones hold a handful of sizes.
constexpr int maximumIconImages = 64;

std::unique_ptr<kvIconCatalogue> &threadCatalogue()
{
    thread_local std::unique_ptr<kvIconCatalogue> catalogue;
    return catalogue;
}

struct IconFileName
{
    int category;
    int number;
};

bool isDecimal(QStringView text)
{
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), isDigit);
}

/*
    The category and picture number a file name stands for, when it names an icon of the
    categories 1 .. 6. Numbers above 32767 are not ImageIDs (an ImageID is an Integer) and are
    ignored too; so no category gets more than 9999 pictures and the whole list stays far
    below 32767 (9999 + 9999 + 2767 + 3 × 999), which keeps every index an Integer.
*/
std::optional<IconFileName> parseIconFileName(const QString &fileName)
{
    if (fileName.size() < 4)
        return std::nullopt;
    const QStringView name = QStringView(fileName).chopped(4);
    if (!isDecimal(name) || name.size() > 5 || name.toInt() > std::numeric_limits<qint16>::max())
        return std::nullopt;
    const int category = name.at(0).digitValue();
    if (category < 1 || category > kvIconCatalogue::CategoryCount)
        return std::nullopt;
    return IconFileName { category, name.mid(1).toInt() };
}

std::array<qint16, kvIconCatalogue::CategoryCount> categorySizesOf(const QStringList &iconFiles)
{
    std::array<qint16, kvIconCatalogue::CategoryCount> sizes {};
    for (const QString &fileName : iconFiles) {
        if (const std::optional<IconFileName> icon = parseIconFileName(fileName)) {
            qint16 &size = sizes[icon->category - 1];
            size = qint16(std::max<int>(size, icon->number));
        }
    }
    return sizes;
}

// An icon file is found whatever the case of its name: "12.ICO" counts as 12.ico.
QHash<QString, QString> filesByLowerCaseName(const QStringList &fileNames)
{
    QHash<QString, QString> files;
    for (const QString &fileName : fileNames) {
        if (!files.contains(fileName.toLower()))
            files.insert(fileName.toLower(), fileName);
    }
    return files;
}

QStringList iconFilesOf(const QString &folder)
{
    if (folder.isEmpty() || !QFileInfo(folder).isDir())
        return {};
    // QDir's name filters match without regard to case: "*.ico" also lists "12.ICO".
    return QDir(folder).entryList({ QStringLiteral("*.ico") }, QDir::Files, QDir::Name);
}

//! The file name of picture \a number of \a category, without extension: "23" for 2 and 3.
QString pictureName(int category, int number)
{
    return QString::number(category) + QString::number(number);
}

//! Every image of the file at \a path; a null icon when the file is missing or broken.
QIcon readIconFile(const QString &path)
{
    QImageReader reader(path);
    QIcon icon;
    const int imageCount = std::clamp(reader.imageCount(), 1, maximumIconImages);
    for (int i = 0; i < imageCount; ++i) {
        if (i > 0 && !reader.jumpToImage(i))
            break;
        const QImage image = reader.read();
        if (!image.isNull())
            icon.addPixmap(QPixmap::fromImage(image));
    }
    return icon;
}

QIcon builtinPicture(int category, int number)
{
    const QString name = pictureName(category, number) + QStringLiteral(".png");
    QIcon icon;
    icon.addFile(QStringLiteral(":/kvkalivo/icons/16/") + name, QSize(16, 16));
    icon.addFile(QStringLiteral(":/kvkalivo/icons/32/") + name, QSize(32, 32));
    return icon;
}

} // namespace

kvIconCatalogue::kvIconCatalogue()
    : m_big(QSize(32, 32)), m_small(QSize(16, 16))
{
    Load(QString());
}

kvIconCatalogue &kvIconCatalogue::ThreadInstance()
{
    std::unique_ptr<kvIconCatalogue> &catalogue = threadCatalogue();
    if (!catalogue) {
        catalogue.reset(new kvIconCatalogue);
        // The pictures go with the application, not after it at the thread's end.
        thread_local bool unloadsAtQuit = false;
        if (QCoreApplication *application = QCoreApplication::instance(); application && !unloadsAtQuit) {
            QObject::connect(application, &QCoreApplication::aboutToQuit, application, &Unload);
            unloadsAtQuit = true;
        }
    }
    return *catalogue;
}

void kvIconCatalogue::Unload()
{
    threadCatalogue().reset();
}

void kvIconCatalogue::Load(const QString &folder)
{
    m_folder = folder;
    const QStringList iconFiles = iconFilesOf(folder);
    if (iconFiles.isEmpty())
        LoadBuiltin();
    else
        LoadFolder(folder, iconFiles);
    RefillSmallIcons();
}

void kvIconCatalogue::LoadFolder(const QString &folder, const QStringList &iconFiles)
{
    m_categorySizes = categorySizesOf(iconFiles);
    const QHash<QString, QString> files = filesByLowerCaseName(iconFiles);
    const QDir directory(folder);
    m_big.Clear();
    for (int category = 1; category <= CategoryCount; ++category) {
        for (int number = 1; number <= m_categorySizes[category - 1]; ++number) {
            const QString fileName = files.value(pictureName(category, number) + QStringLiteral(".ico"));
            if (fileName.isEmpty())
                continue;
            const QIcon picture = readIconFile(directory.filePath(fileName));
            if (!picture.isNull())
                m_big.Add(picture);
        }
    }
}

void kvIconCatalogue::LoadBuiltin()
{
    m_categorySizes = builtinCategorySizes;
    m_big.Clear();
    for (int category = 1; category <= CategoryCount; ++category) {
        for (int number = 1; number <= m_categorySizes[category - 1]; ++number)
            m_big.Add(builtinPicture(category, number));
    }
}

void kvIconCatalogue::RefillSmallIcons()
{
    m_small.Clear();
    for (int index = 1; index <= m_big.Count(); ++index)
        m_small.Add(m_big.ListImage(index));
}

QList<qint16> kvIconCatalogue::CategorySizes() const
{
    return QList<qint16>(m_categorySizes.begin(), m_categorySizes.end());
}

int kvIconCatalogue::PicturesBefore(int category) const
{
    const int earlier = std::clamp(category - 1, 0, CategoryCount);
    return std::accumulate(m_categorySizes.begin(), m_categorySizes.begin() + earlier, 0);
}

qint16 kvIconCatalogue::IndexOfImageId(qint16 imageId) const
{
    if (imageId < 11)
        return 0;
    const QString digits = QString::number(imageId);
    const int category = digits.at(0).digitValue();
    const int index = QStringView(digits).mid(1).toInt() + PicturesBefore(category);
    return qint16(std::min(index, m_big.Count()));
}

QPixmap kvIconCatalogue::SmallPicture(qint16 imageId) const
{
    const qint16 index = IndexOfImageId(imageId);
    if (index < 1)
        return QPixmap();
    return m_small.Picture(index);
}
