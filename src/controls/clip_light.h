#pragma once

#include <QWidget>

namespace tessavo {

/// One picture of a clip indicator. An indicator is a pair of them at one place, above a socket that shows
/// when neither is visible; the page shows and hides the pictures one by one.
class ClipLight : public QWidget {
    Q_OBJECT

 public:
    enum class Picture {
        socket = 0,
        clipping = 12002,     ///< solid red with a halo
        notClipping = 12003,  ///< dark glass with a green dot
    };

    /// `diameter` is 22, or 28 for the amplifiers; the widget is 34 or 44 square.
    ClipLight(Picture picture, int diameter, int controlId, QWidget* parent = nullptr);

    [[nodiscard]] Picture picture() const { return picture_; }

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    Picture picture_;
};

}  // namespace tessavo
