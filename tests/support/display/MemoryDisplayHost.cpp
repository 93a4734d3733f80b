#include "support/display/MemoryDisplayHost.h"

namespace Pelorin {

QFont MemoryDisplayHost::LabelFont(int index) const {
    QFont font;
    if (!m_model.HasLabel(index))
        return font;
    const SkinFont& skinFont = m_model.scrollWidth[static_cast<std::size_t>(index)].Font;
    if (!skinFont.Name.isEmpty())
        font.setFamily(skinFont.Name);
    if (skinFont.Size > 0)
        font.setPointSizeF(skinFont.Size);
    return font;
}

int MemoryDisplayHost::LabelWidth(int index) const {
    return m_model.HasLabel(index) ? m_model.lblInfo[static_cast<std::size_t>(index)].Geometry.Width
                                   : 0;
}

void MemoryDisplayHost::SetLabelCaption(int index, const QString& caption) {
    while (m_captions.size() <= index)
        m_captions.append(QString());
    m_captions[index] = caption;
}

void MemoryDisplayHost::SetRatingStar(int index, const QRect& geometry, const QImage& picture) {
    if (index < 0 || index >= static_cast<int>(m_stars.size()))
        return;
    Star& star = m_stars[static_cast<std::size_t>(index)];
    star.visible = true;
    star.geometry = geometry;
    star.picture = picture;
}

void MemoryDisplayHost::SetImageArtwork(int index, const QImage& picture) {
    m_artwork.insert(index, picture);
    m_artworkSets[index] += 1;
}

} // namespace Pelorin
