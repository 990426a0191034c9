#pragma once

#include <QColor>
#include <QPixmap>
#include <QSize>

namespace tessavo {

// States of a piece, joined by '|'. Not every piece knows every state.
inline constexpr unsigned skinHovered = 1U << 0U;
inline constexpr unsigned skinPressed = 1U << 1U;  ///< button held down, slider cap being dragged
inline constexpr unsigned skinDisabled = 1U << 2U;
inline constexpr unsigned skinRinged = 1U << 3U;    ///< shows the focus ring
inline constexpr unsigned skinOn = 1U << 4U;        ///< checked, lit, toggled on
inline constexpr unsigned skinAccented = 1U << 5U;  ///< default button of a message box
inline constexpr unsigned skinReadOnly = 1U << 6U;
inline constexpr unsigned skinBypassed = 1U << 7U;
inline constexpr unsigned skinHorizontal = 1U << 8U;
inline constexpr unsigned skinOddBox = 1U << 9U;   ///< the slider is an odd number of device pixels across
inline constexpr unsigned skinUpper = 1U << 10U;   ///< the mouse is on the upper half of an up-down column
inline constexpr unsigned skinLower = 1U << 11U;   ///< on its lower half
inline constexpr unsigned skinMarked = 1U << 12U;  ///< a small corner: what is shown is not the whole truth
inline constexpr unsigned skinWarned = 1U << 13U;  ///< red edge and corner: the text counts as something else

/// One drawing of the skin. Sizes are logical pixels; equal pieces share one pixmap for each scale.
struct SkinPiece {
    enum class Kind : quint8 {
        button,
        combo,        ///< button body with a chevron at the right
        edit,         ///< with a stripe in `color` at the left unless that is 0
        upDown,       ///< edit with a column of two chevrons at the right
        checkMark,    ///< 22 x 22 with room for the ring
        radioMark,    ///< 22 x 22 with room for the ring
        lamp,         ///< on or off light, 3 px larger than its disc on every side
        clipping,     ///< clip light 12002; the disc is 22 px, or 28 px in a piece of 44
        notClipping,  ///< clip light 12003
        socket,       ///< empty place of a clip light
        stopIcon,
        infoIcon,
        sliderChannel,
        sliderCap,  ///< halo of a dragged cap in `color`
    };

    Kind kind = Kind::button;
    unsigned state = 0;
    QSize size;
    QRgb color = 0;

    bool operator==(const SkinPiece&) const = default;
};

/// Sizes of a slider's parts in device pixels, such that all are centred without half pixels.
struct SliderPixels {
    SliderPixels(double scale, bool oddBox);

    int hair;       ///< thickness of a hairline
    int channel;    ///< groove across
    int fill;       ///< coloured bar across
    int capAcross;  ///< 22 logical pixels
    int capAlong;   ///< 13 logical pixels
    int capMargin;  ///< room around the cap for ring and halo
};

/// Draws every piece from vector code at the scale of the screen, once, and keeps it. User-interface thread
/// only.
class Skin {
 public:
    static constexpr int capLength = 13;
    static constexpr int capWidth = 22;
    static constexpr int sliderMargin = 3;

    /// The piece in device pixels for a scale of `scale` device pixels to a logical one.
    [[nodiscard]] static QPixmap pixmap(const SkinPiece& piece, double scale);

    /// Forgets everything drawn so far.
    static void clear();

    /// How many bytes of pixmaps are kept; never more than `limitBytes`.
    [[nodiscard]] static qsizetype keptBytes();
    static constexpr qsizetype limitBytes = qsizetype{6} * 1024 * 1024;

    /// Thickness of a hairline in device pixels.
    [[nodiscard]] static int hairline(double scale);
};

}  // namespace tessavo
