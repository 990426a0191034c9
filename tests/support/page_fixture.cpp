#include "support/page_fixture.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTest>

#include "support/synthetic_events.h"

namespace tessavo::test {

PageTest::PageTest() {
    window.resize(984, 596);
}

PageTest::~PageTest() = default;

void PageTest::showPage(std::unique_ptr<CTabDialog> made) {
    page = made.release();
    page->setParent(&window);
    page->setGeometry(window.rect());
    page->show();
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
}

void PageTest::mouse(QEvent::Type type, CBitmapSlider& target, const QPointF& point) {
    const bool move = type == QEvent::MouseMove;
    QMouseEvent event(type, point, target.mapToGlobal(point), move ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
    QApplication::sendEvent(&target, &event);
    draggedTo = target.position();
    deliver();
}

void PageTest::drag(int sliderId, int pixels) {
    CBitmapSlider& target = slider(sliderId);
    ASSERT_TRUE(target.isVisible() && target.isEnabled()) << sliderId;
    if (!target.isDragging()) {
        const double thumb = target.track().pixelOf(target.position(), target.minimum(), target.maximum());
        dragPlace_ = target.isVertical() ? QPointF(target.width() / 2.0, thumb)
                                         : QPointF(thumb, target.height() / 2.0);
        mouse(QEvent::MouseButtonPress, target, dragPlace_);
    }
    dragPlace_ += target.isVertical() ? QPointF(0, pixels) : QPointF(pixels, 0);
    mouse(QEvent::MouseMove, target, dragPlace_);
}

void PageTest::release(int sliderId) {
    mouse(QEvent::MouseButtonRelease, slider(sliderId), dragPlace_);
}

void PageTest::dragToEnd(int sliderId, bool towardsMinimum) {
    const int far = slider(sliderId).isVertical() ? slider(sliderId).height() : slider(sliderId).width();
    drag(sliderId, towardsMinimum ? -far : far);
    release(sliderId);
}

void PageTest::key(QWidget& target, Qt::Key code, Qt::KeyboardModifiers modifiers) {
    target.setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(target.hasFocus()) << target.objectName().toStdString();
    QTest::keyClick(&target, code, modifiers);
    deliver();
}

void PageTest::typeOnly(int editId, const QString& text) {
    NumberEdit& target = edit(editId);
    target.setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(target.hasFocus()) << editId;
    target.selectAll();
    QTest::keyClick(&target, Qt::Key_Delete);
    QTest::keyClicks(&target, text);
}

void PageTest::typeAndEnter(int editId, const QString& text) {
    typeOnly(editId, text);
    QTest::keyClick(&edit(editId), Qt::Key_Return);
    deliver();
}

void PageTest::typeAndLeave(int editId, const QString& text) {
    typeOnly(editId, text);
    QTest::keyClick(&edit(editId), Qt::Key_Tab);
    EXPECT_FALSE(edit(editId).hasFocus());
    deliver();
}

void PageTest::click(QWidget& target) {
    ASSERT_TRUE(target.isVisible() && target.isEnabled()) << target.objectName().toStdString();
    QTest::mouseClick(&target, Qt::LeftButton);
    deliver();
}

void PageTest::choose(int listId, int index) {
    clickEntry(list(listId), index);
    deliver();
}

void PageTest::chooseByKeys(int listId, int index) {
    SkinComboBox& target = list(listId);
    while (target.currentIndex() != index) {
        const int before = target.currentIndex();
        key(target, before < index ? Qt::Key_Down : Qt::Key_Up);
        ASSERT_NE(target.currentIndex(), before) << listId;
    }
}

void PageTest::deliver() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

bool PageTest::takePending() {
    const bool pending = actual.state.updatePending();
    actual.settle();
    return pending;
}

::testing::AssertionResult PageTest::inStep() const {
    if (const std::string record = difference(actual.store(), twin.store()); !record.empty()) {
        return ::testing::AssertionFailure() << "record: " << record;
    }
    if (const std::string image = difference(actual.image(), twin.image()); !image.empty()) {
        return ::testing::AssertionFailure() << "image: " << image;
    }
    for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
        for (std::size_t band = 0; band < bandCount; ++band) {
            if (difference(bytesOf(actual.state.bandWords({channel}, band)),
                           bytesOf(twin.state.bandWords({channel}, band))) != "") {
                return ::testing::AssertionFailure()
                       << "words of channel " << int{channel} << " band " << band;
            }
        }
    }
    return ::testing::AssertionSuccess();
}

void PageTest::loadRandom(std::uint64_t seed) {
    std::mt19937_64 random(seed);
    const Bytes store = randomStore(random);
    actual.load(store);
    twin.load(store);
}

float floatAt(const Tuning& tuning, std::size_t recordOffset) {
    return readAt<float>(tuning.store(), recordOffset);
}

std::uint32_t imageWordAt(const Tuning& tuning, std::size_t offset) {
    return readAt<std::uint32_t>(tuning.image(), offset);
}

}  // namespace tessavo::test
