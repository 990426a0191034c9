#pragma once

#include <QWidget>

namespace tessavo {

/// One picture of a clip indicator. An indicator consists of three of these widgets on top of each other: the
/// two lights and, below them, a socket that is seen while both lights are hidden. The page shows and hides
/// the lights one by one.
class ClipLight : public QWidget {
    Q_OBJECT

 public:
    enum class Picture {
        socket = 0,           ///< empty, what is seen while nothing is known
        clipping = 12002,     ///< solid red with a halo
        notClipping = 12003,  ///< dark glass with a green dot
    };

    /// \param picture what the widget shows
    /// \param diameter of the light in pixels: 22, or 28 for the amplifiers; with its halo the widget is 34
    ///     or 44 pixels square
    /// \param controlId see setControlId()
    /// \param parent owns the widget
    ClipLight(Picture picture, int diameter, int controlId, QWidget* parent = nullptr);

    [[nodiscard]] Picture picture() const { return picture_; }

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    Picture picture_;
};

}  // namespace tessavo
