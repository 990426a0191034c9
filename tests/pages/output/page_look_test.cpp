#include <QApplication>
#include <QLabel>
#include <QTest>
#include <set>

#include "pages/output/output_eq_fixture.h"
#include "pages/output/output_group.h"

// Places, texts and ways of the keyboard. Runs once for each scale of the screen.

namespace tessavo::test {
namespace {

struct Extent {
    int id;
    QRect rect;  ///< page pixels
};

std::vector<Extent> outputEqExtents() {
    std::vector<Extent> extents;
    for (int b = 0; b < 8; ++b) {
        const BandControls& band = bandControls[static_cast<std::size_t>(b)];
        const int left = 100 * b;
        extents.push_back({band.enabled, {left + 4, 37, 86, 22}});
        extents.push_back({band.type, {left + 7, 64, 80, 24}});
        extents.push_back({band.frequency.slider, {left + 4, 114, 28, 182}});
        extents.push_back({band.gain.slider, {left + 33, 114, 28, 182}});
        extents.push_back({band.q.slider, {left + 62, 114, 28, 182}});
        extents.push_back({band.frequency.edit, {left + 7, 302, 58, 24}});
        extents.push_back({band.gain.edit, {left + 7, 328, 58, 24}});
        extents.push_back({band.q.edit, {left + 7, 354, 58, 24}});
    }
    constexpr std::array<std::size_t, 8> rows{6, 3, 7, 2, 1, 5, 0, 4};
    for (int row = 0; row < 8; ++row) {
        extents.push_back(
            {channelRadios[rows[static_cast<std::size_t>(row)]], {855, 40 + 27 * row, 119, 25}});
    }
    extents.push_back({assignBox, {811, 273, 167, 22}});
    extents.push_back({allFiltersButton, {812, 308, 160, 28}});
    extents.push_back({resetButton, {812, 346, 160, 28}});
    for (int k = 0; k < 2; ++k) {
        const CrossoverControls& crossover = crossoverControls[static_cast<std::size_t>(k)];
        const int top = 396 + 66 * k;
        extents.push_back({crossover.enabled, {9, top + 29, 89, 22}});
        extents.push_back({crossover.kind, {104, top + 28, 58, 24}});
        extents.push_back({crossover.order, {168, top + 28, 48, 24}});
        extents.push_back({crossover.frequency.slider, {230, top + 26, 266, 28}});
        extents.push_back({crossover.frequency.edit, {506, top + 28, 58, 24}});
    }
    extents.push_back({invertPhaseBox, {9, 557, 113, 22}});
    extents.push_back({volumeControls.slider, {230, 554, 266, 28}});
    extents.push_back({volumeControls.edit, {506, 556, 58, 24}});
    for (const auto& [sliderId, editId, left] :
         {std::tuple{1346, 1347, 610}, {1355, 1356, 692}, {1353, 1354, 774}}) {
        extents.push_back({sliderId, {left + 27, 452, 28, 98}});
        extents.push_back({editId, {left + 2, 556, 50, 24}});
    }
    extents.push_back({limiterDisabledBox, {875, 423, 99, 22}});
    extents.push_back({1358, {878, 502, 58, 24}});
    extents.push_back({1359, {878, 556, 58, 24}});
    return extents;
}

std::vector<Extent> outputGroupPlaces() {
    constexpr std::array<int, 8> gainEdits{1398, 1399, 1397, 1396, 1400, 1395, 1401, 1404};
    std::vector<Extent> extents;
    for (int p = 0; p < 8; ++p) {
        extents.push_back({1364 + p, {57 + 120 * p, 72, 30, 134}});
        extents.push_back({gainEdits[static_cast<std::size_t>(p)], {39 + 120 * p, 214, 48, 24}});
        extents.push_back({1157 + p, {69 + 120 * p, 249, 52, 24}});
    }
    for (int p = 0; p < 8; ++p) {
        extents.push_back({1372 + p, {57 + 120 * p, 366, 30, 118}});
        extents.push_back({1405 + p, {23 + 120 * p, 508, 47, 24}});
        extents.push_back({1413 + p, {74 + 120 * p, 508, 47, 24}});
        extents.push_back({1165 + p, {69 + 120 * p, 543, 52, 24}});
    }
    return extents;
}

class PageLook : public PageTest {
 protected:
    void showOutputEq() { showPage(std::make_unique<COutputEQ>(actual.state, boxes)); }
    void showOutputGroup() { showPage(std::make_unique<COutputGroup>(actual.state)); }

