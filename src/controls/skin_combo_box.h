#pragma once

#include <QColor>
#include <QComboBox>

#include "controls/control_note.h"
#include "controls/focus_ring.h"
#include "controls/mixed_mark.h"

namespace tessavo {

/// Drop-down list with a painted body. One of 81 pixels or less is compact: smaller text, closer to the edge.
class SkinComboBox : public QComboBox {
    Q_OBJECT

 public:
    explicit SkinComboBox(int controlId, QWidget* parent = nullptr);

    /// A dot before the text of an entry; an invalid colour takes it away.
    void setItemDot(int index, const QColor& color);
    /// A number drawn before the text of an entry, which stays as it is; a negative one takes it away.
    void setItemNumber(int index, int number);

    [[nodiscard]] bool isCompact() const;
    /// Width that the widest entry needs.
    [[nodiscard]] int neededWidth() const;

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
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

 private:
    [[nodiscard]] int markLeft() const;
    [[nodiscard]] int numberLeft(int index) const;
    [[nodiscard]] int textLeft(int index) const;
    [[nodiscard]] QColor dotOf(int index) const;
    [[nodiscard]] QString numberOf(int index) const;

    bool hovered_ = false;
    FocusRing ring_;
    MixedMark mixed_{*this};
    CornerNote mark_{*this};
};

}  // namespace tessavo
