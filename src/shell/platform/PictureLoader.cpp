#include "PictureLoader.h"

#include "shell/rules/VbError.h"

#include <QDir>
#include <QImageReader>
#include <cstdio>

namespace Pelorin {

QImage LoadPicture(const QString& fullFileName) {
    QImageReader reader(fullFileName);
    // Decoders that do not report a size up front are held to the same limit while decoding.
    reader.setAllocationLimit(static_cast<int>(MaxPicturePixels * 4 / (1024 * 1024)));
    const QSize size = reader.size();
    if (size.isValid() && static_cast<qint64>(size.width()) * size.height() > MaxPicturePixels) {
        const QByteArray line =
            QStringLiteral("Pelorin: %1: a picture of %2 x %3 pixels is larger than the limit of "
                           "%4 pixels")
                .arg(QDir::toNativeSeparators(fullFileName))
                .arg(size.width())
                .arg(size.height())
                .arg(MaxPicturePixels)
                .toLocal8Bit();
        std::fprintf(stderr, "%s\n", line.constData());
        std::fflush(stderr);
        throw VbError::CannotLoadFile();
    }
    QImage image;
    if (!reader.read(&image) || image.isNull())
        throw VbError::CannotLoadFile();
    const QImage converted = image.convertToFormat(
        image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    if (converted.isNull())
        throw VbError::CannotLoadFile();
    return converted;
}

} // namespace Pelorin
