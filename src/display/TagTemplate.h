#pragma once

#include "display/TrackValues.h"

#include <QString>
#include <cstdint>

namespace Pelorin {

// The label template language: bracketed placeholders in a label's Tag that stand for
// properties of the playing track.
class TagTemplate {
public:
    // The placeholder's text as skins write it ("[Artist]").
    static QString Text(Placeholder placeholder);
    static bool IsPlaylistPlaceholder(Placeholder placeholder);

    // Replaces, in `caption` and in table order, every occurrence of every placeholder
    // (ignoring case) by its value; the playlist placeholders only when there is a current
    // playlist. Each step works on the whole caption, so a value holding a later placeholder's
    // text is replaced again. The caption is changed in place: when reading a value fails, it
    // keeps the replacements made so far.
    //
    // Tags come from anywhere, and a tag that holds placeholders is expanded again by the later
    // steps: a step whose result would be longer than MaxCaption characters is cut there, and the
    // remaining steps run on the cut text.
    static void Fill(QString& caption, TrackValues& values);
    static constexpr qsizetype MaxCaption = 4096;

    // True when the template shows a running time ("[CurrentPosition]" or
    // "[CurrentRemaining]", any letter case).
    static bool HasRunningTime(const QString& tag);
    static bool HasCurrentPosition(const QString& tag);
    static bool HasCurrentRemaining(const QString& tag);

    // The caption of a running-time label: the raw template with every "[CurrentPosition]"
    // (exact case only) replaced by the time `milliseconds` gives.
    static QString CurrentPositionCaption(const QString& tag, std::int32_t milliseconds);
    // The same for "[CurrentRemaining]".
    static QString CurrentRemainingCaption(const QString& tag, std::int32_t milliseconds);
};

} // namespace Pelorin
