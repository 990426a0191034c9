#include <QLabel>
#include <QTest>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <algorithm>

#include "comm/page/page_bench.h"
#include "controls/skin_group_box.h"
#include "support/row_checks.h"

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Controls : public PageBench {
 protected:
    QRect placeOf(const QWidget& widget) const { return {widget.mapTo(page, QPoint(0, 0)), widget.size()}; }
    QRect bounds(int id) { return placeOf(control<QWidget>(id)); }
    QString caption(int id) { return control<QAbstractButton>(id).text(); }
};

TEST_F(Controls, AreTheRowsOfThePage) {
    expectControlsOfRows(*page, communicationRows());
    expectRowsApart(communicationRows());
}

TEST_F(Controls, StandAtTheirPlaces) {
    const std::pair<int, QRect> places[]{
        {comm_id::saveGroup, {0, 8, 382, 68}},           {comm_id::loadGroup, {392, 8, 382, 68}},
        {comm_id::softwareGroup, {0, 86, 774, 90}},      {comm_id::interfaceGroup, {784, 8, 200, 168}},
        {comm_id::versionGroup, {784, 186, 200, 200}},   {comm_id::logGroup, {0, 186, 774, 402}},
        {comm_id::firstSave, {272, 38, 98, 28}},         {comm_id::firstLoad, {664, 38, 98, 28}},
        {comm_id::imagePath, {12, 116, 470, 28}},        {comm_id::selectImage, {492, 116, 130, 28}},
        {comm_id::flashFile, {632, 116, 130, 28}},       {comm_id::transferLine, {12, 150, 750, 16}},
        {comm_id::portList, {864, 46, 108, 28}},         {comm_id::refresh, {796, 138, 176, 28}},
        {comm_id::hardwareVersion, {796, 242, 176, 26}}, {comm_id::softwareVersion, {796, 304, 176, 26}},
        {comm_id::update, {796, 348, 176, 28}},          {comm_id::log, {12, 216, 750, 326}},
        {comm_id::showStatus, {9, 550, 157, 28}},        {comm_id::showErrors, {167, 550, 149, 28}},
        {comm_id::showSent, {317, 550, 135, 28}},        {comm_id::showReceived, {453, 550, 137, 28}},
        {comm_id::clearLog, {592, 550, 170, 28}},
    };
    for (const auto& [id, expected] : places) {
        EXPECT_EQ(bounds(id), expected) << id;
        EXPECT_TRUE(control<QWidget>(id).isVisible()) << id;
    }
    for (int set = 1; set <= 5; ++set) {
        EXPECT_EQ(bounds(comm_id::firstSave + set), QRect(12 + 52 * (set - 1), 38, 46, 28)) << set;
        EXPECT_EQ(bounds(comm_id::firstLoad + set), QRect(404 + 52 * (set - 1), 38, 46, 28)) << set;
    }
}

TEST_F(Controls, TheOfferOfABackupIsHiddenUntilItIsMadeAndMovesNothing) {
    CxSkinButton& offer = button(comm_id::backUpTarget);
    EXPECT_FALSE(offer.isVisible());
    std::vector<QRect> before;
    for (const ControlRow& row : communicationRows()) {
        before.push_back(bounds(row.identifier));
    }
    int asked = 0;
    QObject::connect(page, &CCommunication::backUpAsked, &window, [&] { ++asked; });
    page->offerBackUp(true);
    EXPECT_TRUE(offer.isVisible());
    EXPECT_EQ(bounds(comm_id::backUpTarget), QRect(602, 90, 160, 22));
    EXPECT_GE(offer.width(), offer.neededWidth());
    std::size_t i = 0;
    for (const ControlRow& row : communicationRows()) {
        EXPECT_EQ(bounds(row.identifier), before[i++]) << row.identifier;
    }
    click(offer);
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(button(comm_id::flashFile).isEnabled()) << "it forces nothing";
    offer.setFocus();
    page->offerBackUp(false);
    EXPECT_FALSE(offer.isVisible());
    EXPECT_EQ(window.focusWidget(), page) << "no other button is pressed by a key meant for this one";
}

