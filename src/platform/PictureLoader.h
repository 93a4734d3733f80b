#pragma once

#include <QImage>
#include <QString>

namespace Pelorin {

// The largest picture LoadPicture accepts, in pixels (256 MB at four bytes a pixel). Skins use
// small pictures; a larger one is almost certainly a broken or hostile file.
inline constexpr qint64 MaxPicturePixels = 64LL * 1024 * 1024;

// Reads any format Qt's image plugins know (PNG, JPEG, GIF, BMP, ICO, SVG, and WebP, TIFF and
// the like when qt6-image-formats-plugins is installed). Transparency is kept: the result is
// premultiplied ARGB when the picture has an alpha channel, so transparent pixels are black with
// alpha 0. A missing, unreadable or corrupt file, or a picture above MaxPicturePixels, throws
// VbError::CannotLoadFile (the reason for a refused size also goes to stderr).
QImage LoadPicture(const QString& fullFileName);

} // namespace Pelorin
