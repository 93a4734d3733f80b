#include "display/LabelMeasurer.h"

#include <limits>

namespace Pelorin {

namespace {

int ClampedLength(qsizetype length) {
    return length > std::numeric_limits<int>::max() ? std::numeric_limits<int>::max()
                                                    : static_cast<int>(length);
}

} // namespace

LabelMeasurer::LabelMeasurer(const QFont& font) : m_metrics(font) {}

int LabelMeasurer::TextWidth(const QString& text) const {
    return m_metrics.horizontalAdvance(text);
}

int LabelMeasurer::PrefixWidth(const QString& text, qsizetype length) const {
    if (length <= 0)
        return 0;
    return m_metrics.horizontalAdvance(text, ClampedLength(length));
}

qsizetype LabelMeasurer::LongestNarrowerPrefix(const QString& text, int width,
                                               qsizetype shortest) const {
    qsizetype high = text.size();
    if (shortest > high)
        return -1;
    if (PrefixWidth(text, high) < width)
        return high;
    qsizetype low = shortest;
    if (PrefixWidth(text, low) >= width)
        return -1;
    // PrefixWidth(low) < width <= PrefixWidth(high)
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
