#pragma once

#include <QColor>
#include <QPixmap>
#include <QSize>

namespace tessavo {

// States of a piece, joined by '|'. A piece ignores the states that mean nothing for it.
inline constexpr unsigned skinHovered = 1U << 0U;
inline constexpr unsigned skinPressed = 1U << 1U;  ///< button held down, slider cap being dragged
inline constexpr unsigned skinDisabled = 1U << 2U;
inline constexpr unsigned skinRinged = 1U << 3U;    ///< shows the focus ring
inline constexpr unsigned skinOn = 1U << 4U;        ///< checked, lit, toggled on
inline constexpr unsigned skinAccented = 1U << 5U;  ///< default button of a message box
inline constexpr unsigned skinReadOnly = 1U << 6U;
inline constexpr unsigned skinBypassed = 1U << 7U;
inline constexpr unsigned skinHorizontal = 1U << 8U;
inline constexpr unsigned skinOddBox = 1U << 9U;   ///< the slider is an odd number of device pixels wide
inline constexpr unsigned skinUpper = 1U << 10U;   ///< the mouse is on the upper half of an up-down column
inline constexpr unsigned skinLower = 1U << 11U;   ///< on its lower half
inline constexpr unsigned skinMarked = 1U << 12U;  ///< a small corner: something else is in force or plays
inline constexpr unsigned skinWarned = 1U << 13U;  ///< red edge and corner: the text counts as another number

/// What one drawing of the skin shows. Equal pieces share one pixmap for each scale of the screen.
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
    unsigned state = 0;  ///< of the states above
    QSize size;          ///< in logical pixels
    QRgb color = 0;      ///< for the kinds that name it

    bool operator==(const SkinPiece&) const = default;
};

/// Sizes of a slider's parts in device pixels. They are all even or all odd, like the slider itself, so that
/// each can stand in the middle without half pixels.
struct SliderPixels {
    /// \param scale device pixels to a logical one
    /// \param oddBox whether the slider is an odd number of device pixels wide
    SliderPixels(double scale, bool oddBox);

    int hair;       ///< thickness of a hairline
    int channel;    ///< width of the groove
    int fill;       ///< width of the coloured bar in it
    int capAcross;  ///< about 22 logical pixels
    int capAlong;   ///< about 13 logical pixels
    int capMargin;  ///< room around the cap for ring and halo
};

/// Draws every piece by vector code at the scale of the screen, and remembers the pixmap for the next time.
/// Used on the user-interface thread only.
class Skin {
 public:
    static constexpr int capLength = 13;    ///< of a slider's cap, along its way, in logical pixels
    static constexpr int capWidth = 22;     ///< across its way
    static constexpr int sliderMargin = 3;  ///< from the cap's end positions to the slider's ends

    /// The drawing of a piece.
    /// \param piece what it shows
    /// \param scale device pixels to a logical one
    /// \return a pixmap in device pixels; null for a piece without size
    [[nodiscard]] static QPixmap pixmap(const SkinPiece& piece, double scale);

    /// Forgets all pixmaps. The toolkit wants them gone before it ends.
    static void clear();

    /// How many bytes the remembered pixmaps take: never more than `limitBytes`, since those not used for
    /// longest are forgotten.
    [[nodiscard]] static qsizetype cachedBytes();
    static constexpr qsizetype limitBytes = qsizetype{6} * 1024 * 1024;

    /// Thickness of a hairline in device pixels.
    [[nodiscard]] static int hairline(double scale);
};

}  // namespace tessavo