TEST_F(Controls, CarryTheirTexts) {
    for (int set = 1; set <= 5; ++set) {
        const QString expected = QStringLiteral("Set %1").arg(set);
        EXPECT_EQ(saveButton(set).text(), expected);
        EXPECT_EQ(loadButton(set).text(), expected);
    }
    EXPECT_EQ(saveButton(0).text(), QStringLiteral("Default Set"));
    EXPECT_EQ(loadButton(0).text(), QStringLiteral("Default Set"));
    EXPECT_EQ(caption(comm_id::selectImage), QStringLiteral("Select Image File"));
    EXPECT_EQ(caption(comm_id::flashFile), QStringLiteral("Flash File"));
    EXPECT_EQ(caption(comm_id::refresh), QStringLiteral("Refresh"));
    EXPECT_EQ(caption(comm_id::update), QStringLiteral("Update"));
    EXPECT_EQ(caption(comm_id::showStatus), QStringLiteral("Show Status Message"));
    EXPECT_EQ(caption(comm_id::showErrors), QStringLiteral("Show Error Message"));
    EXPECT_EQ(caption(comm_id::showSent), QStringLiteral("Show TX Message"));
    EXPECT_EQ(caption(comm_id::showReceived), QStringLiteral("Show RX Message"));
    EXPECT_EQ(caption(comm_id::clearLog), QStringLiteral("Clear Communication Log"));
    const std::pair<int, const char*> groups[]{
        {comm_id::saveGroup, "Save Set In RAM To"},     {comm_id::loadGroup, "Load Set from RAM"},
        {comm_id::softwareGroup, "Software Update"},    {comm_id::interfaceGroup, "Communication Interface"},
        {comm_id::versionGroup, "Version Information"}, {comm_id::logGroup, "Communication Log"},
    };
    for (const auto& [id, title] : groups) {
        EXPECT_EQ(control<SkinGroupBox>(id).title(), QLatin1String(title));
    }
}

TEST_F(Controls, LabelsStandBesideWhatTheyName) {
    const struct {
        const char* text;
        QRect bounds;
        int names;
    } labels[]{{"COM Port", {796, 46, 62, 28}, comm_id::portList},
               {"Hardware Version", {796, 222, 176, 16}, comm_id::hardwareVersion},
               {"Software Version", {796, 284, 176, 16}, comm_id::softwareVersion}};
    const auto all = page->findChildren<QLabel*>();
    for (const auto& [text, place_, names] : labels) {
        const auto label = std::find_if(all.begin(), all.end(), [wanted = text](const QLabel* each) {
            return each->text() == QLatin1String(wanted);
        });
        ASSERT_NE(label, all.end()) << text;
        EXPECT_TRUE((*label)->isVisible()) << text;
        EXPECT_EQ(placeOf(**label), place_) << text;
        EXPECT_LE((*label)->fontMetrics().horizontalAdvance((*label)->text()), place_.width()) << text;
        EXPECT_EQ(control<QWidget>(names).accessibleName(), QLatin1String(text));
    }
    EXPECT_EQ(all.size(), 3);
}

TEST_F(Controls, FitTheirTexts) {
    for (CxSkinButton* each : page->findChildren<CxSkinButton*>()) {
        EXPECT_LE(each->neededWidth(), each->width()) << each->text().toStdString();
    }
    for (SkinCheckBox* each : page->findChildren<SkinCheckBox*>()) {
        EXPECT_LE(each->neededWidth(), each->width()) << each->text().toStdString();
    }
    line().showProgress(511, 512, std::chrono::minutes(59));
    EXPECT_LE(line().neededWidth(), line().width());
}

TEST_F(Controls, StartWithAllFiltersOnAndNothingKnown) {
    for (const int id :
         {comm_id::showStatus, comm_id::showErrors, comm_id::showSent, comm_id::showReceived}) {
        EXPECT_TRUE(filter(id).isChecked()) << id;
    }
    EXPECT_FALSE(page->versionsKnown());
    EXPECT_FALSE(page->nothingToLose());
    EXPECT_EQ(log().lineCount(), 0);
    EXPECT_EQ(line().text(), QStringLiteral("No transfer"));
    EXPECT_EQ(line().phase(), TransferLine::Phase::idle);
    for (const int id : {comm_id::imagePath, comm_id::hardwareVersion, comm_id::softwareVersion}) {
        EXPECT_EQ(field(id).text(), QString()) << id;
    }
}

TEST_F(Controls, FieldsAreForReadingOnly) {
    for (const int id : {comm_id::imagePath, comm_id::hardwareVersion, comm_id::softwareVersion}) {
        field(id).setFocus();
        QTest::keyClicks(&field(id), QStringLiteral("x1"));
        QTest::keyClick(&field(id), Qt::Key_Delete);
        EXPECT_EQ(field(id).text(), QString()) << id;
    }
}

TEST_F(Controls, TheListHoldsEveryPortAndChoosesTheFirst) {
    EXPECT_EQ(ports().count(), 3);
    EXPECT_EQ(ports().currentText(), QStringLiteral("COM3"));
    EXPECT_EQ(ports().itemData(2).toInt(), 2) << "an entry carries its place in the enumeration";
    EXPECT_EQ(page->portName(), "COM3");
    EXPECT_THAT(used, ::testing::Contains("COM3"));
    EXPECT_THAT(remembered, IsEmpty()) << "nobody has chosen it";
}

