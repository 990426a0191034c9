#pragma once

#include <QString>

namespace tessavo {

class CommLink;
class CTessavoView;

/// What became of an image that Live Mode sent.
struct DemoRun {
    QString problem;  ///< empty when the target has confirmed the image
    QString summary;  ///< what was sent, to which port, and that it was confirmed; one line
};

/// Switches Live Mode on with its button and waits until the target has confirmed the current set.
///
/// Events go on meanwhile. Gives up after half a minute, or when the target does not take the image.
[[nodiscard]] DemoRun sendCurrentSet(CTessavoView& view, CommLink& link);

}  // namespace tessavo
