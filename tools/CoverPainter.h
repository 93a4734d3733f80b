#pragma once

#include "LibraryCatalog.h"

#include <QByteArray>
#include <QImage>

namespace Pelorin {

// Draws the album covers of the generated libraries: gradients and simple shapes, one look per
// style number, the same pixels on every run. No text, so no fonts or display are needed.
class CoverPainter {
public:
    static constexpr int Size = 300;

    static QImage Paint(int style);
    // The picture encoded as JPEG or PNG; empty when the image plugin is missing.
    static QByteArray Encode(const QImage& image, CoverFormat format);
    static QString MimeType(CoverFormat format);
};

} // namespace Pelorin
