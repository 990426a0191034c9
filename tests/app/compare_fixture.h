#pragma once

#include <QApplication>
#include <QTest>
#include <functional>

#include "app/compare_commands.h"
#include "app/compare_dialog.h"
#include "app/compare_rows.h"
#include "app/undo_fixture.h"
#include "compare/sets.h"
#include "params/set_text.h"

namespace tessavo::test {

/// A window whose second set differs from the first in everything, and the comparison that its keys open.
class CompareTest : public UndoTest {
 protected:
    CompareTest() {
        std::mt19937_64 random(77);
        ParameterSet other = randomSet(random);
        other.recordSize = parameterSetSize;
        writeSetText(other.setName, u"Other");
        tuning.replaceSet(1, other);
        history->commit("prepared");
    }

    CompareDialog& open() {
        press(Qt::Key_D, Qt::ControlModifier);
        dialog_ = frame->findChild<CompareDialog*>();
        if (dialog_ == nullptr) {
            throw std::logic_error("no comparison");
        }
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog_));
        return *dialog_;
    }
    CompareDialog& dialog() { return *dialog_; }
    CompareModel& model() { return dialog_->model(); }
    CompareTree& tree() { return dialog_->tree(); }

    QModelIndex group(const QString& heading) {
        for (int row = 0; row < model().rowCount(); ++row) {
            if (model().index(row, 0).data().toString() == heading) {
                return model().index(row, 0);
            }
        }
        return {};
    }
    QModelIndex fieldRow(const QString& heading, const QString& name) {
        const QModelIndex parent = group(heading);
        for (int row = 0; row < model().rowCount(parent); ++row) {
            if (model().index(row, 0, parent).data().toString() == name) {
                return model().index(row, 0, parent);
            }
        }
        return {};
    }
    static Qt::CheckState stateOf(const QModelIndex& index) {
        return static_cast<Qt::CheckState>(index.data(Qt::CheckStateRole).toInt());
    }
    void clickAt(const QPoint& point) {
        QTest::mouseClick(tree().viewport(), Qt::LeftButton, {}, point);
        settleEvents();
    }
    void clickMark(const QModelIndex& index) {
        ASSERT_TRUE(index.isValid());
        tree().scrollTo(index);
        clickAt(tree().rows().markRect(index).center());
    }
    template <typename Button>
    Button& named(const QString& text) {
        for (Button* each : dialog_->findChildren<Button*>()) {
            if (each->text() == text || each->accessibleName() == text) {
                return *each;
            }
        }
        throw std::logic_error("no button " + text.toStdString());
    }
    CxSkinButton& copyButton() { return named<CxSkinButton>(QStringLiteral("Copy Selected")); }
    /// Chooses what a list of a side offers under this text.
    void chooseSide(CompareSide& side, const QString& text) {
        // The list takes a second click that comes too soon for a part of the first.
        const int interval = QApplication::doubleClickInterval();
        QApplication::setDoubleClickInterval(0);
        QTest::mouseClick(&side, Qt::LeftButton);
        ASSERT_TRUE(QTest::qWaitFor([&] { return side.view()->isVisible(); }));
        ASSERT_TRUE(letLoopRun());
        const int index = side.findText(text);
        ASSERT_GE(index, 0) << text.toStdString();
        // A low screen does not show all of it.
        const QModelIndex entry = side.model()->index(index, 0);
        side.view()->scrollTo(entry);
        QTest::mouseClick(side.view()->viewport(), Qt::LeftButton, {},
                          side.view()->visualRect(entry).center());
        ASSERT_TRUE(QTest::qWaitFor([&] { return !side.view()->isVisible(); }));
        QApplication::setDoubleClickInterval(interval);
        settleEvents();
    }
    /// Waits until a change of the tuning has come to the comparison.
    bool waitFor(const std::function<bool()>& holds) { return QTest::qWaitFor(holds, 5000); }
    /// Answers the next modal dialog of the program.
    void whenAsked(std::function<void(QDialog&)> answer) {
        auto* const timer = new QTimer(frame.get());
        QObject::connect(timer, &QTimer::timeout, timer, [timer, answer = std::move(answer)] {
            if (auto* const modal = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
                timer->deleteLater();
                timer->stop();
                answer(*modal);
            }
        });
        timer->start(5);
    }

    CompareDialog* dialog_ = nullptr;
};

}  // namespace tessavo::test
