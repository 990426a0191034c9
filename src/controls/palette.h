#pragma once

#include <array>
#include <cstdint>

namespace tessavo {

/// A colour as 0xAARRGGBB, as the toolkit writes it too.
using Colour = std::uint32_t;

namespace theme {

// Surfaces, from the back to the front.
inline constexpr Colour window = 0xFF12161B;
inline constexpr Colour bars = 0xFF181D23;  ///< menu, status bar, title of a message box
inline constexpr Colour headerTop = 0xFF1B2128;
inline constexpr Colour headerBottom = 0xFF161B21;
inline constexpr Colour card = 0xFF1C222A;   ///< group box
inline constexpr Colour inset = 0xFF171C22;  ///< group inside a group, read-only and disabled fields
inline constexpr Colour sunk = 0xFF0D1115;   ///< edit, list, slider channel, empty check box

// Lines.
inline constexpr Colour line = 0xFF2A323C;  ///< hairline
inline constexpr Colour edge = 0xFF404C59;  ///< border of field and button
inline constexpr Colour mark = 0xFF7B8896;  ///< outline of check and radio, zero tick

// Buttons, top and bottom of their gradients.
inline constexpr Colour buttonTop = 0xFF343F4B;
inline constexpr Colour buttonBottom = 0xFF29323C;
inline constexpr Colour buttonHoverTop = 0xFF3E4A58;
inline constexpr Colour buttonHoverBottom = 0xFF323C48;
inline constexpr Colour buttonPressed = 0xFF171C22;
inline constexpr Colour defaultTop = 0xFF1B74CF;
inline constexpr Colour defaultBottom = 0xFF1565B8;
inline constexpr Colour defaultEdge = 0xFF2F8BE6;
inline constexpr Colour selected = 0xFF1565B8;  ///< checked box, selected item

// Texts.
inline constexpr Colour text = 0xFFE9EEF4;   ///< values, captions, titles
inline constexpr Colour text2 = 0xFFB2BDC9;  ///< labels, units, titles of bypassed groups
inline constexpr Colour text3 = 0xFF8C98A5;  ///< disabled; only on window, bars, card, inset
inline constexpr Colour white = 0xFFFFFFFF;  ///< on any filled button

// Parameters.
inline constexpr Colour level = 0xFF1C86EE;      ///< dB, selected tab bar, in-circuit bar, the response curve
inline constexpr Colour frequency = 0xFF2BB3A3;  ///< Hz
inline constexpr Colour quality = 0xFF9A8AF0;    ///< Q and time
inline constexpr Colour off = 0xFF55616E;        ///< bypassed band or crossover

// States.
inline constexpr Colour live = 0xFF36C77E;
inline constexpr Colour liveTop = 0xFF1A7A4E;
inline constexpr Colour liveBottom = 0xFF166A43;
inline constexpr Colour liveEdge = 0xFF2A9863;
inline constexpr Colour clip = 0xFFFF4D55;
inline constexpr Colour stop = 0xFFC9303A;
inline constexpr Colour sending = 0xFF4BA3F7;
inline constexpr Colour trouble = 0xFFFF8087;
inline constexpr Colour focus = 0xFF8FCBFF;
inline constexpr Colour mixed = 0xFFE0A94A;      ///< outline of a value that several channels do not share
inline constexpr Colour lightBlue = 0xFF6DB8FF;  ///< chosen radio button, sent lines of the log
inline constexpr Colour received = 0xFF5CCFC0;   ///< received lines of the log
inline constexpr Colour target = 0xFFF2B53C;     ///< what a curve is to become; a value that was clamped

// Bands in charts and lists.
inline constexpr Colour disc = 0xFF98A4B0;
inline constexpr Colour discEdge = 0xFF0A0D10;

// Rulers.
inline constexpr Colour tick = 0xFF4A5663;         ///< tick beside a slider
inline constexpr Colour rowDivider = 0xFF242B34;   ///< between the rows of a group
inline constexpr Colour paneDivider = 0xFF343E49;  ///< between the panes of the status bar

/// Colours of the channels 1 to 8, by page position; the number always stands beside.
inline constexpr std::array<Colour, 8> channels{0xFFFAC6FD, 0xFFE04683, 0xFF14ABEB, 0xFFB27157,
                                                0xFF327BFC, 0xFF879304, 0xFF9375AD, 0xFF229080};

/// Colours of the channel groups A to H; the letter always stands beside.
inline constexpr std::array<Colour, 8> groups{0xFF4BA3F7, 0xFF2BB3A3, 0xFF9A8AF0, 0xFFE0A94A,
                                              0xFFE9828C, 0xFF7BC56B, 0xFFC98BD9, 0xFF9AA7B5};

}  // namespace theme

}  // namespace tessavo
