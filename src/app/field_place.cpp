#include "app/field_place.h"

#include <algorithm>
#include <array>

#include "pages/rows/audio_router_rows.h"
#include "pages/rows/header_rows.h"
#include "pages/rows/input_eq_rows.h"
#include "pages/rows/output_eq_rows.h"
#include "pages/rows/output_group_rows.h"

namespace tessavo {

namespace {

/// Whether a row of this page shows this element of its field.
bool shows(Page page, const ControlRow& row, FieldIndex index) {
    switch (page) {
        case Page::outputEqualizer:
            // Its channel is the one that is chosen.
            return row.element == index.inner;
        case Page::outputGroup:
            return groupSliderMap[row.element] == index.outer;
        case Page::channelConfig:
            return row.field == FieldId::routerSource
                       ? recordChannelAt({static_cast<std::uint8_t>(row.element)}).value == index.outer
                       : row.element == index.outer;
        default:
            return row.element == index.outer;
    }
}

std::optional<FieldPlace> findOnPage(Page page, const ControlRows& rows, const ChangedPlace& change) {
    const auto row = std::ranges::find_if(rows, [&](const ControlRow& each) {
        return each.field == change.field && !each.isHidden && each.identifier >= 0 &&
               shows(page, each, change.index);
    });
    if (row == rows.end()) {
        return std::nullopt;
    }
    return FieldPlace{change.set, page, row->identifier,
                      page == Page::outputEqualizer ? channelOf(change) : std::nullopt};
}

std::optional<FieldPlace> findOne(const ChangedPlace& change) {
    if (!change.field) {
        return FieldPlace{change.set, std::nullopt, view_id::setName, std::nullopt};
    }
    if (change.field == FieldId::channelFlag) {
        return FieldPlace{change.set, std::nullopt, view_id::channelFlag(change.index.outer), std::nullopt};
    }
    struct PageRows {
        Page page;
        const ControlRows& (*rows)();
    };
    constexpr std::array<PageRows, 4> pages{{{Page::inputEqualizer, inputEqRows},
                                             {Page::channelConfig, audioRouterRows},
                                             {Page::outputEqualizer, outputEqRows},
                                             {Page::outputGroup, outputGroupRows}}};
    for (const PageRows& each : pages) {
        if (const auto place = findOnPage(each.page, each.rows(), change)) {
            return place;
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<FieldPlace> findPlace(const std::vector<ChangedPlace>& changes) {
    for (const ChangedPlace& change : changes) {
        if (const auto place = findOne(change)) {
            return place;
        }
    }
    return std::nullopt;
}

}  // namespace tessavo
