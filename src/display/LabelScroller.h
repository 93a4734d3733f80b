#pragma once

#include <QFont>
#include <QHash>
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

    // What TrimmedCaption found for each rotation of a label's text, for the label's font and
    // width. A scrolling text comes back to each of its rotations once per round, so from the
    // second round on a step measures nothing (measuring shapes the text, the most a step costs).
    struct FitMemo {
        QFont font;
        int width = -1;
        QHash<QString, qsizetype> lengths;
    };
    // Texts longer than this are measured at every step rather than remembered.
    static constexpr qsizetype MemoTextLimit = 256;

    DisplayHost& m_host;
    QStringList m_scrollTags;
    mutable QHash<int, FitMemo> m_fits;
};

} // namespace Pelorin
