#include <QAccessible>

#include "controls/theme.h"
#include "pages/output/output_eq_fixture.h"
#include "pages/output/output_group.h"

namespace tessavo::test {
namespace {

const auto playsNotInverted = QStringLiteral("Plays as if not checked");

/// Whether note, tooltip, words for screen readers and the corner on the screen are there, or none of them.
template <typename Control>
bool isWhole(Control& control, const QString& note) {
    const QString spoken = QAccessible::queryAccessibleInterface(&control)->text(QAccessible::Description);
    const QString sentence = QString(note).replace(QLatin1Char('\n'), QLatin1String("; "));
    const bool there = !note.isEmpty();
    return control.markNote() == note && (!there || control.toolTip().contains(note)) &&
           (!there || spoken.contains(sentence));
}

class DisplayMarks : public OutputEqTest {
 protected:
    QString note(int id) {
        if (auto* box = page->findChild<SkinCheckBox*>(QStringLiteral("id%1").arg(id))) {
            EXPECT_TRUE(isWhole(*box, box->markNote())) << id;
            return box->markNote();
        }
        EXPECT_TRUE(isWhole(list(id), list(id).markNote())) << id;
        return list(id).markNote();
    }
    CxSkinButton& allFilters() { return control<CxSkinButton>(allFiltersButton); }
    /// Reads a set in which every phase plays as it is, over a record that inverts every one.
    void readUninvertedOverInverted() {
        Bytes store = actual.store();
        Bytes image = actual.image();
        for (std::size_t channel = 0; channel < 8; ++channel) {
            store[recordChannelOffset(channel) + 153] = 1;
            image[imageBlockOffset(channel) + 9] = 0;
        }
        actual.load(store);
        receive(image);
    }
    void receive(const Bytes& image) {
        actual.state.replaceImage(recordOf<ParameterImage>(image));
        actual.state.imageToSet();
        page->refresh();
    }
    /// Number of a switch or list, and its byte's place in the channel's parameters.
    static std::vector<std::pair<int, std::size_t>> codeControls() {
        std::vector<std::pair<int, std::size_t>> all{{invertPhaseBox, 153}};
        for (std::size_t b = 0; b < 8; ++b) {
            all.emplace_back(bandControls[b].enabled, 16 * b + 12);
            all.emplace_back(bandControls[b].type, 16 * b);
        }
        for (std::size_t k = 0; k < 2; ++k) {
            all.emplace_back(crossoverControls[k].enabled, 128 + 6 * k);
            all.emplace_back(crossoverControls[k].kind, 129 + 6 * k);
            all.emplace_back(crossoverControls[k].order, 132 + 6 * k);
        }
        return all;
    }
};

TEST_F(DisplayMarks, NoSwitchOrListOfAFreshPageWearsOne) {
    for (const auto* box : page->findChildren<SkinCheckBox*>()) {
        EXPECT_EQ(box->markNote(), QString()) << box->objectName().toStdString();
    }
    for (const auto* box : page->findChildren<SkinComboBox*>()) {
        EXPECT_EQ(box->markNote(), QString()) << box->objectName().toStdString();
    }
}

TEST_F(DisplayMarks, APhaseThatAReadDidNotClearTellsWhatPlaysUntilItIsEdited) {
    readUninvertedOverInverted();
    for (std::size_t position = 0; position < 8; ++position) {
        selectChannel(position);
        EXPECT_TRUE(check(invertPhaseBox).isChecked());
        EXPECT_EQ(note(invertPhaseBox), playsNotInverted) << position;
    }
    click(check(invertPhaseBox));
    EXPECT_EQ(note(invertPhaseBox), QString());
    click(check(invertPhaseBox));
    EXPECT_EQ(note(invertPhaseBox), QString());
    EXPECT_EQ(check(invertPhaseBox).toolTip(), QString());
    selectChannel(3);
    EXPECT_EQ(note(invertPhaseBox), playsNotInverted) << "the other channels play as before";
}

TEST_F(DisplayMarks, SeveralChannelsTellOfEachWhosePhasePlaysOtherwise) {
    readUninvertedOverInverted();
    selectChannel(6);
    click(check(invertPhaseBox));
    click(check(invertPhaseBox));
    selectSeveral({2, 6});
    EXPECT_EQ(note(invertPhaseBox), QStringLiteral("Channel 3: ") + playsNotInverted);
    EXPECT_FALSE(check(invertPhaseBox).isMixed()) << "the records are alike";
    click(check(channelChecks[6]));
    EXPECT_EQ(note(invertPhaseBox), playsNotInverted);
    click(check(invertPhaseBox));
    EXPECT_EQ(note(invertPhaseBox), QString());
}

TEST_F(DisplayMarks, AMarkAndAMixedValueStandBesideEachOtherInTheTooltip) {
    readUninvertedOverInverted();
    selectChannel(6);
    click(check(invertPhaseBox));
    selectSeveral({2, 6});
    EXPECT_TRUE(check(invertPhaseBox).isMixed());
    EXPECT_EQ(note(invertPhaseBox), QStringLiteral("Channel 3: ") + playsNotInverted);
    EXPECT_TRUE(check(invertPhaseBox).toolTip().contains(QLatin1String("Mixed: ")));
    click(check(invertPhaseBox));
    EXPECT_FALSE(check(invertPhaseBox).isMixed());
    EXPECT_EQ(check(invertPhaseBox).toolTip(), QString());
    EXPECT_EQ(check(invertPhaseBox).accessibleDescription(), QString());
}

TEST_F(DisplayMarks, EverySwitchAndListTellsACodeThatItHasNoWordFor) {
    for (const auto& [id, place] : codeControls()) {
        Bytes store = actual.store();
        const std::uint8_t before = store[recordChannelOffset(pageChannels[0]) + place];
        store[recordChannelOffset(pageChannels[0]) + place] = 9;
        actual.load(store);
        page->refresh();
        for (const auto& [other, otherPlace] : codeControls()) {
            EXPECT_EQ(note(other), other == id ? QStringLiteral("In force: code 9") : QString())
                << id << ' ' << other;
        }
        store[recordChannelOffset(pageChannels[0]) + place] = before;
        actual.load(store);
        page->refresh();
        EXPECT_EQ(note(id), QString());
    }
    Bytes store = actual.store();
    store[recordLimiterOffset(pageChannels[0]) + 20] = 9;
    actual.load(store);
    page->refresh();
    EXPECT_EQ(note(limiterDisabledBox), QStringLiteral("In force: code 9"));
}

TEST_F(DisplayMarks, APhaseByteOfAReadThatIsNoSwitchIsTold) {
    Bytes image = actual.image();
    image[imageBlockOffset(pageChannels[0]) + 9] = 5;
    receive(image);
    EXPECT_TRUE(check(invertPhaseBox).isChecked());
    EXPECT_EQ(note(invertPhaseBox), QStringLiteral("Plays code 5"));
}

TEST_F(DisplayMarks, TheButtonOfAllFiltersTellsWhenTheFiltersAreNotAsItTakesThem) {
    const auto alreadyOff = QStringLiteral("All filters are off already");
    EXPECT_TRUE(isWhole(allFilters(), alreadyOff)) << "a fresh channel";
    click(check(bandControls[2].enabled));
    EXPECT_TRUE(isWhole(allFilters(), {}));
    click(allFilters());
    EXPECT_EQ(allFilters().text(), QStringLiteral("Enable All Filters"));
    EXPECT_TRUE(isWhole(allFilters(), {}));
    click(check(bandControls[0].enabled));
    click(check(bandControls[7].enabled));
    EXPECT_EQ(allFilters().text(), QStringLiteral("Enable All Filters")) << "it counts its own presses";
    EXPECT_TRUE(isWhole(allFilters(), QStringLiteral("Not all filters are off: on are 1, 8")));
    selectChannel(4);
    EXPECT_TRUE(isWhole(allFilters(), {}));
    selectChannel(0);
    EXPECT_TRUE(isWhole(allFilters(), QStringLiteral("Not all filters are off: on are 1, 8")));
    click(allFilters());
    EXPECT_EQ(allFilters().text(), QStringLiteral("Disable All Filters"));
    EXPECT_TRUE(isWhole(allFilters(), {}));
    Bytes store = actual.store();
    for (std::size_t band = 0; band < 8; ++band) {
        store[recordChannelOffset(pageChannels[0]) + 16 * band + 12] = 1;
    }
    actual.load(store);
    page->refresh();
    EXPECT_TRUE(isWhole(allFilters(), alreadyOff));
    selectSeveral({});
    EXPECT_TRUE(isWhole(allFilters(), {})) << "no channel: nothing to say";
}

TEST_F(DisplayMarks, EveryMarkIsSeenAndMovesNothing) {
    const auto corner = [](QWidget& control, QPoint place) {
        const QImage picture = control.grab().toImage();
        const double scale = picture.devicePixelRatio();
        return picture.pixelColor(qRound((place.x() + 0.5) * scale), qRound((place.y() + 0.5) * scale));
    };
    const QColor blue = QColor::fromRgb(theme::lightBlue);
    SkinComboBox& type = list(bandControls[0].type);
    const QRect before = type.geometry();
    for (auto* control : std::initializer_list<QWidget*>{&type, &allFilters()}) {
        const QPoint place(control->width() - 4, 2);
        const auto mark = [&](const QString& note) {
            control == &type ? type.setMark(note) : allFilters().setMark(note);
        };
        mark({});
        EXPECT_NE(corner(*control, place), blue);
        mark(QStringLiteral("note"));
        EXPECT_EQ(corner(*control, place), blue);
    }
    SkinCheckBox& phase = check(invertPhaseBox);
    const QPoint place(16, (phase.height() - 22) / 2 + 5);
    for (const bool checked : {false, true}) {
        phase.setChecked(checked);
        phase.setMark({});
        const QColor plain = corner(phase, place);
        phase.setMark(QStringLiteral("note"));
        EXPECT_NE(corner(phase, place), plain);
        EXPECT_EQ(corner(phase, place), checked ? QColor(Qt::white) : blue);
    }
    EXPECT_EQ(type.geometry(), before);
}

TEST_F(DisplayMarks, EveryGroupListTellsACodeWithoutALetterAndWhatPlays) {
    delete page;
    showPage(std::make_unique<COutputGroup>(actual.state));
    constexpr std::array<std::size_t, 8> sliderChannels{2, 4, 6, 0, 3, 5, 7, 1};
    for (const auto& [first, place] : {std::pair{1157, 148}, {1165, 164}}) {
        for (int at = 0; at < 8; ++at) {
            Bytes store = actual.store();
            const std::size_t offset = recordChannelOffset(sliderChannels.at(static_cast<std::size_t>(at))) +
                                       static_cast<std::size_t>(place);
            const auto before = readAt<std::uint32_t>(store, offset);
            EXPECT_EQ(note(first + at), QString());
            writeAt(store, offset, std::uint32_t{258});
            actual.load(store);
            page->refresh();
            EXPECT_EQ(note(first + at), QStringLiteral("In force: code 258. Plays C")) << first + at;
            writeAt(store, offset, before);
            actual.load(store);
            page->refresh();
            EXPECT_EQ(note(first + at), QString());
        }
    }
}

}  // namespace
}  // namespace tessavo::test
