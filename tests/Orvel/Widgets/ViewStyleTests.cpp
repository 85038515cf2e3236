#include "PanelColors.h"
#include "ViewStyle.h"

#include <gtest/gtest.h>

#include <QWidget>

using namespace orvel;

namespace {

// A translucent colour as it shows over `background`.
QColor over(const QColor &color, const QColor &background)
{
    const qreal a = color.alphaF();
    return QColor::fromRgbF(static_cast<float>(color.redF() * a + background.redF() * (1 - a)),
                            static_cast<float>(color.greenF() * a + background.greenF() * (1 - a)),
                            static_cast<float>(color.blueF() * a + background.blueF() * (1 - a)));
}

} // namespace

// What the dark appearance made hard to see: the edges of fields on their cards, and the text of a
// time gone by. WCAG asks 3:1 of edges and 4.5:1 of text.
TEST(ViewStyle, EdgesAndFadedTextStayLegibleInBothAppearances)
{
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        SCOPED_TRACE(appearance == Appearance::dark ? "dark" : "light");
        const QColor card = ViewStyle::controlBackground(appearance);
        EXPECT_GE(PanelColors::contrast(ViewStyle::fieldEdge(appearance), card), 3.0);
        for (const QColor &background : {card, ViewStyle::window(appearance)}) {
            const QColor past = over(ViewStyle::faded(ViewStyle::primary(appearance), ViewStyle::pastOpacity), background);
            EXPECT_GE(PanelColors::contrast(past, background), 4.5) << background.name().toStdString();
            // Still faded: a time gone by reads apart from the times to come.
            const QColor now = over(ViewStyle::primary(appearance), background);
            EXPECT_GT(PanelColors::contrast(now, background), PanelColors::contrast(past, background) + 2);
        }
    }

    // The style sheet reaches the fields of a form.
    QWidget form;
    form.setStyleSheet(ViewStyle::fieldStyleSheet(Appearance::dark));
    EXPECT_TRUE(form.styleSheet().contains(ViewStyle::fieldEdge(Appearance::dark).name()));
}