    [[nodiscard]] QRect placeOf(const QWidget& widget) const {
        return {widget.mapTo(page, QPoint(0, 0)), widget.size()};
    }
    static std::string nameOf(const QWidget& widget) {
        const auto* label = qobject_cast<const QLabel*>(&widget);
        return (label != nullptr ? label->text() : widget.objectName()).toStdString();
    }

    void expectExtents(const std::vector<Extent>& extents) {
        std::set<QWidget*> placed;
        for (const Extent& extent : extents) {
            auto& widget = control<QWidget>(extent.id);
            EXPECT_TRUE(widget.isVisible()) << extent.id;
            EXPECT_EQ(placeOf(widget), extent.rect) << extent.id;
            placed.insert(&widget);
        }
        // And nothing else takes the focus.
        for (QWidget* widget : page->findChildren<QWidget*>()) {
            const bool part = widget->parentWidget() != nullptr && placed.contains(widget->parentWidget());
            if (widget->isVisible() && widget->focusPolicy() != Qt::NoFocus && !part) {
                EXPECT_TRUE(placed.contains(widget)) << nameOf(*widget);
            }
        }
    }

    /// A text within a number of pixels at every scale, in the program's font and in the widest.
    static void expectFit(const QString& text, QFont font, double room, const std::string& where) {
        for (const bool widest : {false, true}) {
            if (widest) {
                font.setFamilies({QStringLiteral("DejaVu Sans")});
            }
            for (const double scale : {1.0, 1.5, 2.0}) {
                QFont scaled = font;
                scaled.setPixelSize(qRound(font.pixelSize() * scale));
                const double width = QFontMetricsF(scaled).horizontalAdvance(text) / scale;
                EXPECT_LE(width, room + 0.5) << where << " \"" << text.toStdString() << "\" at " << scale
                                             << (widest ? ", widest" : "");
            }
        }
    }

    template <typename Control>
    static void expectCaptionFits(const Control& control, const QString& text) {
        const int around = control.neededWidth() - control.fontMetrics().horizontalAdvance(text);
        expectFit(text, control.font(), control.width() - around, nameOf(control));
        EXPECT_LE(control.fontMetrics().height(), control.height());
    }

    /// Checks every visible text of the page, and tells how many there were.
    int expectTextsFit() {
        int checked = 0;
        for (const auto* button : page->findChildren<CxSkinButton*>()) {
            if (button->isVisible()) {
                expectCaptionFits(*button, button->text());
                ++checked;
            }
        }
        for (const auto* box : page->findChildren<SkinCheckBox*>()) {
            if (box->isVisible()) {
                expectCaptionFits(*box, box->text());
                ++checked;
            }
        }
        for (const auto* list : page->findChildren<SkinComboBox*>()) {
            if (!list->isVisible()) {
                continue;
            }
            int widest = 0;
            for (int entry = 0; entry < list->count(); ++entry) {
                widest = std::max(widest, list->fontMetrics().horizontalAdvance(list->itemText(entry)));
            }
            for (int entry = 0; entry < list->count(); ++entry) {
                expectFit(list->itemText(entry), list->font(), list->width() - (list->neededWidth() - widest),
                          nameOf(*list));
            }
            ++checked;
        }
        for (const auto* edit : page->findChildren<NumberEdit*>()) {
            if (edit->isVisible()) {
                const QString text = edit->text();
                const int around = edit->neededWidth(text) - edit->fontMetrics().horizontalAdvance(text);
                expectFit(text, edit->font(), edit->width() - around, nameOf(*edit));
                ++checked;
            }
        }
        for (const auto* group : page->findChildren<SkinGroupBox*>()) {
            if (group->isVisible()) {
                expectCaptionFits(*group, group->title());
                ++checked;
            }
        }
        for (const auto* label : page->findChildren<QLabel*>()) {
            if (label->isVisible() && !label->text().isEmpty()) {
                const QStringList lines = label->text().split(QLatin1Char('\n'));
                for (const QString& line : lines) {
                    expectFit(line, label->font(), label->width(), "label");
                }
                EXPECT_LE(
                    label->fontMetrics().height() + (lines.size() - 1) * label->fontMetrics().lineSpacing(),
                    label->height())
                    << label->text().toStdString();
                EXPECT_GE(label->font().pixelSize(), 11) << label->text().toStdString();
                ++checked;
            }
        }
        return checked;
    }

