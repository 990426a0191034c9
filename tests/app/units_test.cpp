#include <QAccessible>
#include <QTest>
#include <map>
#include <set>

#include "controls/bitmap_slider.h"
#include "controls/number_edit.h"
#include "plot/chart/plot_dlg.h"
#include "support/frame_fixture.h"

// What a screen reader is told of the numbers.

namespace tessavo::test {
namespace {

using Units = FrameTest;

QString descriptionOf(QWidget& widget) {
    QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&widget);
    return seen == nullptr ? QStringLiteral("no interface") : seen->text(QAccessible::Description);
}

/// The unit behind a slider's value, as it is read out; empty for a plain number.
QString unitOf(const CBitmapSlider& slider) {
    const QString text = slider.valueText();
    return text.contains(QLatin1Char(' ')) ? text.section(QLatin1Char(' '), -1) : QString();
}

TEST_F(Units, EveryEditBoxOfThePagesTellsThatOfItsSlider) {
    makeFrame(realPages());
    std::map<QString, int> boxesWith;
    for (int page = 0; page < static_cast<int>(pageCount); ++page) {
        clickTab(page);
        QWidget& inFront = *view().pages()[static_cast<std::size_t>(page)];
        std::map<QString, QString> sliderUnits;
        for (const auto* slider : inFront.findChildren<CBitmapSlider*>()) {
            if (slider->isVisible()) {
                sliderUnits[slider->accessibleName()] = unitOf(*slider);
            }
        }
        for (auto* edit : inFront.findChildren<NumberEdit*>()) {
            if (!edit->isVisible()) {
                continue;
            }
            const QString name = edit->accessibleName();
            const auto slider = sliderUnits.find(name);
            // Boxes without a slider are those of times, and of the ways that sound goes in them.
            const QString unit = slider != sliderUnits.end()                ? slider->second
                                 : name.endsWith(QLatin1String("distance")) ? QStringLiteral("cm")
                                                                            : QStringLiteral("ms");
            EXPECT_EQ(descriptionOf(*edit), unit) << name.toStdString();
            ++boxesWith[unit];
        }
    }
    EXPECT_GT(boxesWith[QStringLiteral("dB")], 30);
    EXPECT_GT(boxesWith[QStringLiteral("Hz")], 8);
    EXPECT_GT(boxesWith[QStringLiteral("ms")], 8);
    EXPECT_EQ(boxesWith[QStringLiteral("cm")], 8);
    EXPECT_GT(boxesWith[QString()], 7) << "quality factors count nothing";
    EXPECT_EQ(boxesWith.size(), 5U);
}

TEST_F(Units, ThePlotsLimitsAreDecibels) {
    int edits = 0;
    for (auto* edit : view().plot().findChildren<NumberEdit*>()) {
        EXPECT_EQ(descriptionOf(*edit), QStringLiteral("dB")) << edit->accessibleName().toStdString();
        ++edits;
    }
    EXPECT_EQ(edits, 2);
}

}  // namespace
}  // namespace tessavo::test
