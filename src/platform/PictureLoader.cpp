#include "PictureLoader.h"

#include "base/Log.h"
#include "base/VbError.h"

#include <QDir>
#include <QFileInfo>
#include <QImageReader>

namespace Pelorin {

namespace {

// Formats that Qt decodes itself. Naming the format spares the reader from loading every image
// plugin just to sniff the file, which is most of a skin's start-up cost.
bool IsBuiltInFormat(const QByteArray& suffix) {
    static const QByteArrayList formats{"png", "bmp", "ppm", "pgm", "pbm", "xpm", "xbm"};
    return formats.contains(suffix);
}

bool Allowed(const QByteArray& format, PictureUse use) {
    static const QByteArrayList artwork{"png", "jpeg", "jpg", "gif", "bmp", "webp"};
    static const QByteArrayList skin{"png", "jpeg", "jpg", "gif", "bmp", "svg", "svgz", "webp"};
    return (use == PictureUse::Artwork ? artwork : skin).contains(format);
}

void SetUp(QImageReader& reader) {
    // Decoders that do not report a size up front are held to the same limit while decoding.
    reader.setAllocationLimit(static_cast<int>(MaxPicturePixels * 4 / (1024 * 1024)));
}

// The picture, or a null image when the reader cannot decode it; throws for a picture larger
// than the limit.
QImage Read(QImageReader& reader, const QString& fullFileName) {
    const QSize size = reader.size();
    if (size.isValid() && static_cast<qint64>(size.width()) * size.height() > MaxPicturePixels) {
        qCWarning(lcPicture).noquote()
            << QStringLiteral("Pelorin: %1: a picture of %2 x %3 pixels is larger than the limit "
                              "of %4 pixels")
                   .arg(QDir::toNativeSeparators(fullFileName))
                   .arg(size.width())
                   .arg(size.height())
                   .arg(MaxPicturePixels);
        throw VbError::CannotLoadFile();
    }
    QImage image;
    if (!reader.read(&image))
        return {};
    return image;
}

} // namespace

QImage LoadPicture(const QString& fullFileName, PictureUse use) {
    QImage image;
    const QByteArray suffix = QFileInfo(fullFileName).suffix().toLower().toLatin1();
    if (IsBuiltInFormat(suffix) && Allowed(suffix, use)) {
        QImageReader named(fullFileName, suffix);
        named.setAutoDetectImageFormat(false);
        SetUp(named);
        image = Read(named, fullFileName);
    }
    if (image.isNull()) {
        // Any other format, or a file whose name does not tell what it holds: the content decides,
        // and only an allowed format is decoded.
        QImageReader reader(fullFileName);
        SetUp(reader);
        if (Allowed(reader.format().toLower(), use))
            image = Read(reader, fullFileName);
    }
    if (image.isNull())
        throw VbError::CannotLoadFile();
    const QImage converted = image.convertToFormat(
        image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    if (converted.isNull())
        throw VbError::CannotLoadFile();
    return converted;
}

} // namespace Pelorin
