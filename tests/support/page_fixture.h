#pragma once

#include <QWidget>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "controls/bitmap_slider.h"
#include "controls/number_edit.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/skin_group_box.h"
#include "controls/skin_radio_button.h"
#include "controls/tab_dialog.h"
#include "support/harness.h"
#include "support/synthetic_events.h"

namespace tessavo::test {

/// A page with its own state, and a second state that takes the same edits without a page.
class PageTest : public ::testing::Test {
 protected:
    PageTest();
    ~PageTest() override;

    /// Puts the page into a window of its size, shows that and gives it the focus.
    void showPage(std::unique_ptr<CTabDialog> page);

    template <typename Control>
    Control& control(int id) {
        return controlOf<Control>(*page, id);
    }
    CBitmapSlider& slider(int id) { return control<CBitmapSlider>(id); }
    NumberEdit& edit(int id) { return control<NumberEdit>(id); }
    SkinComboBox& list(int id) { return control<SkinComboBox>(id); }
    SkinCheckBox& check(int id) { return control<SkinCheckBox>(id); }
    std::string textOf(int editId) { return edit(editId).text().toStdString(); }

    // What a person does. Every one of them lets the page hear of it before it returns.

    /// Takes the thumb and moves it by this many pixels; the button stays down.
    void drag(int sliderId, int pixels);
    void release(int sliderId);
    /// Drags the thumb until the slider stands at a position that a whole pixel reaches, and lets it go.
    void dragToEnd(int sliderId, bool towardsMinimum);
    /// One press and release of a key, with the focus on the control.
    void key(QWidget& target, Qt::Key code, Qt::KeyboardModifiers modifiers = {});
    /// Replaces the text of a box by the keyboard and leaves the box in it.
    void typeOnly(int editId, const QString& text);
    void typeAndEnter(int editId, const QString& text);
    /// Types and goes to the next control.
    void typeAndLeave(int editId, const QString& text);
    void click(QWidget& target);
    /// Opens a list with the mouse and clicks an entry.
    void choose(int listId, int index);
    /// Chooses an entry by the keyboard.
    void chooseByKeys(int listId, int index);

    static void deliver();
    /// Whether an update is pending; lowers it.
    bool takePending();
    /// Record, image and coefficients of the page's state against those of the other.
    ::testing::AssertionResult inStep() const;
    /// Loads the same random store into both states; the page does not know yet.
    void loadRandom(std::uint64_t seed);

    Tuning actual;
    Tuning twin;
    RecordingBoxes boxes{BoxAnswer::cancel};
    QWidget window;
    CTabDialog* page = nullptr;  ///< the one that the functions above work on
    int draggedTo = 0;           ///< where the last drag took the thumb, before the page heard of it

 private:
    void mouse(QEvent::Type type, CBitmapSlider& target, const QPointF& point);

    QPointF dragPlace_;
};

/// A channel of a store or image, byte by byte.
float floatAt(const Tuning& tuning, std::size_t recordOffset);
std::uint32_t imageWordAt(const Tuning& tuning, std::size_t offset);

}  // namespace tessavo::test
