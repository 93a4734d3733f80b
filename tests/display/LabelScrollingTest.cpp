#include "DisplayRig.h"

using namespace Pelorin;
using Pelorin::Testing::DisplayRig;

namespace {

class LabelScrolling : public ::testing::Test {
protected:
    // A label a third as wide as the text it shows.
    int NarrowLabel(const QString& text) {
        const int i = rig.Label(5000, u"[Title]"_qs);
        rig.SetLabelWidth(i, rig.TextWidth(i, text) / 3);
        return i;
    }

    // What the label should show for its current full text.
    QString Expected(int index) {
        const QString text = rig.LabelText(index);
        const int width = rig.host.LabelWidth(index);
        for (qsizetype n = text.size(); n >= 0; --n) {
            if (rig.TextWidth(index, text.left(n)) < width)
                return text.left(n);
        }
        return QString();
    }

    const QString title = u"Tunnel Vision Extended Mix"_qs;
    DisplayRig rig;
};

} // namespace

TEST_F(LabelScrolling, EachTickMovesTheTextOneCharacterLeftAndBringsItRoundAtTheEnd) {
    const int i = NarrowLabel(title);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, title));
    rig.display.LoadSong();
    const QString full = u"     "_qs + title;
    EXPECT_EQ(rig.LabelText(i), full.mid(1) + full.left(1));
    EXPECT_EQ(rig.Caption(i), Expected(i));
    for (int tick = 2; tick <= full.size(); ++tick) {
        rig.display.tmrScroll_Timer();
        ASSERT_EQ(rig.LabelText(i), full.mid(tick) + full.left(tick)) << "tick " << tick;
        ASSERT_EQ(rig.Caption(i), Expected(i)) << "tick " << tick;
    }
    EXPECT_EQ(rig.LabelText(i), full);
}

TEST_F(LabelScrolling, SkinWithoutScrollTimerStillAdvancesOneStepPerRefresh) {
    const int i = NarrowLabel(title);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, title));
    EXPECT_FALSE(rig.host.Model().ScrollInterval.has_value());
    for (int refresh = 0; refresh < 3; ++refresh) {
        rig.display.LoadSong();
        EXPECT_EQ(rig.LabelText(i), u"    "_qs + title + u' ');
        EXPECT_TRUE(rig.Caption(i).startsWith(u"    T"_qs)) << rig.Caption(i).toStdString();
    }
}

TEST_F(LabelScrolling, LabelListedAsDisabledKeepsItsRefreshedCaptionWithTheLead) {
    const int i = NarrowLabel(title);
    rig.Line(u"disablelabelscroll=1"_qs);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, title));
    rig.display.LoadSong();
    EXPECT_EQ(rig.Caption(i), u"     "_qs + title);
    rig.display.tmrScroll_Timer();
    rig.display.tmrScroll_Timer();
    EXPECT_EQ(rig.Caption(i), u"     "_qs + title);
    EXPECT_EQ(rig.LabelText(i), u"     "_qs + title);
}

TEST_F(LabelScrolling, DisablingLabelOneDoesNotDisableLabelTen) {
    for (int n = 1; n <= 10; ++n)
        NarrowLabel(title);
    rig.Line(u"disablelabelscroll=1"_qs);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, title));
    rig.display.LoadSong();
    EXPECT_EQ(rig.LabelText(1), u"     "_qs + title);
    EXPECT_EQ(rig.LabelText(10), u"    "_qs + title + u' ');
}

