#include "app/binding/WindowDisplayHost.h"

#include "skin/window/SkinControls.h"
#include "skin/window/frmMain.h"

#include <algorithm>
#include <cmath>

namespace Pelorin {

WindowDisplayHost::WindowDisplayHost(frmMain& window) : m_window(&window) {}

SkinModel& WindowDisplayHost::Model() {
    return m_window ? m_window->Model() : m_spareModel;
}

void WindowDisplayHost::Repaint() {
    if (m_window)
        m_window->update();
}

void WindowDisplayHost::Unload() {
    if (m_window)
        m_window->Unload();
}

void WindowDisplayHost::RunInterActionCode() {
    if (m_window)
        m_window->RunInterActionCode();
}

QFont WindowDisplayHost::LabelFont(int index) const {
    const SkinLabelControl* label = m_window ? m_window->lblInfo(index) : nullptr;
    return label != nullptr ? label->font() : QFont();
}

int WindowDisplayHost::LabelWidth(int index) const {
    const SkinLabelControl* label = m_window ? m_window->lblInfo(index) : nullptr;
    return label != nullptr ? label->width() : 0;
}

void WindowDisplayHost::SetLabelCaption(int index, const QString& caption) {
    if (SkinLabelControl* label = m_window ? m_window->lblInfo(index) : nullptr)
        label->setText(caption);
}

void WindowDisplayHost::SetProgressWidth(float width) {
    PictureBox* bar = m_window ? m_window->imgProgress() : nullptr;
    if (bar == nullptr)
        return;
    // A widget has whole pixels and no negative width; the picture stays stretched to the full
    // width, so the bar shows its left part.
    const float pixels =
        std::isfinite(width) ? std::clamp(std::round(width), 0.0F, 32767.0F) : 0.0F;
    bar->resize(static_cast<int>(pixels), bar->height());
}

void WindowDisplayHost::SetRatingStar(int index, const QRect& geometry, const QImage& picture) {
    PictureBox* star = m_window ? m_window->imgRatings(index) : nullptr;
    if (star == nullptr)
        return;
    star->setGeometry(geometry);
    star->SetPicture(picture);
    star->show();
}

void WindowDisplayHost::SetImageArtwork(int index, const QImage& picture) {
    if (PictureBox* image = m_window ? m_window->img(index) : nullptr)
        image->SetPicture(picture);
}

} // namespace Pelorin
