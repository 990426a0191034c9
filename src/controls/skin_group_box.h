#pragma once

#include <QColor>
#include <QWidget>

namespace tessavo {

/// Frame around controls that belong together: a card on the page, or an inset inside a card.
///
/// It passes the events of the sliders inside on to its own parent, so a page hears all of its sliders.
class SkinGroupBox : public QWidget {
    Q_OBJECT

 public:
    enum class Kind { card, inset };

    explicit SkinGroupBox(const QString& title, int controlId, QWidget* parent = nullptr,
                          Kind kind = Kind::card);

    [[nodiscard]] const QString& title() const { return title_; }
    void setTitle(const QString& title);
    /// Left and top of the title's row of 16 pixels, and whether it is centred; a card starts with (12, 7),
    /// left.
    void setTitlePlace(QPoint place, bool centred = false);

    /// For a group that can be switched: a bar at the top and a bright title while on, neither while off.
    void setInCircuit(bool on);
    /// A bar that is always there, in a colour of its own; an invalid colour takes it away.
    void setBar(const QColor& color);
    [[nodiscard]] QColor bar() const { return bar_; }

    [[nodiscard]] int neededWidth() const;

 protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    QString title_;
    QPoint titlePlace_;
    QColor bar_;
    Kind kind_;
    bool centred_;
    bool dimmed_ = false;
};

}  // namespace tessavo
