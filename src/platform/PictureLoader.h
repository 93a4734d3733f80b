#pragma once

#include <QImage>
#include <QString>

namespace Pelorin {

// The largest picture LoadPicture accepts, in pixels (256 MB at four bytes a pixel). Skins use
// small pictures; a larger one is almost certainly a broken or hostile file.
inline constexpr qint64 MaxPicturePixels = 64LL * 1024 * 1024;

// What a picture is for, which decides the formats read: skins come from strangers, and every
// decoder is code that a crafted file can reach, so only the common formats are decoded.
enum class PictureUse {
    Skin,    // PNG, JPEG, GIF, BMP, SVG and WebP
    Artwork, // the same but SVG: covers embedded in music files are pictures, never drawings
};

// Reads a picture of the formats `use` allows, whatever its name says. Transparency is kept: the
// result is premultiplied ARGB when the picture has an alpha channel, so transparent pixels are
// black with alpha 0. A missing, unreadable or corrupt file, a format `use` does not allow, or a
// picture above MaxPicturePixels, throws VbError::CannotLoadFile (the reason for a refused size
// also goes to stderr).
QImage LoadPicture(const QString& fullFileName, PictureUse use = PictureUse::Skin);

} // namespace Pelorin
