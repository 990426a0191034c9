#include "support/frame_fixture.h"

#include <QMenu>
#include <QMenuBar>
#include <QTabBar>
#include <QTest>

#include "app/page_factory.h"
#include "app/ui_file_dialogs.h"
#include "params/set_text.h"
#include "params/settings_file.h"
#include "plot/chart/plot_dlg.h"
#include "support/synthetic_events.h"

namespace tessavo::test {

void RecordingPage::refresh() {
    calls_.push_back("refresh " + std::to_string(static_cast<int>(page_)));
}

void RecordingPage::changeSet(std::uint32_t setIndex) {
    calls_.push_back("set " + std::to_string(setIndex) + " on " + std::to_string(static_cast<int>(page_)));
}

FrameTest::FrameTest()
    : profile(std::make_unique<Profile>(textOf(folder / "profile.ini"))),
      boxes([this](const QString& text, BoxIcon icon, BoxButtons buttons) {
          shown.push_back({text.toStdString(), icon, buttons});
          if (answers.empty()) {
              return answerWhenClosed(buttons);
          }
          const BoxAnswer answer = answers.front();
          answers.pop_front();
          return answer;
      }),
      tuning(boxes),
      link(tuning, boxes),
      chartHost(boxes, dialogs) {
    tuning.start();
    history = std::make_unique<History>(tuning);
    makeFrame();
}

FrameTest::~FrameTest() {
    boxes.stopAnswering();
    link.shutDown();
}

void FrameTest::makeFrame(PageFactory makePage) {
    frame.reset();
    frame = std::make_unique<CMainFrame>(CMainFrame::Dependencies{
        tuning, *history, boxes, dialogs, *profile, link, chartHost, std::move(makePage), portSystem});
    frame->restoreWindowPlacement();
    frame->show();
    frame->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(frame.get()));
}

PageFactory FrameTest::recordingPages() {
    return [this](Page page) { return new RecordingPage(page, pageCalls); };
}

PageFactory FrameTest::realPages() {
    return pageFactory({.tuning = tuning,
                        .boxes = boxes,
                        .dialogs = dialogs,
                        .profile = *profile,
                        .link = link,
                        .listPorts = [] { return std::vector<std::string>{}; },
                        .firstPort = {},
                        .refreshPages = [] {}});
}

void FrameTest::choose(SkinComboBox& list, int index) {
    clickEntry(list, index);
}

void FrameTest::type(QLineEdit& field, const QString& text) {
    field.setFocus(Qt::TabFocusReason);
    field.selectAll();
    QTest::keyClick(&field, Qt::Key_Delete);
    QTest::keyClicks(&field, text);
}

void FrameTest::clickTab(int index, Qt::MouseButton button) {
    QTest::mouseClick(&tabs(), button, {}, tabs().tabRect(index).center());
}

QMenu* FrameTest::menu(const QString& title) {
    for (QMenu* menu : frame->findChild<QMenuBar*>()->findChildren<QMenu*>(Qt::FindDirectChildrenOnly)) {
        if (menu->title().remove(QLatin1Char('&')) == title) {
            return menu;
        }
    }
    throw std::logic_error("no menu " + title.toStdString());
}

void FrameTest::clickMenu(const QString& title, const QString& item) {
    auto* bar = frame->findChild<QMenuBar*>();
    QMenu* opened = menu(title);
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(opened->menuAction()).center());
    ASSERT_TRUE(QTest::qWaitFor([&] { return opened->isVisible(); }));
    for (QAction* action : opened->actions()) {
        if (action->text().remove(QLatin1Char('&')) == item) {
            QTest::mouseMove(opened, opened->actionGeometry(action).center());
            QTest::mouseClick(opened, Qt::LeftButton, {}, opened->actionGeometry(action).center());
            return;
        }
    }
    opened->hide();
    FAIL() << "no item " << item.toStdString();
}

QStringList FrameTest::itemsOf(const QString& title) {
    QStringList items;
    for (const QAction* action : menu(title)->actions()) {
        if (action->isVisible()) {
            items << (action->isSeparator() ? QStringLiteral("-") : action->text().remove(QLatin1Char('&')));
        }
    }
    return items;
}

QStringList FrameTest::recentItems() {
    QStringList items;
    for (const QAction* action : menu(QStringLiteral("File"))->actions()) {
        if (action->isVisible() && action->data().isValid()) {
            items << action->text().remove(QLatin1Char('&'));
        }
    }
    return items;
}

QString FrameTest::settingsFileNamed(const std::string& name, std::u16string_view setName) {
    ParameterStore store = tuning.store();
    for (ParameterSet& set : store.sets) {
        writeSetText(set.setName, setName);
    }
    EXPECT_EQ(writeSettings(folder / name, store), SaveVerdict::saved);
    return pathIn(name);
}

QString FrameTest::pathIn(const std::string& name) const {
    return textOf(folder / name);
}

void FrameTest::settle() {
    const bool live = tuning.liveMode();
    tuning.setLiveMode(true);
    tuning.takeUpdate();
    if (!live) {
        tuning.setLiveMode(false);
    }
}

std::size_t FrameTest::curvePoints() {
    CPlotDlg& plot = view().plot();
    const CChartData* curve = plot.chart().dataSet(plot.curveIdentifier());
    return curve == nullptr ? 0 : curve->pointCount();
}

}  // namespace tessavo::test
