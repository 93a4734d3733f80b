#pragma once

#include <QString>
#include <QStringList>

namespace Pelorin {

class DisplayHost;

// Label scrolling: each tick of the window's scroll timer moves every label that is too wide
// for its box one character to the left, the character leaving on the left coming back at the
// end, and cuts the caption to the longest beginning that is narrower than the label.
class LabelScroller {
public:
    static QString NoScroll() { return QStringLiteral("noscroll"); }

    explicit LabelScroller(DisplayHost& host);

    // scrollWidth(index).Tag: "noscroll" for a label that fits, else the fit length in decimal
    // (written for completeness; scrolling only tests for "noscroll"). Empty until a refresh
    // writes it.
    QString ScrollTag(int index) const;
    void SetScrollTag(int index, const QString& tag);

    // One step (the scroll timer's tick, and the last step of every refresh). Finishes a close
    // begun earlier instead when the window is closing.
    void tmrScroll_Timer();

    // The caption that shows `text` in label `index`: its longest beginning that is strictly
    // narrower than the label (a character made of two UTF-16 units is never cut in half).
    QString TrimmedCaption(int index, const QString& text) const;

    // `text` moved one character to the left.
    static QString Rotated(const QString& text);

private:
    bool IsDisabled(int index) const;

    DisplayHost& m_host;
    QStringList m_scrollTags;
};

} // namespace Pelorin
