#pragma once

#include <QColor>
#include <QComboBox>

#include "controls/marked_widget.h"
#include "controls/tracked_widget.h"

namespace tessavo {

using SkinComboBoxBase = MixedMarked<CornerMarked<FocusTracked<HoverTracked<WheelWithFocus<QComboBox>>>>>;

/// Drop-down list drawn from the skin's pieces. A list at most 81 pixels wide is compact: its text is smaller
/// and stands closer to the edge.
class SkinComboBox : public SkinComboBoxBase {
    Q_OBJECT

 public:
    explicit SkinComboBox(int controlId, QWidget* parent = nullptr);

    /// Puts a dot before the text of an entry; an invalid colour takes it away.
    void setItemDot(int index, const QColor& color);
    /// Draws a number before the text of an entry, without changing the text; a negative number takes it
    /// away.
    void setItemNumber(int index, int number);

    [[nodiscard]] bool isCompact() const;
    /// Width that the list needs for its widest entry, in pixels.
    [[nodiscard]] int neededWidth() const;

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    [[nodiscard]] int markLeft() const;
    [[nodiscard]] int numberLeft(int index) const;
    [[nodiscard]] int textLeft(int index) const;
    [[nodiscard]] QColor dotOf(int index) const;
    [[nodiscard]] QString numberOf(int index) const;
};

}  // namespace tessavo
