#pragma once

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/undo_commands.h"
#include "controls/bitmap_slider.h"
#include "controls/number_edit.h"
#include "controls/spin_edit.h"
#include "params/tuning_snapshot.h"
#include "support/frame_fixture.h"
#include "target/in_process_line.h"

namespace tessavo::test {

/// The whole window with the program's own pages, its history, and a target inside the program. A person uses
/// it with mouse and keyboard.
class UndoTest : public FrameTest {
 protected:
    UndoTest();
    ~UndoTest() override;

    /// Makes the window once more, with the same tuning and history.
    /// \param dataFolder of recovery file and earlier versions; none are kept when empty
    void makeWindow(const std::filesystem::path& dataFolder = {});

    UndoCommands& commands() { return frame->undoCommands(); }
    QWidget& page(Page which);
    /// A control of a page by its number, on its page, which comes to the front.
    template <typename Control>
    Control& on(Page which, int id) {
        if (tabs().currentIndex() != static_cast<int>(which)) {
            clickTab(static_cast<int>(which));
        }
        return controlOf<Control>(page(which), id);
    }

    // What a person does; the window has handled each before it returns.

    /// Takes a slider's cap and moves it by this many pixels; the button stays down.
    void hold(CBitmapSlider& slider, int pixels);
    void moveOn(CBitmapSlider& slider, int pixels);
    void letGo(CBitmapSlider& slider);
    void drag(CBitmapSlider& slider, int pixels);
    void click(QWidget& control);
    void key(QWidget& control, Qt::Key code, Qt::KeyboardModifiers modifiers = {});
    void turnWheel(QWidget& control, int notches);
    void typeInto(QLineEdit& box, const QString& text);
    void press(Qt::Key code, Qt::KeyboardModifiers modifiers);
    void undoKey() { press(Qt::Key_Z, Qt::ControlModifier); }
    void redoKey() { press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier); }
    static void settleEvents();

    /// A person chooses an entry of a menu and does something with the dialog that it opens, which closes at the latest then.
    template <typename Dialog>
    void withDialog(const QString& menu, const QString& item, std::function<void(Dialog&)> act) {
        QTimer timer;
        bool seen = false;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&seen, &timer, act = std::move(act)] {
            auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
            if (dialog != nullptr && dialog->isActiveWindow()) {
                timer.stop();
                seen = true;
                act(*dialog);
                if (dialog->isVisible()) {
                    dialog->reject();
                }
            }
        });
        timer.start(1);
        clickMenu(menu, item);
        EXPECT_TRUE(seen);
        // As a desktop does.
        frame->activateWindow();
        EXPECT_TRUE(QTest::qWaitFor([this] { return frame->isActiveWindow(); }));
        settleEvents();
    }

    /// How long a test waits for what the target does, in ms.
    static constexpr int targetPatienceMs = 60000;
    [[nodiscard]] static bool holds(const ImageBytes& bytes, const ParameterImage& image) {
        return std::memcmp(bytes.data(), &image, bytes.size()) == 0;
    }
    /// Waits until the target has confirmed exactly this image and nothing is under way.
    [[nodiscard]] bool targetPlays(const ParameterImage& image) {
        return QTest::qWaitFor(
            [&] {
                return holds(target.memory().live, image) && line.imageIsConfirmed() &&
                       !tuning.updatePending() && !line.liveTransferRuns();
            },
            targetPatienceMs);
    }

    /// Everything that a step restores, byte by byte.
    [[nodiscard]] std::unique_ptr<TuningSnapshot> state() const;
    [[nodiscard]] static bool same(const TuningSnapshot& one, const TuningSnapshot& other);
    [[nodiscard]] std::size_t steps() const { return history->steps().size(); }
    /// What every control of the window shows, in words.
    [[nodiscard]] QStringList shownValues();
    /// Whether the pages show what they would show after reading the set again.
    [[nodiscard]] ::testing::AssertionResult pagesShowTheSet();
    /// Undoes all steps and redoes them, twice. Sets, images and controls have to be the same each time they
    /// come by, and the pages have to show what the set holds.
    void expectRoundTrip();

    InProcessTarget target{"inside", TargetMemory::holding(factoryImage()), TargetDevice::Options{}, {}};
    CommLink line{tuning, boxes, linesTo(target, makeSerialPortLine)};
    std::vector<std::pair<QString, std::optional<FieldPlace>>> moves;  ///< that were told

 private:
    struct Visited {
        std::unique_ptr<TuningSnapshot> state;
        QStringList values;
    };
    void visit(std::size_t position, Visited& visited);
    void mouse(QEvent::Type type, CBitmapSlider& slider);

    QPointF place_;
};

}  // namespace tessavo::test