    /// No two visible controls or labels share a pixel, and none leaves its group.
    void expectNoOverlap() {
        std::vector<QWidget*> leaves;
        for (QWidget* widget : page->findChildren<QWidget*>()) {
            const bool group = qobject_cast<SkinGroupBox*>(widget) != nullptr;
            const bool part = !group && qobject_cast<SkinGroupBox*>(widget->parentWidget()) == nullptr;
            if (!widget->isVisible() || group || part) {
                continue;
            }
            EXPECT_TRUE(widget->parentWidget()->rect().contains(widget->geometry())) << nameOf(*widget);
            leaves.push_back(widget);
        }
        for (std::size_t i = 0; i < leaves.size(); ++i) {
            for (std::size_t j = i + 1; j < leaves.size(); ++j) {
                // Names lie on the buttons that they name.
                if (leaves[i]->testAttribute(Qt::WA_TransparentForMouseEvents) !=
                    leaves[j]->testAttribute(Qt::WA_TransparentForMouseEvents)) {
                    continue;
                }
                EXPECT_FALSE(placeOf(*leaves[i]).intersects(placeOf(*leaves[j])))
                    << nameOf(*leaves[i]) << " and " << nameOf(*leaves[j]);
            }
        }
        EXPECT_GT(leaves.size(), 60U);
    }

