#include <array>
#include <random>
#include <set>
#include <string>
#include <tuple>

#include "app/restore_fixture.h"

// "Restore Target..." of a target that fails: what the dialog says of each set beside what the target then holds.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;

/// A fault of one of the four exchanges of set 2, with set 1 done before it and set 3 behind it.
struct FaultCase {
    int exchange;
    const char* fault;
    bool setTwoIsWritten;
    const char* plays;
    const char* state;  ///< of set 2
    friend void PrintTo(const FaultCase& value, std::ostream* out) {
        *out << value.fault << " in exchange " << value.exchange;
    }
};

class RestoreFault : public RestoreTarget, public ::testing::WithParamInterface<FaultCase> {};

TEST_P(RestoreFault, StopsThereAndSaysWhatIsDoneAndWhatPlays) {
    const FaultCase& wanted = GetParam();
    breakExchange(4 + wanted.exchange, wanted.fault);
    restore([&](QDialog& open) {
        onlySets(open, {1, 2, 3});
        start(open);
        const QString texts = textsOf(open);
        EXPECT_EQ(texts.count(QStringLiteral("Restored, read back and compared")),
                  QByteArray(wanted.state).startsWith("Restored") ? 2 : 1)
            << texts.toStdString();
        EXPECT_TRUE(texts.contains(QLatin1String(wanted.state))) << texts.toStdString();
        EXPECT_TRUE(texts.contains(QStringLiteral("Unchanged"))) << "set 3";
        expectRed(open, QLatin1String(wanted.plays));
        EXPECT_TRUE(buttonOf(open, QStringLiteral("Send Current Set")).isVisible());
        close(open);
    });
    if (wanted.setTwoIsWritten) {
        EXPECT_THAT(restoredSets(), ElementsAre(1, 2));
    } else {
        EXPECT_THAT(restoredSets(), ElementsAre(1));
    }
    EXPECT_FALSE(link.confirmedImage().has_value());
}

INSTANTIATE_TEST_SUITE_P(
    All, RestoreFault,
    ::testing::Values(FaultCase{1, "negative=1", false, unknownPlays, "Unchanged"},
                      FaultCase{1, "silence=1", false, unknownPlays, "Unchanged"},
                      FaultCase{1, "no-request", false, unknownPlays, "Unchanged"},
                      FaultCase{1, "wrong-request=9", false, unknownPlays, "Unchanged"},
                      FaultCase{1, "no-disconnect", false, unknownPlays, "Unchanged"},
                      FaultCase{1, "junk=5", false, unknownPlays, "Unchanged"},
                      FaultCase{1, "cable=2000", false, unknownPlays, "Unchanged"},
                      FaultCase{2, "wrong-confirmation", false, unknownPlays, "Unchanged"},
                      FaultCase{2, "damaged-reply", false, unknownPlays, "Unchanged"},
                      FaultCase{2, "wrong-complement", false, unknownPlays, "Unchanged"},
                      FaultCase{2, "truncated-reply", false, unknownPlays, "Unchanged"},
                      FaultCase{2, "late=10500", false, unknownPlays, "Unchanged"},
                      FaultCase{3, "silence=1", false, twoPlays, "Unchanged"},
                      FaultCase{3, "junk=5", true, twoPlays, "Restored, read back and compared"},
                      FaultCase{3, "negative=1", false, twoPlays, "Unchanged"},
                      FaultCase{3, "no-disconnect", true, twoPlays, "Restored, read back and compared"},
                      FaultCase{4, "damaged-reply", true, twoPlays, "Saved, but not compared with the copy"},
                      FaultCase{4, "wrong-digest", true, twoPlays, "Saved, but not compared with the copy"},
                      FaultCase{4, "cable=3000", true, twoPlays, "Saved, but not compared with the copy"}));

/// The cable is out after some of the bytes of one of the four exchanges of set 1, and in again for the next one.
class RestoreCut : public RestoreTarget, public ::testing::WithParamInterface<std::tuple<int, int>> {
 protected:
    /// What the dialog says of set 1, which stands behind its name.
    [[nodiscard]] static QString stateOfFirst(const QDialog& open) {
        static const std::set<QString> states{
            QStringLiteral("Unchanged"), QStringLiteral("Saved, but not compared with the copy"),
            QStringLiteral("Restored, read back and compared"),
            QStringLiteral("Not known, it holds what it held before or the whole copy")};
        for (const QString& text : textsOf(open).split(QLatin1Char('\n'))) {
            if (states.contains(text)) {
                return text;
            }
        }
        return {};
    }
};

TEST_P(RestoreCut, LeavesASetWhollyOldOrWhollyNewAndSaysWhich) {
    const auto [exchange, round] = GetParam();
    // Request byte, block, answer, a reply where there is one, disconnect and its answer.
    static constexpr std::array<std::uint64_t, 4> sizes{4105, 6158, 137, 6158};
    std::mt19937 random(static_cast<unsigned>(100 * exchange + round));
    const auto bytes = 1 + random() % (sizes.at(static_cast<std::size_t>(exchange - 1)) - 1);
    SCOPED_TRACE(bytes);
    breakExchange(exchange, "cable=" + std::to_string(bytes));
    QString first;
    QString plays;
    restore([&](QDialog& open) {
        onlySets(open, {1, 3});
        start(open);
        first = stateOfFirst(open);
        plays = message(open).text();
        expectRed(open, plays);
        EXPECT_TRUE(buttonOf(open, QStringLiteral("Send Current Set")).isVisible());
        close(open);
    });
    const bool isNew = memory().sets.at(1) == backedUp(1);
    // It asks the set itself what it holds, so that nothing stays open here.
    EXPECT_EQ(first, exchange < 3    ? QStringLiteral("Unchanged")
                     : exchange == 4 ? QStringLiteral("Saved, but not compared with the copy")
                     : isNew         ? QStringLiteral("Restored, read back and compared")
                                     : QStringLiteral("Unchanged"));
    if (isNew) {
        EXPECT_THAT(restoredSets(), ElementsAre(1));
    } else {
        EXPECT_TRUE(restoredSets().empty());
        EXPECT_LT(exchange, 4);
    }
    if (plays != QLatin1String(unknownPlays)) {
        EXPECT_EQ(plays, QStringLiteral("The target plays the copy of set 1 now."));
        EXPECT_EQ(memory().live, backedUp(1));
    }
    EXPECT_EQ(plays == QLatin1String(unknownPlays), exchange < 3);
}

INSTANTIATE_TEST_SUITE_P(All, RestoreCut, ::testing::Combine(::testing::Range(1, 5), ::testing::Range(0, 5)));

}  // namespace
}  // namespace tessavo::test
