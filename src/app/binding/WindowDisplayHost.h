#pragma once

#include "display/DisplayHost.h"
#include "skin/SkinModel.h"

#include <QPointer>

namespace Pelorin {

class PlayerApplication;
class PlayerLink;
class frmMain;

// The track display's view of a real skin window: its model and widgets (labels, the progress
// bar, the stars, the artwork images) and its player link. Once the window has gone, every
// call does nothing.
class WindowDisplayHost final : public DisplayHost {
public:
    WindowDisplayHost(frmMain& window, PlayerLink& link, PlayerApplication* player);

    SkinModel& Model() override;
    bool iTunesIsNothing(bool careForTrack) override;
    IiTunes* iTunesR() override;
    IiTunes* iTunesApp() override;
    void Repaint() override;
    void Unload() override;
    void RunInterActionCode() override;
    QFont LabelFont(int index) const override;
    int LabelWidth(int index) const override;
    void SetLabelCaption(int index, const QString& caption) override;
    void SetProgressWidth(float width) override;
    void SetRatingStar(int index, const QRect& geometry, const QImage& picture) override;
    void SetImageArtwork(int index, const QImage& picture) override;

private:
    QPointer<frmMain> m_window;
    // Read instead of the model of a window that has gone.
    SkinModel m_spareModel;
    PlayerLink& m_link;
    PlayerApplication* m_player;
};

} // namespace Pelorin
