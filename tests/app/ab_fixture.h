#pragma once

#include <QMenu>
#include <QTest>
#include <atomic>
#include <cstring>

#include "app/ab_commands.h"
#include "app/undo_fixture.h"
#include "params/volume_gain_table.h"

namespace tessavo::test {

/// The whole window with a target inside the program. All channels are selected and have a source.
class AbTest : public UndoTest {
 protected:
    AbTest() {
        for (std::uint8_t c = 0; c < channelCount; ++c) {
            tuning.setRouterSource({c}, 1);
        }
        tuning.setSelectionMask(0xFF);
        setVolume(3.0F);
        // The target stays the same; what is counted belongs to this test.
        QObject::connect(&line, &CommLink::workerState, &line, [this](LiveWorker::State state) {
            rounds += state == LiveWorker::State::confirmed ? 1 : 0;
        });
    }

    AbCommands& sides() { return frame->abCommands(); }
    void storeKey() { press(Qt::Key_F8, {}); }
    void switchKey() { press(Qt::Key_F9, {}); }
    void clickLevelMatched() {
        clickMenu(QStringLiteral("Tools"), QStringLiteral("Level Matched"));
        settleEvents();
    }
    /// The entries for the two sides: to store, to switch, "Level Matched". They are the last ones.
    QList<QAction*> sideEntries() { return menu(QStringLiteral("Tools"))->actions().last(3); }
    QAction& levelMatched() { return *sideEntries().value(2); }
    /// One step.
    void setVolume(float volumeDb) {
        tuning.setVolume(volumeDb, true);
        commands().settle();
    }
    /// A plays 3 dB, B, which is heard, `volumeDb`.
    void storeBoth(float volumeDb) {
        storeKey();
        switchKey();
        setVolume(volumeDb);
        storeKey();
    }
    [[nodiscard]] std::string notice() {
        const Notice* standing = frame->statusLine().noticeLine().standing();
        return standing == nullptr ? "" : standing->text.toStdString();
    }
    [[nodiscard]] std::string targetWords() { return frame->statusLine().target().state.toStdString(); }
    /// The image with this volume in every channel.
    [[nodiscard]] ParameterImage imageWith(float levelDb) const {
        ParameterImage image = tuning.image();
        for (ChannelImageBlock& channel : image.channels) {
            channel.gainWord = gainWordOf(levelDb, 0.0F);
        }
        return image;
    }
    void goLive() {
        ASSERT_TRUE(line.startWorker());
        click(eqMode());
        ASSERT_TRUE(targetPlays(line.played().of(tuning.image())));
        settleEvents();
        rounds = 0;
    }

    int rounds = 0;  ///< that the target has confirmed
};

}  // namespace tessavo::test
