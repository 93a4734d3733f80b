#include "display/LabelMeasurer.h"

namespace Pelorin {

LabelMeasurer::LabelMeasurer(const QFont& font) : m_metrics(font) {}

int LabelMeasurer::TextWidth(const QString& text) const {
    return m_metrics.horizontalAdvance(text);
}

int LabelMeasurer::PrefixWidth(const QString& text, qsizetype length) const {
    if (length <= 0)
        return 0;
    // The beginning is measured on its own, as a caption of that text would be; measuring it
    // inside the whole text lets the following character's shaping change the width.
    return m_metrics.horizontalAdvance(text.left(length));
}

qsizetype LabelMeasurer::LongestNarrowerPrefix(const QString& text, int width,
                                               qsizetype shortest) const {
    const qsizetype length = text.size();
    if (shortest > length || PrefixWidth(text, shortest) >= width)
        return -1;
    // Gallop up from the shortest beginning, so that a long text is measured only about as far
    // as the label reaches, then halve the range between the last that fitted and the first
    // that did not.
    qsizetype low = shortest; // fits
    qsizetype high = 0;       // does not fit
    for (qsizetype step = 1;; step *= 2) {
        const qsizetype probe = low + step;
        if (probe >= length) {
            if (PrefixWidth(text, length) < width)
                return length;
            high = length;
            break;
        }
        if (PrefixWidth(text, probe) >= width) {
            high = probe;
            break;
        }
        low = probe;
    }
    while (high - low > 1) {
        const qsizetype middle = low + (high - low) / 2;
        if (PrefixWidth(text, middle) < width)
            low = middle;
        else
            high = middle;
    }
    return low;
}

} // namespace Pelorin
