#include "display/TrackDisplay.h"

#include "base/TextRules.h"
#include "base/VbError.h"
#include "display/DisplayHost.h"
#include "display/LabelMeasurer.h"
#include "display/TagTemplate.h"
#include "display/TrackValues.h"
#include "platform/MessageBox.h"
#include "player/link/PlayerAccess.h"
#include "skin/SkinModel.h"

#include <exception>

namespace Pelorin {

namespace {

// Five spaces: the gap between the end of a scrolling text and its next beginning.
const QString& ScrollLead() {
    static const QString lead = QStringLiteral("     ");
    return lead;
}

void ShowRefreshError(const QString& description) {
    MessageBox::Show(TrackDisplay::RefreshErrorPrefix() + description);
}

} // namespace

TrackDisplay::TrackDisplay(DisplayHost& host, WindowPlayer& player)
    : m_host(host), m_player(player), m_scroller(host), m_progress(host, player),
      m_ratings(host, player), m_artwork(host, player) {}

void TrackDisplay::LoadSong() {
    m_host.Repaint();
    if (!m_player.iTunesIsNothing(true))
        RefreshInfo();
}

void TrackDisplay::RefreshInfo() {
    try {
        m_hasTimeLabels = false;
        SkinModel& model = m_host.Model();
        const int labelCount = model.LabelCount();
        // The track is read once here and handed to every part of the refresh.
        TrackValues values(m_player.iTunesR());
        for (int i = 1; i <= labelCount; ++i)
            RefreshLabel(i, values);
        if (model.HasArtwork) {
            // Decoding the cover takes longer than everything else: the new texts go on screen
            // first.
            if (labelCount > 0)
                m_host.PaintLabelsNow();
            ShowArtworkImages(values);
        }
        m_progress.tmrProgress_Timer(m_hasTimeLabels, &values);
        m_scroller.tmrScroll_Timer();
        m_ratings.ShowRatings(values);
    } catch (const VbError& error) {
        ShowRefreshError(error.description());
    } catch (const std::exception& error) {
        ShowRefreshError(QString::fromLocal8Bit(error.what()));
    }
}

void TrackDisplay::RefreshLabel(int index, TrackValues& values) {
    SkinModel& model = m_host.Model();
    const QString tag = model.lblInfo[static_cast<std::size_t>(index)].Tag;
    QString caption = tag;
    try {
        TagTemplate::Fill(caption, values);
    } catch (...) {
        // The label shows what was filled before the failure.
        m_host.SetLabelCaption(index, caption);
        throw;
    }

    const LabelMeasurer measurer(m_host.LabelFont(index));
    const int width = m_host.LabelWidth(index);
    if (measurer.TextWidth(caption) <= width) {
        m_scroller.SetScrollTag(index, LabelScroller::NoScroll());
    } else {
        // Not even one character fitting leaves the previous fit length in place.
        const qsizetype fit = measurer.LongestNarrowerPrefix(caption, width, 1);
        if (fit > 0)
            m_scroller.SetScrollTag(index, QString::number(fit));
        caption = ScrollLead() + caption;
    }
    m_host.SetLabelCaption(index, caption);

    while (model.LabelTexts.size() <= index)
        model.LabelTexts.append(QString());
    model.LabelTexts[index] = caption;

    if (TagTemplate::HasRunningTime(tag))
        m_hasTimeLabels = true;
}

void TrackDisplay::ShowArtworkImages(TrackValues& values) {
    const SkinModel& model = m_host.Model();
    for (int j = 0; j <= model.ImageCount(); ++j) {
        const QString special = j < model.ImagePictures.size() ? model.ImagePictures[j] : QString();
        if (special.isEmpty())
            continue;
        // Exact case here, although the loader took any case as an artwork image.
        if (Rules::SplitFirstFields(special, 1, u'|').value(0) == u"ARTWORK")
            m_artwork.ShowArtworkIn(j, &values);
    }
}

void TrackDisplay::tmrScroll_Timer() {
    try {
        m_scroller.tmrScroll_Timer();
    } catch (const std::exception&) {
        // Measuring and rotating do not fail on labels that exist; nothing to report.
    }
}

void TrackDisplay::tmrProgress_Timer() {
    m_progress.tmrProgress_Timer(m_hasTimeLabels);
}

void TrackDisplay::imgProgress_MouseDown(Qt::MouseButtons button, double x) {
    m_progress.imgProgress_MouseDown(button, x);
}

void TrackDisplay::imgProgress_MouseMove(Qt::MouseButtons buttons, double x) {
    m_progress.imgProgress_MouseMove(buttons, x);
}

void TrackDisplay::imgRatings_Click(int index) {
    m_ratings.imgRatings_Click(index);
}

void TrackDisplay::imgRatings_MouseDown(int index) {
    m_ratings.imgRatings_MouseDown(index);
}

void TrackDisplay::ShowArtworkIn(int index) {
    try {
        m_artwork.ShowArtworkIn(index);
    } catch (const VbError& error) {
        MessageBox::Show(error.description(), QStringLiteral("Error!"), MessageBox::Icon::Critical);
    }
}

} // namespace Pelorin
