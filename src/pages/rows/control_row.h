#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "controls/palette.h"
#include "params/field_table.h"

namespace tessavo {

/// A rectangle in logical pixels of the page.
struct Bounds {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    [[nodiscard]] constexpr bool isEmpty() const { return width == 0 || height == 0; }
    [[nodiscard]] constexpr Bounds movedBy(int dx, int dy) const { return {x + dx, y + dy, width, height}; }
    [[nodiscard]] constexpr bool contains(const Bounds& other) const {
        return x <= other.x && y <= other.y && other.x + other.width <= x + width &&
               other.y + other.height <= y + height;
    }
    [[nodiscard]] constexpr bool overlaps(const Bounds& other) const {
        return x < other.x + other.width && other.x < x + width && y < other.y + other.height &&
               other.y < y + height;
    }
    bool operator==(const Bounds&) const = default;
};

/// What a row becomes on the screen.
enum class ControlKind : std::uint8_t {
    group,     ///< a card on the page, or an inset where it lies inside another group
    label,     ///< text without a number
    line,      ///< hairline
    button,    ///< push button
    toggle,    ///< button that stays pressed
    check,     ///< check box
    radio,     ///< radio button
    combo,     ///< list of entries
    slider,    ///< slider with the edit box of its number; upright where it is higher than wide
    delay,     ///< the same with a second box for the distance that sound goes in that time
    number,    ///< edit box alone
    spin,      ///< edit box with an up-down column
    readOnly,  ///< edit box that only shows
    lamp,      ///< round lamp
    note,      ///< quiet line that tells of a difference
    own,       ///< made by the page itself and handed to the form
};

/// Where a text stands in its place; all but `bottom` are centred from top to bottom.
enum class TextSide : std::uint8_t { left, right, centre, bottom };

/// What the manual tells of a field's control, beside what follows from row and field.
struct ManualText {
    std::string_view effect{};  ///< what it does; a field without it stands in no table
    std::string_view range{};   ///< in place of the range, where a list of values would tell nothing
    std::string_view start{};   ///< in place of the value of a fresh set
};

/// One control of a page. A page is the list of its rows, in the order in which they are made: later ones lie
/// above earlier ones, and Tab goes through them in this order. The page, the manual, the pictures and the
/// tests read the same rows.
struct ControlRow {
    ControlKind kind;
    int identifier = -1;  ///< number of the control, of the slider where a box belongs to it; -1 for none
    /// Text on it; beside a control that shows a value it is a label of its own at `captionPlace`.
    std::string caption{};
    std::string name{};  ///< what screen readers call it, where that is not the caption
    /// Its rectangle; without one it stands hidden in the group before it. The innermost group around it is
    /// its parent.
    Bounds bounds{};

    std::optional<FieldId> field{};  ///< behind it; a control that shows a value is bound to it
    std::size_t element = 0;         ///< band, crossover or position in that field
    bool isBound = true;             ///< false where the page itself keeps the control in step with the field
    bool inverted = false;           ///< a check box that is checked where the field is 0
    /// Words of a list or of a button's states; without them those of the field.
    std::vector<std::string_view> entries{};
    /// Stored codes of the entries, in their order; without them 0, 1, … or those of the field.
    std::vector<std::uint8_t> codes{};

    int editIdentifier = -1;      ///< box of a slider or delay
    Bounds edit{};                ///< its rectangle
    bool editsLast = false;       ///< Tab: the boxes of neighbouring rows come behind all their sliders
    bool plainEdit = false;       ///< box without the colour of its value, its text centred
    int distanceIdentifier = -1;  ///< second box of a delay
    Bounds distance{};            ///< its rectangle
    /// Positions of a slider's ticks, where they are not those of its field.
    std::optional<std::vector<int>> ticks{};

    Bounds captionBounds{};  ///< label of a control that shows a value; none without
    std::string unit{};      ///< second label
    Bounds unitBounds{};     ///< its rectangle
    Bounds titleBounds{};    ///< left and top of a group's title, inside the group; usual ones without
    bool isHidden = false;   ///< a group that is never seen or reached, or a control with a place in one

    std::optional<Colour> colour{};         ///< that of its field's unit, or the usual one, without
    int textPixels = 11;                    ///< size of a label's letters
    TextSide side = TextSide::left;         ///< of a label, a note, or the label of the caption
    std::optional<Colour> captionColour{};  ///< of the label of the caption

    ManualText manual{};
};

/// Rows of one page.
using ControlRows = std::vector<ControlRow>;

/// A word for a value and the code that is stored for it.
struct ControlEntry {
    std::string_view word;
    std::uint8_t code;
};
/// Entries of a list, or states of a button, in their order.
[[nodiscard]] std::vector<ControlEntry> entriesOf(const ControlRow& row);

/// What screen readers call the control.
[[nodiscard]] const std::string& nameOf(const ControlRow& row);

/// Colour of a value: that of the row, or that of its field's unit.
[[nodiscard]] Colour valueColour(const ControlRow& row);

/// The row with this number; null without one.
[[nodiscard]] const ControlRow* findRow(std::span<const ControlRow> rows, int identifier);

/// Innermost group around a row, from those that stand before it; null on the bare page.
[[nodiscard]] const ControlRow* groupAround(std::span<const ControlRow> rows, const ControlRow& row);

}  // namespace tessavo
