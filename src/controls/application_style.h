#pragma once

#include <QProxyStyle>

namespace tessavo {

/// The style of everything that no control of this folder paints itself.
///
/// Menus, lists, scroll bars, opened lists of combo boxes and tool tips get a style sheet when they are first
/// shown. A style sheet of the whole application would be simpler, but the toolkit would then match it
/// against every control of every page. Buttons, check boxes and combo boxes of the toolkit's own dialogs are
/// drawn from the skin's pieces. The letters that open menus are underlined while Alt is held.
class ApplicationStyle : public QProxyStyle {
    Q_OBJECT

 public:
    ApplicationStyle();

    using QProxyStyle::polish;
    void polish(QApplication* application) override;
    void polish(QWidget* widget) override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    void showMnemonics(bool shown);

    bool mnemonicsShown_ = false;
};

}  // namespace tessavo
