// Renders kvKalivo's built-in icon set (75 pictures in six categories) from the
// Noto Color Emoji font into 16- and 32-pixel PNG files named by ImageID, and writes the
// Qt resource file that ships them inside the library. See README.md beside this file.

#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <QImage>
#include <QGlyphRun>
#include <QPainter>
#include <QRawFont>
#include <QTextLayout>
#include <QTextStream>

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

struct Picture
{
    const char *name;
    const char32_t *codePoints;
};

struct Category
{
    const char *caption;
    std::vector<Picture> pictures;
};

// Category order and sizes are fixed, as ImageIDs name pictures by them: 21, 13, 8, 13, 9, 11.
const std::vector<Category> &categories()
{
    static const std::vector<Category> table = {
        { "Business",
          { { "briefcase", U"\U0001F4BC" },
            { "chart increasing", U"\U0001F4C8" },
            { "bar chart", U"\U0001F4CA" },
            { "calendar", U"\U0001F4C5" },
            { "telephone", U"\u260E\uFE0F" },
            { "e-mail", U"\U0001F4E7" },
            { "laptop", U"\U0001F4BB" },
            { "file folder", U"\U0001F4C1" },
            { "handshake", U"\U0001F91D" },
            { "memo", U"\U0001F4DD" },
            { "clipboard", U"\U0001F4CB" },
            { "busts in silhouette (meeting)", U"\U0001F465" },
            { "bank", U"\U0001F3E6" },
            { "euro banknote", U"\U0001F4B6" },
            { "printer", U"\U0001F5A8\uFE0F" },
            { "pushpin", U"\U0001F4CC" },
            { "paperclip", U"\U0001F4CE" },
            { "teacher (presentation)", U"\U0001F9D1\u200D\U0001F3EB" },
            { "envelope", U"\u2709\uFE0F" },
            { "hourglass not done", U"\u23F3" },
            { "identification card", U"\U0001FAAA" } } },
        { "Sport",
          { { "soccer ball", U"\u26BD" },
            { "basketball", U"\U0001F3C0" },
            { "tennis", U"\U0001F3BE" },
            { "person swimming", U"\U0001F3CA" },
            { "person biking", U"\U0001F6B4" },
            { "person running", U"\U0001F3C3" },
            { "skier", U"\u26F7\uFE0F" },
            { "person lifting weights", U"\U0001F3CB\uFE0F" },
            { "volleyball", U"\U0001F3D0" },
            { "ping pong", U"\U0001F3D3" },
            { "flag in hole (golf)", U"\u26F3" },
            { "boxing glove", U"\U0001F94A" },
            { "ice hockey", U"\U0001F3D2" } } },
        { "Freizeit",
          { { "clapper board (cinema)", U"\U0001F3AC" },
            { "performing arts", U"\U0001F3AD" },
            { "musical notes", U"\U0001F3B6" },
            { "video game", U"\U0001F3AE" },
            { "books", U"\U0001F4DA" },
            { "fork and knife (restaurant)", U"\U0001F374" },
            { "artist palette", U"\U0001F3A8" },
            { "fishing pole", U"\U0001F3A3" } } },
        { "Reise",
          { { "airplane", U"\u2708\uFE0F" },
            { "high-speed train", U"\U0001F684" },
            { "automobile", U"\U0001F697" },
            { "hotel", U"\U0001F3E8" },
            { "luggage", U"\U0001F9F3" },
            { "world map", U"\U0001F5FA\uFE0F" },
            { "ship", U"\U0001F6A2" },
            { "beach with umbrella", U"\U0001F3D6\uFE0F" },
            { "tent", U"\u26FA" },
            { "bus", U"\U0001F68C" },
            { "passport control", U"\U0001F6C2" },
            { "taxi", U"\U0001F695" },
            { "mountain", U"\u26F0\uFE0F" } } },
        { "Symbol",
          { { "red exclamation mark", U"\u2757" },
            { "red question mark", U"\u2753" },
            { "star", U"\u2B50" },
            { "red heart", U"\u2764\uFE0F" },
            { "check mark button", U"\u2705" },
            { "cross mark", U"\u274C" },
            { "warning", U"\u26A0\uFE0F" },
            { "bell", U"\U0001F514" },
            { "red circle", U"\U0001F534" } } },
        { "Sonstige",
          { { "birthday cake", U"\U0001F382" },
            { "wrapped gift", U"\U0001F381" },
            { "hospital", U"\U0001F3E5" },
            { "tooth", U"\U0001F9B7" },
            { "pill", U"\U0001F48A" },
            { "dog face", U"\U0001F436" },
            { "shopping cart", U"\U0001F6D2" },
            { "wrench", U"\U0001F527" },
            { "house", U"\U0001F3E0" },
            { "barber pole (haircut)", U"\U0001F488" },
            { "baby", U"\U0001F476" } } },
    };
    return table;
}

constexpr int renderPixelSize = 109; // the font's bitmap strike: no scaling while drawing

[[noreturn]] void fail(const QString &message)
{
    std::fprintf(stderr, "builtin-icons: %s\n", qPrintable(message));
    std::exit(1);
}

