#pragma once

#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <algorithm>
#include <cstring>

#include "app/copies_fixture.h"
#include "controls/color_control.h"
#include "controls/skin_check_box.h"
#include "controls/theme.h"
#include "copies/backup_folder.h"
#include "copies/known_backups.h"
#include "params/image_digest.h"

namespace tessavo::test {

inline constexpr const char* unknownPlays = "What the target plays now is not known.";
inline constexpr const char* twoPlays = "The target plays the copy of set 2 now.";

/// What the backup holds, which differs from what the target holds.
inline ImageBytes backedUp(std::size_t set) {
    ImageBytes bytes = factoryImage();
    bytes.at(parameterImageSize - 1) = static_cast<std::uint8_t>(0x90 + set);
    return bytes;
}

/// "Restore Target..." with a backup that the data folder knows.
class RestoreTarget : public CopiesTest {
 protected:
    RestoreTarget() {
        place = folder / "car";
        makeBackup(place);
        KnownBackups(knownBackupsFolder(data)).add(place);
    }

    /// \param damaged a set that came with a wrong digest; 9 for none
    static void makeBackup(const std::filesystem::path& place, std::size_t damaged = 9) {
        TargetCopy copy;
        for (SetCopy& set : copy.sets) {
            const ImageBytes bytes = backedUp(set.targetSet);
            const Md5Digest digest = md5Image(imageOf(bytes));
            std::memcpy(set.reply.data(), bytes.data(), bytes.size());
            std::memcpy(set.reply.data() + reply_layout::imageDigest, digest.data(), digest.size());
            set.reply[reply_layout::imageDigest] ^= set.targetSet == damaged ? 1 : 0;
            set.state = set.targetSet == damaged ? SetState::wrongDigest : SetState::sound;
        }
        copy.versions = TargetVersions{};
        copy.port = "inside";
        copy.time = WallTime(std::chrono::seconds(1'790'000'000));
        ASSERT_EQ(writeBackup(place, copy), "");
    }

    /// Opens the dialog from the menu and does this once the copies are listed. Returns when it is closed.
    void restore(const std::function<void(QDialog&)>& act) {
        bool acted = false;
        whenOpen(dialogName, [&](QDialog& open) {
            if (listOf(open).topLevelItemCount() == 0) {
                return false;
            }
            acted = true;
            act(open);
            return true;
        });
        clickTool(QStringLiteral("Restore Target..."));
        EXPECT_TRUE(acted);
    }
    /// Ticks that the amplifiers are off, and restores. Returns at the end; the dialog stays open.
    static void start(QDialog& open) {
        clickCheck(open, QStringLiteral("The amplifiers are off or turned down"));
        click(open, QStringLiteral("Restore"));
    }
    /// The same, and the window is asked to close in the second exchange, which it does not do at once.
    void startAndCloseTheWindow(QDialog& open) {
        int begun = 0;
        QObject::connect(
            &link, &CommLink::exchangeBegan, &open,
            [&] {
                if (++begun == 2) {
                    EXPECT_FALSE(frame->close());
                }
            },
            Qt::QueuedConnection);
        start(open);
        EXPECT_GE(begun, 2);
    }
    static void close(QDialog& open) { click(open, QStringLiteral("Close")); }

    static QTreeWidget& listOf(QDialog& open) { return *open.findChild<QTreeWidget*>(); }
    static SkinCheckBox& check(QDialog& open, const QString& text) {
        for (auto* each : open.findChildren<SkinCheckBox*>()) {
            if (each->text() == text) {
                return *each;
            }
        }
        throw std::logic_error("no check box " + text.toStdString());
    }
    static void clickCheck(QDialog& open, const QString& text) {
        SkinCheckBox& box = check(open, text);
        QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(10, box.height() / 2));
    }
    static QString setText(int set) {
        return set == 0 ? QStringLiteral("Default Set") : QStringLiteral("Set %1").arg(set);
    }
    static void onlySets(QDialog& open, const std::vector<int>& wanted) {
        for (int set = 0; set <= 5; ++set) {
            const bool isWanted = std::ranges::count(wanted, set) > 0;
            if (check(open, setText(set)).isChecked() != isWanted) {
                clickCheck(open, setText(set));
            }
        }
    }
    static const CColorControl& message(const QDialog& open) {
        return *open.findChild<CColorControl*>(QStringLiteral("message"));
    }
    static void expectRed(const QDialog& open, const QString& text) {
        EXPECT_EQ(message(open).text(), text);
        EXPECT_TRUE(message(open).isVisible());
        EXPECT_EQ(message(open).textColor(), QColor::fromRgb(theme::trouble));
    }
    /// Which sets of the target hold the backup's image; the others hold what they held at first.
    [[nodiscard]] std::vector<int> restoredSets() {
        std::vector<int> restored;
        const TargetMemory now = memory();
        for (int set = 0; set <= 5; ++set) {
            const auto index = static_cast<std::size_t>(set);
            if (now.sets.at(index) == backedUp(index)) {
                restored.push_back(set);
            } else {
                EXPECT_EQ(now.sets.at(index), firstImage(index))
                    << "half of one and half of the other " << set;
            }
        }
        return restored;
    }

    const QString dialogName = QStringLiteral("restore");
    std::filesystem::path place;
};

}  // namespace tessavo::test
