#include "display/LabelMeasurer.h"

#include <QFont>
#include <QStringList>
#include <gtest/gtest.h>

using namespace Pelorin;

namespace {

// The rule as written: count down from the whole text to `shortest`.
qsizetype CountingDown(const LabelMeasurer& measurer, const QString& text, int width,
                       qsizetype shortest) {
    for (qsizetype n = text.size(); n >= shortest; --n) {
        if (measurer.TextWidth(text.left(n)) < width)
            return n;
    }
    return -1;
}

} // namespace

TEST(LabelMeasurer, FindsTheSameLengthAsCountingDownOneCharacterAtATime) {
    const QStringList texts{u"Morning Light"_qs, u"iiiiiWWWWW  mmm..."_qs,
                            u"\u05E9\u05DC\u05D5\u05DD Caf\u00e9 \U0001F3B5"_qs, QString()};
    for (const QFont& font : {QFont(), QFont(u"DejaVu Serif"_qs, 17)}) {
        const LabelMeasurer measurer(font);
        for (const QString& text : texts) {
            const int full = measurer.TextWidth(text);
            for (int width = -1; width <= full + 2; ++width) {
                for (qsizetype shortest : {0, 1}) {
                    ASSERT_EQ(measurer.LongestNarrowerPrefix(text, width, shortest),
                              CountingDown(measurer, text, width, shortest))
                        << text.toStdString() << " width " << width << " shortest " << shortest;
                }
            }
        }
    }
}

TEST(LabelMeasurer, BiggerFontMeasuresWider) {
    const QString text = u"Paper Boats"_qs;
    EXPECT_LT(LabelMeasurer(QFont(u"DejaVu Sans"_qs, 8)).TextWidth(text),
              LabelMeasurer(QFont(u"DejaVu Sans"_qs, 20)).TextWidth(text));
    EXPECT_EQ(LabelMeasurer(QFont()).TextWidth(QString()), 0);
}
