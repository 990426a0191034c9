#include "app/record_mark.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QTest>
#include <array>
#include <cstdint>
#include <cstring>

#include "params/settings_file.h"
#include "support/frame_fixture.h"

// Sets whose record is not valid, and the numbers of the sets.

namespace tessavo::test {
namespace {

class InvalidSets : public FrameTest {
 protected:
    RecordMark& mark() { return control<RecordMark>(view_id::recordMark); }
    QString trouble(int set) { return setSelector().itemData(set, Qt::ToolTipRole).toString(); }
    /// Loads a file in which these sets, counted from 0, are not valid.
    void load(const std::vector<int>& zeros, const std::vector<int>& wrongWords) {
        ParameterStore store = tuning.store();
        for (ParameterSet& set : store.sets) {
            set.recordSize = parameterSetSize;
        }
        for (const int set : zeros) {
            const std::array<std::uint8_t, sizeof(ParameterSet)> nothing{};
            std::memcpy(&store.sets[static_cast<std::size_t>(set)], nothing.data(), nothing.size());
        }
        for (const int set : wrongWords) {
            store.sets[static_cast<std::size_t>(set)].recordSize = 7;
        }
        ASSERT_EQ(writeSettings(folder / "a.eqs", store), SaveVerdict::saved);
        ASSERT_TRUE(frame->openFile(pathIn("a.eqs")));
    }
    /// The mark as it is drawn, over the header.
    QColor markColour() {
        const QImage picture = frame->grab().toImage();
        return picture.pixelColor(mark().mapTo(frame.get(), QPoint(5, 12)) * picture.devicePixelRatio());
    }
};

TEST_F(InvalidSets, AreNotThereAtTheStart) {
    EXPECT_FALSE(mark().isVisible());
    EXPECT_EQ(mark().toolTip(), QString());
    for (int set = 0; set < 5; ++set) {
        EXPECT_EQ(trouble(set), QString()) << set;
    }
}

TEST_F(InvalidSets, AreMarkedBesideTheSelectorWithTheReason) {
    load({3}, {1});
    ASSERT_TRUE(mark().isVisible());
    const QString told = QStringLiteral(
        "Set 2 has no valid record: starts with 7 instead of 2120.\n"
        "Set 4 has no valid record: all zeros.\n"
        "A saved file does not open again while such a set is chosen.");
    EXPECT_EQ(mark().toolTip(), told);
    EXPECT_EQ(mark().accessibleDescription(), told);
    EXPECT_EQ(setSelector().accessibleDescription(), told) << "where the keyboard comes by";
    const QRect bounds(mark().mapTo(frame.get(), QPoint()), mark().size());
    const QRect selector(setSelector().mapTo(frame.get(), QPoint()), setSelector().size());
    EXPECT_FALSE(bounds.intersects(selector));
    EXPECT_LE(selector.left() - bounds.right(), 8);
    EXPECT_EQ(bounds.center().y(), selector.center().y());
    EXPECT_TRUE(frame->rect().contains(bounds));
    const QStringList reasons{QString(), QStringLiteral("No valid record: starts with 7 instead of 2120"),
                              QString(), QStringLiteral("No valid record: all zeros"), QString()};
    for (int set = 0; set < 5; ++set) {
        EXPECT_EQ(trouble(set), reasons[set]) << set;
    }
}

TEST_F(InvalidSets, TheMarkIsRedWhenTheChosenOneIsAmongThem) {
    load({3}, {});
    const QColor other = markColour();
    setSelector().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&setSelector(), Qt::Key_End);
    QTest::keyClick(&setSelector(), Qt::Key_Up);
    ASSERT_EQ(tuning.currentSet(), 3U);
    const QColor own = markColour();
    EXPECT_NE(own, other);
    EXPECT_GT(own.red(), own.blue() + 100);
    EXPECT_GT(own.red(), own.green() + 100);
    QTest::keyClick(&setSelector(), Qt::Key_Up);
    ASSERT_EQ(tuning.currentSet(), 2U);
    EXPECT_EQ(markColour(), other);
}

TEST_F(InvalidSets, StayMarkedThroughEditsAndTheReasonFollows) {
    load({3}, {});
    choose(setSelector(), 3);
    type(setName(), QStringLiteral("New"));
    ASSERT_TRUE(mark().isVisible());
    EXPECT_TRUE(mark().toolTip().contains(QStringLiteral("Set 4 has no valid record: starts with 0")))
        << mark().toolTip().toStdString();
    choose(setSelector(), 0);
    load({3}, {});
    choose(setSelector(), 3);
    ASSERT_TRUE(mark().toolTip().contains(QStringLiteral("Set 4 has no valid record: all zeros")));
    tuning.setVolume(3.0F, true);
    // A page has edited; the words are looked up when they are asked for.
    QHelpEvent asked(QEvent::ToolTip, QPoint(8, 8), mark().mapToGlobal(QPoint(8, 8)));
    QApplication::sendEvent(&mark(), &asked);
    EXPECT_TRUE(mark().toolTip().contains(QStringLiteral("Set 4 has no valid record: starts with 0")))
        << mark().toolTip().toStdString();
}

TEST_F(InvalidSets, AreNoLongerMarkedOnceAFileBringsValidOnes) {
    load({3}, {4});
    ASSERT_TRUE(mark().isVisible());
    load({}, {4});
    EXPECT_TRUE(mark().isVisible());
    EXPECT_EQ(trouble(3), QString());
    load({}, {});
    EXPECT_FALSE(mark().isVisible());
    EXPECT_EQ(setSelector().accessibleDescription(), QString());
    for (int set = 0; set < 5; ++set) {
        EXPECT_EQ(trouble(set), QString()) << set;
    }
}

// ---- numbers

TEST_F(InvalidSets, TheListDrawsEverySetsNumberAndItsTextStaysTheName) {
    type(setName(), QString());
    QTest::keyClick(&setName(), Qt::Key_Tab);
    ASSERT_EQ(setSelector().itemText(0), QString());
    const QStringList names{QString(), QStringLiteral("Type 2"), QStringLiteral("Type 3"),
                            QStringLiteral("Type 4"), QStringLiteral("Type 5")};
    for (int set = 0; set < 5; ++set) {
        EXPECT_EQ(setSelector().itemText(set), names[set]);
        EXPECT_EQ(setSelector().itemData(set, Qt::AccessibleTextRole).toString(),
                  QString::number(set + 1) + QLatin1Char(' ') + names[set]);
    }
    // A list of entries without a name shows nothing but the numbers.
    SkinComboBox& list = setSelector();
    for (int set = 0; set < 5; ++set) {
        list.setItemText(set, {});
    }
    QTest::mouseClick(&list, Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return list.view()->isVisible(); }));
    const QImage opened = list.view()->viewport()->grab().toImage();
    std::vector<QImage> rows;
    for (int set = 0; set < 5; ++set) {
        const QRect row = list.view()->visualRect(list.model()->index(set, 0));
        const double scale = opened.devicePixelRatio();
        rows.push_back(opened.copy(QRect(qRound(row.left() * scale), qRound(row.top() * scale),
                                         qRound(row.width() * scale), qRound(row.height() * scale))));
    }
    const auto inked = [](const QImage& row) {
        int points = 0;
        for (int y = 0; y < row.height(); ++y) {
            for (int x = 0; x < row.width(); ++x) {
                points += row.pixelColor(x, y).lightness() > 120 ? 1 : 0;
            }
        }
        return points;
    };
    for (std::size_t set = 1; set < 5; ++set) {
        EXPECT_GT(inked(rows[set]), 5) << set;
        for (std::size_t other = 1; other < set; ++other) {
            EXPECT_NE(rows[set], rows[other]) << set << " and " << other;
        }
    }
    EXPECT_GT(inked(rows[0]), 5);
    list.hidePopup();
}

TEST_F(InvalidSets, TheClosedListDrawsTheNumberToo) {
    SkinComboBox& list = setSelector();
    std::vector<QImage> bodies;
    for (int set = 0; set < 5; ++set) {
        list.setItemText(set, {});
    }
    for (int set = 0; set < 5; ++set) {
        list.setCurrentIndex(set);
        bodies.push_back(list.grab().toImage());
        for (int other = 0; other < set; ++other) {
            EXPECT_NE(bodies[static_cast<std::size_t>(set)], bodies[static_cast<std::size_t>(other)]);
        }
    }
}

}  // namespace
}  // namespace tessavo::test
