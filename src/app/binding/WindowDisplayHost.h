#pragma once

#include "display/DisplayHost.h"
#include "skin/SkinModel.h"

#include <QPointer>

namespace Pelorin {

class frmMain;

// The track display's view of a real skin window: its model and widgets (labels, the progress
// bar, the stars, the artwork images). Once the window has gone, every call does nothing.
class WindowDisplayHost final : public DisplayHost {
public:
    explicit WindowDisplayHost(frmMain& window);

    SkinModel& Model() override;
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
};

} // namespace Pelorin