TEST_F(LabelScrolling, DisablingWrittenWithALeadingZeroDisablesNothing) {
    const int i = NarrowLabel(title);
    rig.Line(u"disablelabelscroll=01"_qs);
    EXPECT_EQ(rig.host.Model().NoScrollLabels, u"[01]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, title));
    rig.display.LoadSong();
    EXPECT_EQ(rig.LabelText(i), u"    "_qs + title + u' ');
}

TEST_F(LabelScrolling, CaptionExactlyAsWideAsTheLabelIsTrimmedByOneMoreCharacter) {
    const int i = NarrowLabel(title);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, title));
    rig.display.LoadSong();
    // After a step the text starts "   Tunnel"; make the label exactly as wide as that.
    const QString next = rig.LabelText(i).mid(1) + rig.LabelText(i).left(1);
    const int width = rig.TextWidth(i, next.left(9));
    ASSERT_LT(rig.TextWidth(i, next.left(8)), width);
    rig.SetLabelWidth(i, width);
    rig.display.tmrScroll_Timer();
    EXPECT_EQ(rig.Caption(i), next.left(8));
}

TEST_F(LabelScrolling, FittingLabelsDoNotMove) {
    const int i = rig.Label(5000, u"[Title]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, title));
    rig.display.LoadSong();
    rig.display.tmrScroll_Timer();
    EXPECT_EQ(rig.Caption(i), title);
    EXPECT_EQ(rig.LabelText(i), title);
}

TEST_F(LabelScrolling, TickOfAClosingWindowFinishesTheCloseInsteadOfScrolling) {
    const int i = NarrowLabel(title);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, title));
    rig.display.LoadSong();
    const QString before = rig.LabelText(i);
    const int repaints = rig.host.repaints();
    rig.host.Model().Closing = true;
    rig.display.tmrScroll_Timer();
    EXPECT_EQ(rig.host.unloads(), 1);
    EXPECT_EQ(rig.LabelText(i), before);
    EXPECT_EQ(rig.host.repaints(), repaints);
}

TEST_F(LabelScrolling, EveryTickRepaintsTheWindow) {
    rig.Label(5000, u"x"_qs);
    rig.display.tmrScroll_Timer();
    rig.display.tmrScroll_Timer();
    EXPECT_EQ(rig.host.repaints(), 2);
}

TEST_F(LabelScrolling, CharacterOfTwoUnitsMovesAsOne) {
    const QString text = u"\U0001F3B5 Song"_qs;
    const int i = rig.Label(1, u"[Title]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, text));
    rig.display.LoadSong();
    for (int tick = 0; tick < 4; ++tick)
        rig.display.tmrScroll_Timer();
    // Five steps in all: the five spaces are gone and the note leads, still whole.
    EXPECT_EQ(rig.LabelText(i), text + u"     "_qs);
    rig.display.tmrScroll_Timer();
    EXPECT_EQ(rig.LabelText(i), u" Song     \U0001F3B5"_qs);
}

TEST_F(LabelScrolling, TheSecondRoundShowsWhatTheFirstShowedWithoutMeasuringAgain) {
    const int i = NarrowLabel(title);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, title));
    rig.display.LoadSong();
    const qsizetype round = title.size() + 5;
    QStringList first;
    for (qsizetype tick = 0; tick < round; ++tick) {
        rig.display.tmrScroll_Timer();
        first.append(rig.Caption(i));
    }
    for (qsizetype tick = 0; tick < round; ++tick) {
        rig.display.tmrScroll_Timer();
        ASSERT_EQ(rig.Caption(i), first[tick]) << "tick " << tick;
        ASSERT_EQ(rig.Caption(i), Expected(i)) << "tick " << tick;
    }
}

TEST_F(LabelScrolling, ANarrowerLabelIsMeasuredAfreshAtTheNextStep) {
    const int i = NarrowLabel(title);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, title));
    rig.display.LoadSong();
    for (qsizetype tick = 0; tick < title.size() + 5; ++tick)
        rig.display.tmrScroll_Timer();
    const QString wide = rig.Caption(i);
    rig.SetLabelWidth(i, rig.host.LabelWidth(i) / 2);
    rig.display.tmrScroll_Timer();
    EXPECT_EQ(rig.Caption(i), Expected(i));
    EXPECT_LT(rig.Caption(i).size(), wide.size());
}
