#include <QAccessible>
#include <QApplication>
#include <QFontDatabase>
#include <QLabel>
#include <QTest>
#include <set>

#include "controls/control_id.h"
#include "controls/spin_edit.h"
#include "pages/input/audio_router.h"
#include "pages/input/control_places.h"
#include "pages/input/input_eq.h"
#include "support/page_fixture.h"
#include "support/row_checks.h"

namespace tessavo::test {
namespace {

std::vector<int> sequence(int first, int count) {
    std::vector<int> ids;
    for (int i = 0; i < count; ++i) {
        ids.push_back(first + i);
    }
    return ids;
}

std::vector<int> joined(std::initializer_list<std::vector<int>> parts) {
    std::vector<int> all;
    for (const std::vector<int>& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

class PageAccess : public PageTest {
 protected:
    void openInputEq() { showPage(std::make_unique<CInputEQ>(actual.state, boxes)); }
    void openAudioRouter() { showPage(std::make_unique<CAudioRouter>(actual.state)); }

    QRect placeOf(const QWidget& widget) const { return {widget.mapTo(page, QPoint(0, 0)), widget.size()}; }
    /// Numbers of the controls that Tab (or Shift+Tab) leads through, once around.
    std::vector<int> walk(int first, bool backwards) {
        QWidget& start = control<QWidget>(first);
        start.setFocus(Qt::TabFocusReason);
        std::vector<int> ids;
        QWidget* at = QApplication::focusWidget();
        do {
            ids.push_back(controlId(*at));
            QTest::keyClick(at, Qt::Key_Tab, backwards ? Qt::ShiftModifier : Qt::NoModifier);
            at = QApplication::focusWidget();
        } while (at != nullptr && at != &start && ids.size() < 200);
        return ids;
    }
    void expectOrder(std::vector<int> order) {
        EXPECT_EQ(walk(order.front(), false), order);
        std::reverse(order.begin() + 1, order.end());
        EXPECT_EQ(walk(order.front(), true), order);
    }
    template <typename Controls, typename Labels, typename Groups>
    void expectPlaces(const Controls& controls, const Labels& labels, const Groups& groups) {
        std::set<int> known;
        for (const ControlPlace& place : controls) {
            EXPECT_EQ(placeOf(control<QWidget>(place.id)), QRect(place.x, place.y, place.width, place.height))
                << place.id;
            known.insert(place.id);
        }
        for (const auto* widget : page->findChildren<QWidget*>()) {
            if (const int id = controlId(*widget); id >= 0) {
                EXPECT_TRUE(known.contains(id)) << id;
            }
        }
        for (const TextPlace& place : labels) {
            const QRect rect(place.x, place.y, place.width, place.height);
            const auto all = page->findChildren<QLabel*>();
            EXPECT_TRUE(std::any_of(all.begin(), all.end(), [&](const QLabel* label) {
                return label->text().replace(QLatin1Char('\n'), QLatin1Char(' ')) ==
                           QLatin1String(place.text) &&
                       placeOf(*label) == rect;
            })) << place.text;
        }
        for (const TextPlace& place : groups) {
            const QRect rect(place.x, place.y, place.width, place.height);
            const auto all = page->findChildren<SkinGroupBox*>();
            EXPECT_TRUE(std::any_of(all.begin(), all.end(), [&](const SkinGroupBox* group) {
                return group->title() == QLatin1String(place.text) && placeOf(*group) == rect;
            })) << place.text;
        }
    }
    /// Everything that takes the focus has a name, and no two controls of a kind have the same.
    void expectNames() {
        std::set<std::pair<std::string, std::string>> names;
        int count = 0;
        for (auto* widget : page->findChildren<QWidget*>()) {
            if (controlId(*widget) < 0 || widget->focusPolicy() == Qt::NoFocus) {
                continue;
            }
            QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(widget);
            ASSERT_NE(seen, nullptr) << controlId(*widget);
            // A list's name is its entry where relations tell what labels it.
            const bool isList = qobject_cast<SkinComboBox*>(widget) != nullptr;
            const std::string name =
                (isList ? widget->accessibleName() : seen->text(QAccessible::Name)).toStdString();
            EXPECT_NE(name, "") << controlId(*widget);
            EXPECT_TRUE(names.emplace(widget->metaObject()->className(), name).second) << name;
            ++count;
        }
        EXPECT_GT(count, 25);
    }

    /// Every text of the page in the widest of the program's fonts within its control, at three scales.
    void expectTextsFit(const std::map<int, const char*>& longest) {
        ASSERT_TRUE(QFontDatabase::families().contains(QStringLiteral("DejaVu Sans")));
        for (auto* widget : page->findChildren<QWidget*>()) {
            QFont font = widget->font();
            font.setFamilies({QStringLiteral("DejaVu Sans")});
            widget->setFont(font);
        }
        for (const auto* button : page->findChildren<CxSkinButton*>()) {
            expectFit(*button, button->neededWidth(), button->text());
        }
        for (const auto* box : page->findChildren<SkinCheckBox*>()) {
            expectFit(*box, box->neededWidth(), box->text());
        }
        for (const auto* selector : page->findChildren<SkinComboBox*>()) {
            for (int index = 0; index < selector->count(); ++index) {
                expectFit(*selector, selector->neededWidth(), selector->itemText(index));
            }
        }
        for (const auto* group : page->findChildren<SkinGroupBox*>()) {
            expectFit(*group, group->neededWidth(), group->title());
        }
        for (const auto* box : page->findChildren<NumberEdit*>()) {
            const auto text = longest.find(controlId(*box));
            ASSERT_NE(text, longest.end()) << controlId(*box);
            const QString widest = QString::fromLatin1(text->second);
            expectFit(*box, box->neededWidth(widest), widest);
        }
        int labels = 0;
        for (const auto* label : page->findChildren<QLabel*>()) {
            const QStringList lines = label->text().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
            for (const QString& line : lines) {
                expectFit(*label, label->fontMetrics().horizontalAdvance(line), line);
                ++labels;
            }
            EXPECT_LE(lines.size() * label->fontMetrics().height(), label->height() + 1)
                << label->text().toStdString();
        }
        EXPECT_GT(labels, 20);
    }

 private:
    static void expectFit(const QWidget& control, int needed, const QString& text) {
        for (const double scale : {1.0, 1.5, 2.0}) {
            // Glyphs are rounded differently at each scale.
            QFont scaled = control.font();
            scaled.setPixelSize(qRound(scaled.pixelSize() * scale));
            const double grown = QFontMetricsF(scaled).horizontalAdvance(text) * control.font().pixelSize() /
                                     scaled.pixelSize() -
                                 QFontMetrics(control.font()).horizontalAdvance(text);
            EXPECT_LE(needed + grown, control.width() + 0.5) << text.toStdString() << " at " << scale;
        }
        EXPECT_LE(control.fontMetrics().height(), control.height() + 1) << text.toStdString();
    }
};

TEST_F(PageAccess, TheInputEqualizerStandsWhereTheDesignPutsIt) {
    openInputEq();
    expectPlaces(inputEqControls, inputEqLabels, inputEqGroups);
}

TEST_F(PageAccess, TheChannelConfigurationStandsWhereTheDesignPutsIt) {
    actual.state.edit(FieldId::surroundOff, {}, 0, true);
    openAudioRouter();
    expectPlaces(audioRouterControls, audioRouterLabels, audioRouterGroups);
}

TEST_F(PageAccess, EveryRowOfTheInputEqualizerIsAControlOfItsOwnPlaceAndName) {
    openInputEq();
    expectControlsOfRows(*page, inputEqRows());
    expectRowsApart(inputEqRows());
}

TEST_F(PageAccess, EveryRowOfTheChannelConfigurationIsAControlOfItsOwnPlaceAndName) {
    openAudioRouter();
    expectControlsOfRows(*page, audioRouterRows());
    expectRowsApart(audioRouterRows());
}

TEST_F(PageAccess, TabGoesThroughTheInputEqualizerInReadingOrder) {
    openInputEq();
    std::vector<int> levels;
    for (int i = 0; i < 6; ++i) {
        levels.push_back(4051 + i);
        levels.push_back(4061 + i);
    }
    expectOrder(joined({{4041, 4042},
                        sequence(4001, 10),
                        sequence(4021, 10),
                        sequence(4011, 3),
                        sequence(4031, 3),
                        levels,
                        sequence(4071, 6),
                        sequence(4081, 6),
                        {4091, 4092, 4093}}));
}

TEST_F(PageAccess, TabGoesThroughTheChannelConfigurationInReadingOrder) {
    openAudioRouter();
    expectOrder(joined({sequence(5001, 8),
                        {5011, 5021, 5022, 5023, 5031, 5034, 5036, 5035, 5037},
                        sequence(5041, 4),
                        sequence(5051, 4),
                        {5038}}));
}

TEST_F(PageAccess, EveryControlOfTheInputEqualizerHasAName) {
    openInputEq();
    expectNames();
    EXPECT_EQ(slider(4010).accessibleName(), QStringLiteral("16000 Hz gain"));
    EXPECT_EQ(slider(4011).accessibleName(), QStringLiteral("Bass gain"));
}

TEST_F(PageAccess, EveryControlOfTheChannelConfigurationHasAName) {
    openAudioRouter();
    expectNames();
    EXPECT_EQ(list(5008).accessibleName(), QStringLiteral("Channel 8 source"));
}

TEST_F(PageAccess, EveryTextOfTheInputEqualizerFits) {
    std::map<int, const char*> longest{{4061, "-40.0"}, {4062, "-20.0"},  {4063, "40.0"},  {4064, "-20.0"},
                                       {4065, "100.0"}, {4066, "1000.0"}, {4081, "500"},   {4082, "-40.0"},
                                       {4083, "-60.0"}, {4084, "20.0"},   {4085, "-80.0"}, {4086, "-40.0"},
                                       {4092, "1000"},  {4093, "1000"}};
    for (int band = 0; band < 13; ++band) {
        longest[4021 + band] = "-20.0";
    }
    openInputEq();
    expectTextsFit(longest);
    click(control<CxSkinButton>(4041));
    expectTextsFit(longest);
}

TEST_F(PageAccess, EveryTextOfTheChannelConfigurationFits) {
    const std::map<int, const char*> longest{{5023, "30000"}, {5036, "100"},   {5037, "100"},
                                             {5051, "-29.9"}, {5052, "-29.9"}, {5053, "-Inf."},
                                             {5054, "-Inf."}};
    openAudioRouter();
    expectTextsFit(longest);
    click(control<CxSkinButton>(5031));
    click(control<CxSkinButton>(5031));
    ASSERT_EQ(control<CxSkinButton>(5031).text(), QStringLiteral("Disable Surround"));
    expectTextsFit(longest);
}

}  // namespace
}  // namespace tessavo::test
