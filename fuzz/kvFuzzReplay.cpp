// Runs a fuzz target once over each file given, and over each file in each folder given:
// what a build without libFuzzer uses to replay the seed corpus and the regression inputs.
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv) __attribute__((weak));

namespace {

int replay(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "cannot read %s\n", qPrintable(path));
        return 1;
    }
    const QByteArray input = file.readAll();
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(input.constData()), size_t(input.size()));
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (LLVMFuzzerInitialize)
        LLVMFuzzerInitialize(&argc, &argv);
    int failures = 0;
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        const QFileInfo given(QString::fromLocal8Bit(argv[i]));
        QStringList paths;
        if (given.isDir()) {
            for (const QFileInfo &entry : QDir(given.filePath()).entryInfoList(QDir::Files, QDir::Name))
                paths << entry.filePath();
        } else {
            paths << given.filePath();
        }
        for (const QString &path : paths) {
            failures += replay(path);
            ++count;
        }
    }
    std::printf("%d inputs replayed\n", count);
    return failures == 0 && count > 0 ? 0 : 1;
}
