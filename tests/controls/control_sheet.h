#pragma once

#include <QPixmap>
#include <QWidget>

namespace tessavo {

class CBitmapSlider;

}  // namespace tessavo

namespace tessavo::test {

/// One widget that holds every control in every state, for looking and for tests of what is drawn.
///
/// It is never shown: states come from the same events that a person's doing sends to the controls.
class ControlSheet : public QWidget {
 public:
    ControlSheet();

    /// The sheet at a scale of device pixels to logical ones.
    [[nodiscard]] QPixmap picture(double scale);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    void addSliders();
    void addButtons();
    void addMarks();
    void addCombos();
    void addEdits();
    void addTabs();
    void addLights();
    void addMenu();
    void addGroups();
    void addMessages();
    void addTransfers();
    void addPalette();
    void addState(CBitmapSlider& slider, int state);
    QWidget* addSection(const QRect& bounds, const QString& title);
    void addText(const QRect& bounds, const QString& text, const QFont& font, QRgb color,
                 Qt::Alignment alignment);
    void addLabel(int x, int y, int width, const QString& text);
    void addCentred(int x, int y, int width, const QString& text);
};

}  // namespace tessavo::test
