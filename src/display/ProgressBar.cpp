#include "display/ProgressBar.h"

#include "base/TextRules.h"
#include "display/DisplayHost.h"
#include "display/TagTemplate.h"
#include "display/TrackValues.h"
#include "platform/MessageBox.h"
#include "player/link/PlayerAccess.h"
#include "skin/SkinModel.h"

#include <algorithm>
#include <exception>
#include <optional>

namespace Pelorin {

namespace {} // namespace

ProgressBar::ProgressBar(DisplayHost& host, WindowPlayer& player)
    : m_host(host), m_player(player) {}

void ProgressBar::tmrProgress_Timer(bool hasTimeLabels, TrackValues* refreshValues) {
    try {
        if (m_host.Model().Closing) {
            m_host.Unload();
            return;
        }
        if (m_player.iTunesIsNothing(true))
            return;
        IiTunes& player = PlayerAccess::R(m_player);
        std::optional<TrackValues> tickValues;
        if (refreshValues == nullptr)
            tickValues.emplace(&player);
        TrackValues& values = refreshValues != nullptr ? *refreshValues : *tickValues;
        if (hasTimeLabels)
            UpdateRunningTimeLabels(values);
        const int length = values.LengthSeconds();
        if (length == 0) {
            m_host.SetProgressWidth(0);
            return;
        }
        const double fullWidth = Rules::LeadingNumber(m_host.Model().imgProgress.Tag);
        // No clamp: a position beyond the length draws the bar beyond its full width.
        m_host.SetProgressWidth(
            static_cast<float>(static_cast<double>(player.PlayerPosition()) / length * fullWidth));
    } catch (const std::exception&) {
        // A tick that fails leaves the display as it was; the next tick tries again.
    }
}

void ProgressBar::UpdateRunningTimeLabels(TrackValues& values) {
    SkinModel& model = m_host.Model();
    for (int i = 1; i <= model.LabelCount(); ++i) {
        // The raw template, compared exactly: other placeholders of a running-time label show
        // literally, and "[currentposition]" marks a time label without being replaced.
        const QString tag = model.lblInfo[static_cast<std::size_t>(i)].Tag;
        if (TagTemplate::HasCurrentPosition(tag)) {
            IiTunes& player = PlayerAccess::R(m_player);
            const auto milliseconds =
                Rules::ToInt32(static_cast<double>(player.PlayerPosition()) * 1000);
            m_host.SetLabelCaption(i, TagTemplate::CurrentPositionCaption(tag, milliseconds));
        }
        if (TagTemplate::HasCurrentRemaining(tag)) {
            IiTunes& player = PlayerAccess::R(m_player);
            const int length = values.LengthSeconds();
            const auto milliseconds =
                Rules::ToInt32((static_cast<double>(length) - player.PlayerPosition()) * 1000);
            m_host.SetLabelCaption(i, TagTemplate::CurrentRemainingCaption(tag, milliseconds));
        }
    }
}

void ProgressBar::imgProgress_MouseDown(Qt::MouseButtons button, double x) {
    m_host.RunInterActionCode();
    imgProgress_MouseMove(button, x);
}

void ProgressBar::imgProgress_MouseMove(Qt::MouseButtons buttons, double x) {
    if (buttons != Qt::LeftButton)
        return;
    try {
        Seek(x);
    } catch (const VbError& error) {
        MessageBox::Show(error.description(), QStringLiteral("Error!"), MessageBox::Icon::Critical);
    }
}

void ProgressBar::Seek(double x) {
    const double fullWidth = Rules::LeadingNumber(m_host.Model().imgProgress.Tag);
    if (fullWidth < 0)
        return;
    const int pixels = Rules::ToInt16(x);
    if (m_player.iTunesIsNothing(true))
        return;
    // A bar of no width has no place to point at.
    if (fullWidth == 0)
        return;
    IiTunes& player = PlayerAccess::R(m_player);
    const int length = TrackValues(&player).LengthSeconds();
    // A drag may leave the bar on either side; the player takes only positions within the track.
    const double seconds =
        std::clamp(length * (pixels / fullWidth), 0.0, static_cast<double>(std::max(length, 0)));
    player.SetPlayerPosition(Rules::ToInt32(seconds));
}

} // namespace Pelorin
