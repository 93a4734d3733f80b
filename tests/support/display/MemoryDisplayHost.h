#pragma once

#include "display/DisplayHost.h"
#include "skin/SkinModel.h"
#include "support/player/FixedWindowPlayer.h"

#include <QHash>
#include <QStringList>
#include <array>

namespace Pelorin {

// A skin window held in memory for tests of the track display and for benchmarks: it keeps
// what the display shows (captions, the bar's width, the stars, the artwork) and counts the
// window operations, over a skin model filled like a real window's. Fonts are real, so
// measuring needs a QGuiApplication (the offscreen platform serves).
//
// It is the window's player as well (FixedWindowPlayer): its guard follows the player link's
// rule without the process check.
class MemoryDisplayHost final : public DisplayHost, public Testing::FixedWindowPlayer {
public:
    MemoryDisplayHost() = default;

    // The player both as the window's reference and as the process-wide object; null: none.
    void setPlayer(IiTunes* thePlayer) {
        player = thePlayer;
        app = thePlayer;
    }

    SkinModel& Model() override { return m_model; }
    void Repaint() override { ++m_repaints; }
    void PaintLabelsNow() override { ++m_labelPaints; }
    void Unload() override { ++m_unloads; }
    void RunInterActionCode() override { ++m_interactions; }
    QFont LabelFont(int index) const override;
    int LabelWidth(int index) const override;
    void SetLabelCaption(int index, const QString& caption) override;
    void SetProgressWidth(float width) override { m_progressWidth = width; }
    void SetRatingStar(int index, const QRect& geometry, const QImage& picture) override;
    void SetImageArtwork(int index, const QImage& picture) override;

    // What is shown.
    QString caption(int index) const { return m_captions.value(index); }
    float progressWidth() const { return m_progressWidth; }
    struct Star {
        bool visible = false;
        QRect geometry;
        QImage picture;
    };
    const Star& star(int index) const { return m_stars.at(static_cast<std::size_t>(index)); }
    // The artwork picture of img(index); null when cleared or never set.
    QImage artwork(int index) const { return m_artwork.value(index); }
    int artworkSets(int index) const { return m_artworkSets.value(index); }

    // Counts of window operations.
    int repaints() const { return m_repaints; }
    int labelPaints() const { return m_labelPaints; }
    int unloads() const { return m_unloads; }
    int interactions() const { return m_interactions; }
    int guards() const { return guardCalls; }

private:
    SkinModel m_model;
    QStringList m_captions;
    float m_progressWidth = 0;
    std::array<Star, 5> m_stars{};
    QHash<int, QImage> m_artwork;
    QHash<int, int> m_artworkSets;
    int m_repaints = 0;
    int m_labelPaints = 0;
    int m_unloads = 0;
    int m_interactions = 0;
};

} // namespace Pelorin
