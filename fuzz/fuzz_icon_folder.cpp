// The icon folder of IconPath: any file names and contents, read by the picker's loader.
#include "frmPicSelector.h"
#include "kvFuzzSupport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

constexpr int MaximumFiles = 12;

//! A name the folder can hold: no "/", no NUL, not "." or "..".
QString fileNameOf(QString name)
{
    name.replace(u'/', u'_').replace(QChar(0), u'_');
    return name.isEmpty() || name == QLatin1String(".") || name == QLatin1String("..") ? QStringLiteral("_") : name;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    kvFuzzApplication();
    static QTemporaryDir folder;   // removed at exit
    QDir directory(folder.path());
    for (const QString &old : directory.entryList(QDir::Files | QDir::Hidden))
        directory.remove(old);
    // Each file: its name, then its contents of up to 64 KiB (length first).
    kvFuzzInput input(data, size);
    for (int i = 0; i < MaximumFiles && !input.atEnd(); ++i) {
        const QString name = fileNameOf(input.text());
        const auto length = input.number<uint16_t>();
        QByteArray contents;
        for (int piece = 0; contents.size() < length && !input.atEnd(); ++piece)
            contents += input.bytes();
        QFile file(directory.filePath(name));
        if (file.open(QIODevice::WriteOnly))
            file.write(contents.left(length));
    }
    frmPicSelector &picker = frmPicSelector::ThreadInstance();
    picker.loadPics(folder.path());
    for (qint16 imageId : {qint16(0), qint16(11), qint16(12), qint16(19999), qint16(32767)})
        picker.ConvertImgID2ImageListIndex(imageId);
    picker.Reset();
    return 0;
}
