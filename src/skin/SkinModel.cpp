#include "SkinModel.h"

namespace Pelorin {

RgbColour ColourToRgb(WindowsColour colour) {
    const auto bits = static_cast<std::uint32_t>(colour);
    return {static_cast<int>(bits & 0xFFu), static_cast<int>((bits >> 8) & 0xFFu),
            static_cast<int>((bits >> 16) & 0xFFu)};
}

SkinModel::SkinModel()
    : LabelTexts(1), ImagePictures(1), KeyShortcuts(1), lblInfo(1), scrollWidth(1), img(1), tmr(1) {
    // The model timer exists enabled with interval 0, so it never ticks.
    tmr[0].Enabled = true;
}

void SkinModel::BeginLoad(const QString& skinFolder) {
    Tag = QStringLiteral("loadedbyskin");
    SkinFolder = skinFolder;
}

} // namespace Pelorin
