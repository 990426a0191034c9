#pragma once

#include <QCheckBox>

#include "controls/control_note.h"
#include "controls/focus_ring.h"
#include "controls/mixed_mark.h"

namespace tessavo {

/// Check box. The mark is 16 pixels wide and stands 3 pixels from the left edge of the widget, the
/// caption 6 pixels behind it.
class SkinCheckBox : public QCheckBox {
    Q_OBJECT

 public:
    SkinCheckBox(const QString& caption, int controlId, QWidget* parent = nullptr);

    /// Width that mark and caption need.
    [[nodiscard]] int neededWidth() const;
    [[nodiscard]] QSize sizeHint() const override;

    /// Marks the value as one that not every channel has which an edit goes to, with this note; takes the
    /// mark away without one.
    void setMixed(const QString& note) { mixed_.setNote(note); }
    [[nodiscard]] bool isMixed() const { return mixed_.isShown(); }
    /// Marks a value that is not what is in force or what plays, with this note; takes the mark away without
    /// one.
    void setMark(const QString& note) { mark_.setNote(note); }
    [[nodiscard]] const QString& markNote() const { return mark_.note(); }

 protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& place) const override { return rect().contains(place); }

 private:
    bool hovered_ = false;
    FocusRing ring_;
    MixedMark mixed_{*this};
    CornerNote mark_{*this};
};

}  // namespace tessavo
