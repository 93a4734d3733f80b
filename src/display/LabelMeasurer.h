#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QString>

namespace Pelorin {

// scrollWidth(i): measures texts in the font of one label, in the label's own units (pixels).
class LabelMeasurer {
public:
    explicit LabelMeasurer(const QFont& font);

    // TextWidth: the width that `text` would take in the label.
    int TextWidth(const QString& text) const;
    // The width of the first `length` characters of `text`.
    int PrefixWidth(const QString& text, qsizetype length) const;

    // The longest beginning of `text`, at least `shortest` characters long, that is strictly
    // narrower than `width`; -1 when not even `shortest` characters are.
    //
    // Counting down one character at a time measures the text once per character, which for a
    // tag of thousands of characters is millions of glyphs a tick. The width of a beginning grows
    // with its length, so a search finds the same length with a few measurements, none much
    // longer than what the label can show.
    qsizetype LongestNarrowerPrefix(const QString& text, int width, qsizetype shortest) const;

private:
    QFontMetrics m_metrics;
};

} // namespace Pelorin