    /// Numbers of the controls that Tab goes through, beginning with one, until it is there again.
    std::vector<int> tour(int first, Qt::Key code = Qt::Key_Tab) {
        std::vector<int> ids;
        control<QWidget>(first).setFocus(Qt::TabFocusReason);
        for (int step = 0; step < 300; ++step) {
            QWidget* focus = QApplication::focusWidget();
            if (focus == nullptr) {
                ADD_FAILURE() << "nothing has the focus";
                break;
            }
            const int id = focus->objectName().mid(2).toInt();
            if (id == first && !ids.empty()) {
                break;
            }
            EXPECT_TRUE(focus->isVisible() && focus->isEnabled()) << id;
            ids.push_back(id);
            QTest::keyClick(focus, code);
        }
        return ids;
    }
};

std::vector<int> idsOf(const std::vector<Extent>& extents) {
    std::vector<int> ids;
    for (const Extent& extent : extents) {
        ids.push_back(extent.id);
    }
    return ids;
}

TEST_F(PageLook, EveryControlOfTheOutputEqualizerHasItsPlace) {
    showOutputEq();
    expectExtents(outputEqExtents());
}

TEST_F(PageLook, EveryControlOfTheGroupsHasItsPlace) {
    showOutputGroup();
    expectExtents(outputGroupPlaces());
}

TEST_F(PageLook, SeveralChannelsTakeThePlacesOfTheSingleOne) {
    showOutputEq();
    boxes.answers = {BoxAnswer::ok};
    click(check(assignBox));
    std::vector<Extent> extents = outputEqExtents();
    for (Extent& extent : extents) {
        const auto found = std::find(channelRadios.begin(), channelRadios.end(), extent.id);
        if (found != channelRadios.end()) {
            extent.id = channelChecks[static_cast<std::size_t>(found - channelRadios.begin())];
        }
    }
    expectExtents(extents);
    EXPECT_EQ(tour(1098), idsOf(extents));
}

TEST_F(PageLook, TabGoesThroughTheOutputEqualizerInReadingOrder) {
    showOutputEq();
    std::vector<int> expected = idsOf(outputEqExtents());
    // Of the radio buttons only the chosen one is a stop; the arrow keys reach the others.
    std::erase_if(expected, [](int id) {
        return id != channelRadios[0] &&
               std::find(channelRadios.begin(), channelRadios.end(), id) != channelRadios.end();
    });
    EXPECT_EQ(tour(1098), expected);
    std::reverse(expected.begin() + 1, expected.end());
    EXPECT_EQ(tour(1098, Qt::Key_Backtab), expected);
}

TEST_F(PageLook, TabGoesThroughTheGroupsInReadingOrder) {
    showOutputGroup();
    std::vector<int> expected = idsOf(outputGroupPlaces());
    EXPECT_EQ(tour(1364), expected);
    std::reverse(expected.begin() + 1, expected.end());
    EXPECT_EQ(tour(1364, Qt::Key_Backtab), expected);
}

TEST_F(PageLook, TextsOfTheOutputEqualizerFitAtBothEndsOfEverySlider) {
    showOutputEq();
    // The sources with the longest names.
    for (std::uint8_t position = 0; position < 8; ++position) {
        actual.state.setRouterSource(recordChannelAt({position}), static_cast<std::uint8_t>(6 + position));
    }
    page->refresh();
    for (const bool minimum : {true, false}) {
        for (const auto* target : page->findChildren<CBitmapSlider*>()) {
            if (target->isVisible()) {
                dragToEnd(target->objectName().mid(2).toInt(), minimum);
            }
        }
        typeAndEnter(1358, QStringLiteral("200"));
        EXPECT_GT(expectTextsFit(), 130);
    }
    click(control<CxSkinButton>(allFiltersButton));
    EXPECT_GT(expectTextsFit(), 130);
}

TEST_F(PageLook, TextsOfTheGroupsFitAtBothEndsOfEverySlider) {
    showOutputGroup();
    for (const bool minimum : {true, false}) {
        for (const auto* target : page->findChildren<CBitmapSlider*>()) {
            dragToEnd(target->objectName().mid(2).toInt(), minimum);
        }
        EXPECT_GT(expectTextsFit(), 80);
    }
}

TEST_F(PageLook, NothingOverlapsOnTheOutputEqualizer) {
    showOutputEq();
    expectNoOverlap();
    boxes.answers = {BoxAnswer::ok};
    click(check(assignBox));
    expectNoOverlap();
}

TEST_F(PageLook, AMixedValueIsOutlinedInDashesOnAllFourSidesAndNothingMoves) {
    showOutputEq();
    const BandControls& band = bandControls[1];
    actual.state.setSelectionMask(0x40);
    actual.state.setBandGainOrQ(1, BandValue::gain, 3.0F, true);
    actual.state.setBandType(1, 1);
    actual.state.setBandOff(1, 0);
    actual.state.setVolume(3.0F, true);
    actual.state.setSelectionMask(0x80);
    const auto grab = [&](int id) { return control<QWidget>(id).grab().toImage(); };
    for (const int id : {band.gain.slider, volumeControls.slider, band.gain.edit, band.type, band.enabled}) {
        const QImage plain = grab(id);
        const QRect extent = control<QWidget>(id).geometry();
        boxes.answers = {BoxAnswer::ok};
        click(check(assignBox));
        click(check(channelChecks[1]));
        const QImage marked = grab(id);
        EXPECT_EQ(control<QWidget>(id).geometry(), extent) << id;
        click(check(assignBox));
        const int right = marked.width() - 1;
        const int bottom = marked.height() - 1;
        const auto dashes = [&](QPoint from, QPoint step, int count) {
            int changes = 0;
            bool before = false;
            for (int i = 0; i < count; ++i) {
                const QPoint at = from + step * i;
                const bool differs = marked.pixel(at) != plain.pixel(at);
                changes += i > 0 && differs != before ? 1 : 0;
                before = differs;
            }
            return changes;
        };
        EXPECT_GE(dashes({0, 0}, {1, 0}, right + 1), 4) << id;
        EXPECT_GE(dashes({0, bottom}, {1, 0}, right + 1), 4) << id;
        EXPECT_GE(dashes({0, 0}, {0, 1}, bottom + 1), 4) << id;
        EXPECT_GE(dashes({right, 0}, {0, 1}, bottom + 1), 4) << id;
        EXPECT_EQ(grab(id), plain) << id;
    }
}

TEST_F(PageLook, NothingOverlapsOnTheGroups) {
    showOutputGroup();
    expectNoOverlap();
}

TEST_F(PageLook, EveryControlHasANameForAssistiveTechnology) {
    showOutputEq();
    const auto expectNames = [&] {
        std::set<QString> names;
        for (const QWidget* widget : page->findChildren<QWidget*>()) {
            const bool slider = qobject_cast<const CBitmapSlider*>(widget) != nullptr;
            const bool list = qobject_cast<const SkinComboBox*>(widget) != nullptr;
            if (widget->isVisible() && (slider || list)) {
                EXPECT_FALSE(widget->accessibleName().isEmpty()) << nameOf(*widget);
                EXPECT_TRUE(names.insert(widget->accessibleName()).second)
                    << widget->accessibleName().toStdString();
            }
        }
        return names.size();
    };
    EXPECT_EQ(expectNames(), 24U + 8U + 2U + 4U + 1U + 3U);
    delete page;
    showOutputGroup();
    EXPECT_EQ(expectNames(), 32U);
}

}  // namespace
}  // namespace tessavo::test
