#include "plot/chart/chart_host.h"

#include <QApplication>
#include <QColorDialog>
#include <QFontDatabase>
#include <QFontDialog>
#include <QFontInfo>
#include <QListView>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>

#include "controls/theme.h"

namespace tessavo::test {
namespace {

class ToolkitHost : public DialogChartHost {
 public:
    void showMessage(QWidget*, const QString&) override {}
    std::optional<QString> askSavePath(QWidget*, const QString&, const QString&) override { return {}; }
};

class ChartHost : public testing::Test {
 protected:
    template <typename Dialog>
    void whenOpen(std::function<void(Dialog&)> act) {
        auto* const timer = new QTimer(&owner_);
        QObject::connect(timer, &QTimer::timeout, timer, [this, timer, act] {
            if (auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget())) {
                timer->stop();
                seen_ = true;
                act(*dialog);
            }
        });
        timer->start(1);
    }

    ToolkitHost host_;
    QWidget owner_;
    bool seen_ = false;
};

TEST_F(ChartHost, ChoosingAFontStartsFromTheCurrentOne) {
    QFont bold = theme::font(16, QFont::Bold);
    for (const QFont& current : {theme::font(12), theme::font(20), bold}) {
        seen_ = false;
        whenOpen<QFontDialog>([&](QFontDialog& dialog) {
            const QFontInfo info(current);
            EXPECT_EQ(dialog.currentFont().family(), info.family());
            EXPECT_EQ(dialog.currentFont().pointSize(), info.pointSize());
            EXPECT_EQ(QFontInfo(dialog.currentFont()).bold(), info.bold());
            EXPECT_EQ(QFontInfo(dialog.currentFont()).italic(), info.italic());
            dialog.accept();
        });
        const auto chosen = host_.askFont(&owner_, current);
        ASSERT_TRUE(seen_);
        EXPECT_EQ(chosen, current) << "nothing was changed, so nothing changes";
    }
}

TEST_F(ChartHost, AChosenFontIsTaken) {
    whenOpen<QFontDialog>([](QFontDialog& dialog) {
        QFont other = dialog.currentFont();
        other.setPointSize(24);
        dialog.setCurrentFont(other);
        dialog.accept();
    });
    const auto chosen = host_.askFont(&owner_, theme::font(12));
    ASSERT_TRUE(chosen);
    EXPECT_EQ(chosen->pointSize(), 24);
    whenOpen<QFontDialog>([](QFontDialog& dialog) { dialog.reject(); });
    EXPECT_FALSE(host_.askFont(&owner_, theme::font(12)));
}

TEST_F(ChartHost, TheFontDialogCutsNoStyleOff) {
    whenOpen<QFontDialog>([](QFontDialog& dialog) {
        int lists = 0;
        for (const QListView* const list : dialog.findChildren<QListView*>()) {
            if (list->isVisible()) {
                ++lists;
                EXPECT_LE(list->sizeHintForColumn(0), list->viewport()->width());
            }
        }
        EXPECT_GE(lists, 3);
        dialog.reject();
    });
    static_cast<void>(host_.askFont(&owner_, theme::font(12)));
    EXPECT_TRUE(seen_);
}

TEST_F(ChartHost, ColoursAreAskedForInTheProgramsLook) {
    whenOpen<QColorDialog>([](QColorDialog& dialog) {
        EXPECT_TRUE(dialog.testOption(QColorDialog::DontUseNativeDialog));
        EXPECT_EQ(dialog.currentColor().rgb(), 0xFF1C86EE);
        dialog.setCurrentColor(QColor(0xFF102030));
        dialog.accept();
    });
    EXPECT_EQ(host_.askColor(&owner_, 0xFF1C86EE), 0xFF102030);
}

}  // namespace
}  // namespace tessavo::test