TEST_F(Controls, AnotherEntryIsThePortFromThenOn) {
    used.clear();
    choosePort(2);
    EXPECT_EQ(page->portName(), "COM12");
    EXPECT_EQ(used.back(), "COM12");
    EXPECT_EQ(remembered.back(), "COM12");
}

TEST_F(Controls, RefreshListsAgainAndChoosesTheFirst) {
    choosePort(1);
    portsThere = {"COM7", "COM5"};
    click(button(comm_id::refresh));
    EXPECT_EQ(ports().count(), 2);
    EXPECT_EQ(ports().currentText(), QStringLiteral("COM7"));
    EXPECT_EQ(page->portName(), "COM7");
    EXPECT_EQ(remembered.back(), "COM5") << "what a person chose last";
}

TEST_F(Controls, WithoutAPortTheNameIsEmptyAndATransferFailsWithABox) {
    portsThere.clear();
    portOpens = false;
    plugIn({});
    EXPECT_EQ(ports().count(), 0);
    EXPECT_EQ(page->portName(), "");
    click(button(comm_id::update));
    EXPECT_THAT(shown, ElementsAre("Cannot open COM port!"));
    EXPECT_THAT(logLines(), ElementsAre("ST-->    Prepare XModem2k Message"));
    EXPECT_FALSE(page->versionsKnown());
}

TEST_F(Controls, APortThatVanishesAndComesBackIsUsableAgain) {
    portsThere.clear();
    click(button(comm_id::refresh));
    EXPECT_EQ(page->portName(), "");
    EXPECT_EQ(used.back(), "");
    portsThere = {"COM3"};
    click(button(comm_id::refresh));
    EXPECT_EQ(page->portName(), "COM3");
    click(button(comm_id::update));
    EXPECT_TRUE(page->versionsKnown());
}

TEST_F(Controls, EveryPortTellsItsDevice) {
    portsThere = {"COM3", "COM5", "COM7", "COM12"};
    descriptions = {{"COM3", "CP2102 USB to UART"},
                    {"COM5", "<img src=x><b>Bridge</b>"},
                    {"COM12",
                     "Br\xC3\xBC"
                     "cke\xFF"}};
    makePage();
    ASSERT_EQ(ports().count(), 4);
    const auto tip = [this](int index) { return ports().itemData(index, Qt::ToolTipRole).toString(); };
    const auto spoken = [this](int index) {
        return ports().itemData(index, Qt::AccessibleDescriptionRole).toString();
    };
    EXPECT_EQ(tip(0), QStringLiteral("CP2102 USB to UART"));
    EXPECT_EQ(spoken(0), tip(0));
    EXPECT_TRUE(Qt::mightBeRichText(tip(1)));
    EXPECT_EQ(QTextDocumentFragment::fromHtml(tip(1)).toPlainText(), spoken(1))
        << "no markup of the device's";
    EXPECT_EQ(spoken(1), QStringLiteral("<img src=x><b>Bridge</b>"));
    EXPECT_EQ(tip(2), QStringLiteral("nothing known of its device"));
    EXPECT_EQ(tip(3), QString::fromUtf8("Br\xC3\xBC"
                                        "cke\xEF\xBF\xBD"));
    EXPECT_EQ(ports().toolTip(), tip(0)) << "the closed list tells that of its entry";
    EXPECT_EQ(ports().accessibleDescription(), spoken(0));
    choosePort(3);
    EXPECT_EQ(ports().toolTip(), tip(3));
    EXPECT_EQ(ports().accessibleDescription(), spoken(3));
    portsThere = {};
    click(button(comm_id::refresh));
    EXPECT_EQ(ports().toolTip(), QString());
    EXPECT_EQ(ports().accessibleDescription(), QString());
}

TEST_F(Controls, TheLastPortIsChosenAgainWhenItIsThere) {
    lastPort = "COM12";
    makePage();
    EXPECT_EQ(ports().currentText(), QStringLiteral("COM12"));
    EXPECT_EQ(page->portName(), "COM12");
    EXPECT_EQ(used.back(), "COM12");
    lastPort = "COM99";
    makePage();
    EXPECT_EQ(ports().currentText(), QStringLiteral("COM3"));
    EXPECT_EQ(page->portName(), "COM3");
}

TEST_F(Controls, EveryControlIsReachedByTheKeyboard) {
    QWidget* first = &saveButton(1);
    first->setFocus(Qt::TabFocusReason);
    std::set<QWidget*> reached{first};
    for (int i = 0; i < 40; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        reached.insert(QApplication::focusWidget());
    }
    for (QWidget* each : page->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        if ((each->focusPolicy() & Qt::TabFocus) != 0) {
            EXPECT_TRUE(reached.contains(each)) << each->objectName().toStdString();
        }
    }
    EXPECT_GE(reached.size(), 24U);
}

}  // namespace
}  // namespace tessavo::test
