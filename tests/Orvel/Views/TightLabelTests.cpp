#include "TightLabel.h"
#include "ViewStyle.h"
#include "ViewsTestSupport.h"

#include <gtest/gtest.h>

using namespace orvel;

TEST(TightLabel, WrapsBetweenWordsWithoutLosingAny)
{
    TightLabel label;
    const QString note = QStringLiteral("Çevrimdışı · cihazda hesaplandı");
    label.setSymbol(QStringLiteral("wifi.slash"), 12, Qt::gray);
    label.setText(note, ViewStyle::font(12), Qt::gray);
    const int wide = label.sizeHint().width();

    EXPECT_EQ(label.lines(80), QStringList{note}) << "no wrapping unless asked";
    label.setWraps(true);
    EXPECT_EQ(label.lines(wide), QStringList{note});
    EXPECT_EQ(label.heightForWidth(wide), label.sizeHint().height());

    const QStringList narrow = label.lines(wide * 0.6);
    EXPECT_GE(narrow.size(), 2);
    EXPECT_EQ(narrow.join(u' '), note);
    EXPECT_GT(label.heightForWidth(static_cast<int>(wide * 0.6)), label.sizeHint().height());

    // A word longer than the room keeps a line of its own rather than being cut.
    EXPECT_EQ(label.lines(30).join(u' '), note);
}

TEST(TightLabel, RunsShareOneLineAndShrinkOnlyAsFarAsAllowed)
{
    TightLabel label;
    const QFont big = ViewStyle::font(34, QFont::DemiBold);
    const QFont small = ViewStyle::font(17);
    label.setRuns({{QStringLiteral("2"), big, Qt::black, 2}, {QStringLiteral("sa"), small, Qt::gray, 8},
                   {QStringLiteral("0"), big, Qt::black, 2}, {QStringLiteral("dk"), small, Qt::gray, 0}});
    EXPECT_EQ(label.text(), QStringLiteral("2sa0dk"));
    EXPECT_EQ(label.accessibleName(), label.text());
    EXPECT_GE(label.sizeHint().height(), QFontMetrics(big).height());
    EXPECT_EQ(label.minimumSizeHint().width(), label.sizeHint().width()) << "it may not shrink by default";

    label.setMinimumScale(0.5);
    EXPECT_LT(label.minimumSizeHint().width(), label.sizeHint().width() * 0.6);
}