QImage renderGlyph(const QFont &font, const QString &text)
{
    const int canvas = renderPixelSize * 3;
    QImage image(canvas, canvas, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setFont(font);
    painter.drawText(QRect(0, 0, canvas, canvas), Qt::AlignCenter, text);
    return image;
}

//! The glyphs that \a text shapes to that have ink: one for a sequence the font knows.
int inkedGlyphCount(const QFont &font, const QString &text)
{
    QTextLayout layout(text, font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    int count = 0;
    for (const QGlyphRun &run : layout.glyphRuns()) {
        const QRawFont rawFont = run.rawFont();
        for (quint32 glyph : run.glyphIndexes()) {
            if (!rawFont.boundingRect(glyph).isEmpty())
                ++count;
        }
    }
    return count;
}

QRect opaqueBounds(const QImage &image)
{
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(line[x]) > 8)
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return bounds;
}

bool isColourful(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            if (colour.alpha() > 128 && colour.hsvSaturation() > 100)
                return true;
        }
    }
    return false;
}

//! The glyph cropped to a square around its opaque pixels.
QImage squareGlyph(const QImage &rendered, const QString &name)
{
    const QRect bounds = opaqueBounds(rendered);
    if (bounds.isEmpty())
        fail(QStringLiteral("'%1' rendered nothing").arg(name));
    const int side = qMax(bounds.width(), bounds.height());
    QImage square(side, side, QImage::Format_ARGB32_Premultiplied);
    square.fill(Qt::transparent);
    QPainter painter(&square);
    painter.drawImage(QPoint((side - bounds.width()) / 2, (side - bounds.height()) / 2),
                      rendered.copy(bounds));
    return square;
}

//! \a glyph scaled into a \a size square, leaving \a margin pixels on each side.
QImage fitted(const QImage &glyph, int size, int margin)
{
    const int inner = size - 2 * margin;
    const QImage scaled = glyph.scaled(inner, inner, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QImage result(size, size, QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.drawImage(QPoint((size - scaled.width()) / 2, (size - scaled.height()) / 2), scaled);
    painter.end();
    return result.convertToFormat(QImage::Format_ARGB32);
}

void save(const QImage &image, const QString &path)
{
    // For PNG the quality is the compression: 0 gives the smallest file, without loss.
    if (!image.save(path, "PNG", 0))
        fail(QStringLiteral("cannot write %1").arg(path));
}

QFont emojiFont()
{
    QFont font(QStringLiteral("Noto Color Emoji"));
    font.setPixelSize(renderPixelSize);
    font.setStyleStrategy(QFont::NoFontMerging);
    if (QFontInfo(font).family() != QStringLiteral("Noto Color Emoji"))
        fail(QStringLiteral("font 'Noto Color Emoji' not found: "
                            "apt-get install fonts-noto-color-emoji"));
    return font;
}

void writeResourceFile(const QString &path, const QStringList &files)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        fail(QStringLiteral("cannot write %1").arg(path));
    QTextStream out(&file);
    out << "<!DOCTYPE RCC>\n<!-- Generated by tools/builtin-icons; do not edit. -->\n"
        << "<RCC version=\"1.0\">\n  <qresource prefix=\"/kvkalivo/icons\">\n";
    for (const QString &name : files)
        out << "    <file>" << name << "</file>\n";
    out << "  </qresource>\n</RCC>\n";
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (argc != 2)
        fail(QStringLiteral("usage: builtin-icons OUTPUT-FOLDER (src/kvkalivo/resources/icons)"));

    const QDir output(QString::fromLocal8Bit(argv[1]));
    for (const QString size : { QStringLiteral("16"), QStringLiteral("32") }) {
        if (!output.mkpath(size))
            fail(QStringLiteral("cannot create %1").arg(output.filePath(size)));
    }

    const QFont font = emojiFont();
    QStringList resourceFiles;
    QStringList greyPictures;
    QTextStream table(stdout);
    table << "| ImageID | tab | picture | code points |\n|---|---|---|---|\n";
    for (int c = 1; c <= int(categories().size()); ++c) {
        const Category &category = categories().at(c - 1);
        for (int n = 1; n <= int(category.pictures.size()); ++n) {
            const Picture &picture = category.pictures.at(n - 1);
            const QString name = QString::fromLatin1(picture.name);
            const QString text = QString::fromUcs4(picture.codePoints);
            if (inkedGlyphCount(font, text) != 1)
                fail(QStringLiteral("'%1' is not one glyph of the font").arg(name));
            const QImage glyph = squareGlyph(renderGlyph(font, text), name);
            if (!isColourful(glyph))
                greyPictures << name;

            const QString file = QStringLiteral("%1%2.png").arg(c).arg(n);
            save(fitted(glyph, 16, 0), output.filePath(QStringLiteral("16/") + file));
            save(fitted(glyph, 32, 1), output.filePath(QStringLiteral("32/") + file));
            resourceFiles << QStringLiteral("16/") + file << QStringLiteral("32/") + file;

            QStringList codes;
            for (char32_t codePoint : text.toUcs4())
                codes << QStringLiteral("U+") + QString::number(uint(codePoint), 16).toUpper();
            table << "| " << c << n << " | " << category.caption << " | " << name << " | "
                  << codes.join(QLatin1Char(' ')) << " |\n";
        }
    }
    // Some emoji are grey by design (soccer ball, tooth); most grey means no colour rendering.
    if (greyPictures.size() > 10)
        fail(QStringLiteral("rendered without colour: ") + greyPictures.join(QStringLiteral(", ")));
    writeResourceFile(output.filePath(QStringLiteral("builtin.qrc")), resourceFiles);
    return 0;
}
