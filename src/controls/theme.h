#pragma once

#include <QColor>
#include <QFont>
#include <array>

namespace tessavo::theme {

// Surfaces, from the back to the front.
inline constexpr QRgb window = 0xFF12161B;
inline constexpr QRgb bars = 0xFF181D23;  ///< menu, status bar, title of a message box
inline constexpr QRgb headerTop = 0xFF1B2128;
inline constexpr QRgb headerBottom = 0xFF161B21;
inline constexpr QRgb card = 0xFF1C222A;   ///< group box
inline constexpr QRgb inset = 0xFF171C22;  ///< group inside a group, read-only and disabled fields
inline constexpr QRgb sunk = 0xFF0D1115;   ///< edit, list, slider channel, empty check box

// Lines.
inline constexpr QRgb line = 0xFF2A323C;  ///< hairline
inline constexpr QRgb edge = 0xFF404C59;  ///< border of field and button
inline constexpr QRgb mark = 0xFF7B8896;  ///< outline of check and radio, zero tick

// Buttons, top and bottom of their gradients.
inline constexpr QRgb buttonTop = 0xFF343F4B;
inline constexpr QRgb buttonBottom = 0xFF29323C;
inline constexpr QRgb buttonHoverTop = 0xFF3E4A58;
inline constexpr QRgb buttonHoverBottom = 0xFF323C48;
inline constexpr QRgb buttonPressed = 0xFF171C22;
inline constexpr QRgb defaultTop = 0xFF1B74CF;
inline constexpr QRgb defaultBottom = 0xFF1565B8;
inline constexpr QRgb defaultEdge = 0xFF2F8BE6;
inline constexpr QRgb selected = 0xFF1565B8;  ///< checked box, selected item

// Texts.
inline constexpr QRgb text = 0xFFE9EEF4;   ///< values, captions, titles
inline constexpr QRgb text2 = 0xFFB2BDC9;  ///< labels, units, titles of bypassed groups
inline constexpr QRgb text3 = 0xFF8C98A5;  ///< disabled; only on window, bars, card, inset
inline constexpr QRgb white = 0xFFFFFFFF;  ///< on any filled button

// Parameters.
inline constexpr QRgb level = 0xFF1C86EE;      ///< dB, selected tab bar, in-circuit bar, the response curve
inline constexpr QRgb frequency = 0xFF2BB3A3;  ///< Hz
inline constexpr QRgb quality = 0xFF9A8AF0;    ///< Q and time
inline constexpr QRgb off = 0xFF55616E;        ///< bypassed band or crossover

// States.
inline constexpr QRgb live = 0xFF36C77E;
inline constexpr QRgb liveTop = 0xFF1A7A4E;
inline constexpr QRgb liveBottom = 0xFF166A43;
inline constexpr QRgb liveEdge = 0xFF2A9863;
inline constexpr QRgb clip = 0xFFFF4D55;
inline constexpr QRgb stop = 0xFFC9303A;
inline constexpr QRgb sending = 0xFF4BA3F7;
inline constexpr QRgb trouble = 0xFFFF8087;
inline constexpr QRgb focus = 0xFF8FCBFF;
inline constexpr QRgb mixed = 0xFFE0A94A;      ///< outline of a value that several channels do not share
inline constexpr QRgb lightBlue = 0xFF6DB8FF;  ///< chosen radio button, sent lines of the log
inline constexpr QRgb received = 0xFF5CCFC0;   ///< received lines of the log

// Rulers.
inline constexpr QRgb tick = 0xFF4A5663;         ///< tick beside a slider
inline constexpr QRgb rowDivider = 0xFF242B34;   ///< between the rows of a group
inline constexpr QRgb paneDivider = 0xFF343E49;  ///< between the panes of the status bar

/// Colours of the channel groups A to H; the letter always stands beside.
inline constexpr std::array<QRgb, 8> groups{0xFF4BA3F7, 0xFF2BB3A3, 0xFF9A8AF0, 0xFFE0A94A,
                                            0xFFE9828C, 0xFF7BC56B, 0xFFC98BD9, 0xFF9AA7B5};

/// The program's font: the first of Inter, Segoe UI, Noto Sans and DejaVu Sans that the system has.
/// \param pixelSize height in logical pixels
/// \param weight normal, medium or bold
[[nodiscard]] QFont font(int pixelSize, QFont::Weight weight = QFont::Normal);

/// A font in which all characters are equally wide, for the log. Height in logical pixels.
[[nodiscard]] QFont fixedFont(int pixelSize);

}  // namespace tessavo::theme
