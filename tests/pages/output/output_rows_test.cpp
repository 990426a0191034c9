#include <algorithm>

#include "pages/output/clip_detect_dlg.h"
#include "pages/output/output_eq.h"
#include "pages/output/output_group.h"
#include "pages/rows/output_eq_rows.h"
#include "support/page_fixture.h"
#include "support/row_checks.h"
#include "support/stepped_clock.h"

// The pages are what their rows say, which the manual and the pictures read as well.

namespace tessavo::test {
namespace {

using OutputRows = PageTest;

TEST_F(OutputRows, EveryRowOfTheEqualizerIsAControlOfItsOwnPlaceAndName) {
    showPage(std::make_unique<COutputEQ>(actual.state, boxes));
    const ControlRows& rows = outputEqRows();
    const auto selection = std::ranges::find(rows, ControlKind::own, &ControlRow::kind);
    ASSERT_NE(selection, rows.end());
    ControlRows all = rows;
    for (ControlRow row : channelSelectionRows()) {
        row.bounds = row.bounds.movedBy(selection->bounds.x, selection->bounds.y);
        all.push_back(row);
    }
    expectControlsOfRows(*page, all);
    expectRowsApart(rows);
}

TEST_F(OutputRows, InTheChannelSelectionOnlyButtonsAndNamesOfAChannelLieAboveEachOther) {
    ControlRows rows = channelSelectionRows();
    std::erase_if(rows, [](const ControlRow& row) {
        return row.kind == ControlKind::radio ||
               (row.kind == ControlKind::check && row.identifier != selection_id::assign);
    });
    ASSERT_EQ(rows.size(), channelSelectionRows().size() - 2 * channelCount);
    expectRowsApart(rows);
}

TEST_F(OutputRows, EveryRowOfTheGroupsIsAControlOfItsOwnPlaceAndName) {
    showPage(std::make_unique<COutputGroup>(actual.state));
    expectControlsOfRows(*page, outputGroupRows());
    expectRowsApart(outputGroupRows());
}

TEST_F(OutputRows, EveryRowOfTheClipDetectionIsAControlOfItsPlaceAndName) {
    SteppedClock clock;
    showPage(std::make_unique<CClipDetectDlg>(
        CClipDetectDlg::Dependencies{.ask = []() -> std::optional<ClipState> { return {}; },
                                     .takeTurn = [](const auto&) { return true; },
                                     .clock = &clock}));
    expectControlsOfRows(*page, clipRows());
    ControlRows rows = clipRows();
    // The pictures of an indicator lie upon each other.
    std::erase_if(rows, [](const ControlRow& row) { return row.kind == ControlKind::own; });
    expectRowsApart(rows);
    clock.end();
    delete page;
    page = nullptr;
}

}  // namespace
}  // namespace tessavo::test
