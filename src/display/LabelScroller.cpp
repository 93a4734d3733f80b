#include "display/LabelScroller.h"

#include "display/DisplayHost.h"
#include "display/LabelMeasurer.h"
#include "skin/SkinModel.h"

namespace Pelorin {

LabelScroller::LabelScroller(DisplayHost& host) : m_host(host) {}

QString LabelScroller::ScrollTag(int index) const {
    return index >= 0 && index < m_scrollTags.size() ? m_scrollTags[index] : QString();
}

void LabelScroller::SetScrollTag(int index, const QString& tag) {
    if (index < 0)
        return;
    while (m_scrollTags.size() <= index)
        m_scrollTags.append(QString());
    m_scrollTags[index] = tag;
}

QString LabelScroller::Rotated(const QString& text) {
    if (text.isEmpty())
        return text;
    const qsizetype first =
        text.size() >= 2 && text[0].isHighSurrogate() && text[1].isLowSurrogate() ? 2 : 1;
    return text.mid(first) + text.left(first);
}

QString LabelScroller::TrimmedCaption(int index, const QString& text) const {
    const QFont font = m_host.LabelFont(index);
    const int width = m_host.LabelWidth(index);
    FitMemo& memo = m_fits[index];
    if (memo.font != font || memo.width != width || memo.lengths.size() > MemoTextLimit) {
        memo.font = font;
        memo.width = width;
        memo.lengths.clear();
    }
    const auto known = memo.lengths.constFind(text);
    qsizetype length = 0;
    if (known != memo.lengths.constEnd()) {
        length = *known;
    } else {
        length = LabelMeasurer(font).LongestNarrowerPrefix(text, width, 0);
        if (text.size() <= MemoTextLimit)
            memo.lengths.insert(text, length);
    }
    // A label no wider than nothing shows nothing.
    if (length < 0)
        length = 0;
    if (length > 0 && length < text.size() && text[length - 1].isHighSurrogate())
        --length;
    return text.left(length);
}

bool LabelScroller::IsDisabled(int index) const {
    // Whole bracketed numbers: "[1]" does not disable label 10.
    return m_host.Model().NoScrollLabels.contains(u'[' + QString::number(index) + u']');
}

void LabelScroller::tmrScroll_Timer() {
    SkinModel& model = m_host.Model();
    if (model.Closing) {
        m_host.Unload();
        return;
    }
    m_host.Repaint();
    for (int i = 1; i <= model.LabelCount(); ++i) {
        if (ScrollTag(i) == NoScroll())
            continue;
        if (IsDisabled(i))
            continue;
        while (model.LabelTexts.size() <= i)
            model.LabelTexts.append(QString());
        model.LabelTexts[i] = Rotated(model.LabelTexts[i]);
        m_host.SetLabelCaption(i, TrimmedCaption(i, model.LabelTexts[i]));
    }
}

} // namespace Pelorin
