#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "controls/tab_dialog.h"

namespace tessavo {

struct PageDependencies;

/// Pages of the main view in tab order.
enum class Page : std::uint8_t {
    inputEqualizer,
    channelConfig,
    outputEqualizer,
    outputGroup,
    clipDetection,
    communication,
    count
};

inline constexpr std::size_t pageCount = static_cast<std::size_t>(Page::count);

/// What the plot draws while a page is in front.
enum class PageCurve : std::uint8_t { none, input, output };

/// All that tells one page from another outside its own sources.
struct PageEntry {
    Page page;
    std::string_view title;      ///< on its tab, and for screen readers
    int tabWidth;                ///< logical pixels
    std::string_view plotTitle;  ///< of the plot window beside it
    PageCurve curve;
    const char* picture;  ///< file name of its picture, without what follows the name
    /// Makes the page; its caller takes it over.
    CTabDialog* (*make)(const PageDependencies& dependencies);
};

/// The pages in tab order; a page stands at the place of its number.
[[nodiscard]] const std::array<PageEntry, pageCount>& pageTable();
[[nodiscard]] inline const PageEntry& entryOf(Page page) {
    return pageTable()[static_cast<std::size_t>(page)];
}

/// Makes the page of a tab. Its caller takes it over.
using PageFactory = std::function<CTabDialog*(Page)>;

}  // namespace tessavo
