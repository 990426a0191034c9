#pragma once

#include <QColor>
#include <QWidget>

namespace tessavo {

/// Frame with a title around controls that belong together: a card on the page, or an inset inside a card.
///
/// Sliders post their events to their parent, which is the group. The group passes them on to its own parent,
/// so that the page receives those of all its sliders.
class SkinGroupBox : public QWidget {
    Q_OBJECT

 public:
    enum class Kind { card, inset };

    explicit SkinGroupBox(const QString& title, int controlId, QWidget* parent = nullptr,
                          Kind kind = Kind::card);

    [[nodiscard]] const QString& title() const { return title_; }
    void setTitle(const QString& title);
    /// Sets where the title stands. Without a call the title of a card stands at (12, 7), not centred.
    /// \param position left upper corner of the title's row, which is 16 pixels high
    /// \param centred whether the title stands in the middle of the group instead of at the left
    void setTitlePosition(QPoint position, bool centred = false);

    /// Shows whether a group that can be bypassed is in circuit: then it has a bar at its top and a bright
    /// title, otherwise neither.
    void setInCircuit(bool on);
    /// Puts a bar at the top that does not depend on setInCircuit(); an invalid colour takes it away.
    void setBar(const QColor& color);
    [[nodiscard]] QColor bar() const { return bar_; }

    /// Width that the group needs for its title, in pixels.
    [[nodiscard]] int neededWidth() const;

 protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    QString title_;
    QPoint titlePosition_;
    QColor bar_;
    Kind kind_;
    bool centred_;
    bool dimmed_ = false;
};

}  // namespace tessavo
