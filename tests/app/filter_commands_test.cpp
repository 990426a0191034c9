#include "app/filter_commands.h"

#include <gmock/gmock.h>

#include "app/import_filters_fixture.h"
#include "filtertext/filter_export.h"
#include "pages/form/channel_titles.h"

// "Export Filters...", and what it gives to an import.

namespace tessavo::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class ExportingFilters : public ImportTest {
 protected:
    void exportTo(const std::filesystem::path& path) {
        dialogs.answer = path;
        clickMenu(QStringLiteral("Tools"), QStringLiteral("Export Filters..."));
        settleEvents();
    }
    static std::string contentOf(const std::filesystem::path& path) {
        const std::vector<std::uint8_t> bytes = readFile(path);
        return {bytes.begin(), bytes.end()};
    }
    [[nodiscard]] std::size_t filesInFolder() const {
        std::size_t count = 0;
        for ([[maybe_unused]] const auto& each : std::filesystem::directory_iterator(folder.path())) {
            ++count;
        }
        return count;
    }
};

TEST_F(ExportingFilters, WritesTheChosenChannelInTheFormThatTheEndingTells) {
    const auto before = state();
    const std::pair<const char*, ExportForm> forms[]{{"a.txt", ExportForm::text},
                                                     {"a.csv", ExportForm::csv},
                                                     {"a.yml", ExportForm::yaml},
                                                     {"a.YAML", ExportForm::yaml},
                                                     {"a.dat", ExportForm::text}};
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        tuning.setSelectionMask(selectionBit({position}));
        const std::string title = "Channel " + std::to_string(position + 1);
        for (const auto& [name, form] : forms) {
            writeFile(folder / name, std::vector<std::uint8_t>(100000, 'x'));
            exportTo(folder / name);
            EXPECT_EQ(contentOf(folder / name),
                      exportFilters(channelAt(position), form, {.title = "Filled, " + title}))
                << name << " is the new text and no byte of the old one";
            EXPECT_EQ(noticeText(), "The filters of " + title + " are in " + name);
        }
    }
    EXPECT_EQ(filesInFolder(), std::size(forms) + (std::filesystem::exists(folder / "profile.ini") ? 1 : 0));
    EXPECT_TRUE(same(*before, *state()));
    ASSERT_FALSE(dialogs.asked.empty());
    EXPECT_TRUE(dialogs.asked[0].save);
    for (const char* pattern : {"|*.txt|", "|*.csv|", "|*.yml|"}) {
        EXPECT_THAT(dialogs.asked[0].filter, HasSubstr(pattern));
    }
    EXPECT_EQ(dialogs.localeResets, static_cast<int>(dialogs.asked.size()));
}

TEST_F(ExportingFilters, GivesAnImportTheSameBands) {
    tuning.setSelectionMask(selectionBit({2}));
    exportTo(folder / "third.txt");
    importWith([&](ImportFiltersDialog& dialog) {
        clickEntry(combo(dialog, "Channel"), 5);
        dialogs.answer = folder / "third.txt";
        QTest::keyClick(&dialog, Qt::Key_O, Qt::ControlModifier);
        apply(dialog);
    });
    for (std::size_t band = 0; band < bandCount; ++band) {
        const EqBandParams& from = channelAt(2).bands[band];
        const EqBandParams& to = channelAt(5).bands[band];
        EXPECT_EQ(to.off, from.off) << band;
        EXPECT_EQ(to.type, from.type) << band;
        EXPECT_EQ(to.frequencyHz, from.frequencyHz) << band;
        EXPECT_EQ(to.gainDb, from.gainDb) << band;
        EXPECT_EQ(to.q, from.q) << band;
    }
}

TEST_F(ExportingFilters, TellsWhatFailsAndLeavesNothingBehind) {
    const std::size_t before = filesInFolder();
    exportTo(folder / "no such folder" / "a.txt");
    EXPECT_THAT(noticeText(), HasSubstr("a.txt could not be written: "));
    std::filesystem::create_directory(folder / "b.txt");
    exportTo(folder / "b.txt");
    EXPECT_THAT(noticeText(), HasSubstr("b.txt could not be written: "));
    EXPECT_TRUE(std::filesystem::is_directory(folder / "b.txt"));
    EXPECT_EQ(filesInFolder(), before + 1);
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(ExportingFilters, NeedsAChannelAndAFile) {
    const std::size_t before = filesInFolder();
    dialogs.answer.reset();
    clickMenu(QStringLiteral("Tools"), QStringLiteral("Export Filters..."));
    EXPECT_THAT(dialogs.asked, SizeIs(1));
    EXPECT_EQ(filesInFolder(), before) << "cancelled";
    tuning.setSelectionMask(0);
    exportTo(folder / "a.txt");
    EXPECT_EQ(noticeText(), "Export Filters: no channel is chosen");
    EXPECT_THAT(dialogs.asked, SizeIs(1));
    EXPECT_EQ(filesInFolder(), before);
}

}  // namespace
}  // namespace tessavo::test
