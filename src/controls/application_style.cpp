#include "controls/application_style.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QColor>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOption>

#include "controls/skin.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

const char dressed[] = "tessavoDressed";

/// Style sheets; a name between two '@' stands for a colour of the theme.
constexpr char menuBarSheet[] = R"(
QMenuBar { background: @bars@; color: @text@; padding: 2px 6px; border: none; spacing: 3px; }
QMenuBar::item { background: transparent; padding: 4px 10px; border-radius: 4px; }
QMenuBar::item:selected, QMenuBar::item:pressed { background: @edge@; }
)";
constexpr char menuSheet[] = R"(
QMenu { background: @button@; border: 1px solid @edge@; padding: 4px; color: @text@; }
QMenu::item { padding: 5px 24px 5px 12px; border-radius: 3px; background: transparent; }
QMenu::item:selected { background: @selected@; color: @white@; }
QMenu::item:disabled { color: @dim@; background: transparent; }
QMenu::separator { height: 1px; background: @edge@; margin: 4px 8px; }
)";
constexpr char listSheet[] = R"(
QListView { background: @sunk@; border: 1px solid @edge@; border-radius: 4px; padding: 1px; color: @text@; outline: 0; }
QListView:focus { border: 2px solid @focus@; padding: 0; }
QListView:disabled { background: @inset@; border-color: @line@; color: @dim@; }
QComboBox QAbstractItemView, QComboBox QAbstractItemView:focus {
  background: @button@; border: 1px solid @edge@; border-radius: 0; padding: 3px; outline: 0;
}
QListView::item { height: 18px; }
QListView::item:selected { background: @selected@; color: @white@; }
)";
constexpr char scrollBarSheet[] = R"(
QScrollBar:vertical { background: transparent; width: 8px; margin: 0; border: none; }
QScrollBar:horizontal { background: transparent; height: 8px; margin: 0; border: none; }
QScrollBar::handle { background: @edge@; border-radius: 4px; }
QScrollBar::handle:vertical { min-height: 24px; }
QScrollBar::handle:horizontal { min-width: 24px; }
QScrollBar::handle:hover, QScrollBar::handle:pressed { background: @mark@; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; border: none; background: none; }
QScrollBar::add-page, QScrollBar::sub-page { background: none; }
)";
// Of the toolkit's own dialogs; the skin paints those of the pages.
constexpr char editSheet[] = R"(
QLineEdit { background: @sunk@; border: 1px solid @edge@; border-radius: 4px; padding: 2px 6px; color: @text@; }
QLineEdit:focus { border: 2px solid @focus@; padding: 1px 5px; }
QLineEdit:disabled { color: @dim@; }
)";
constexpr char tipSheet[] = R"(
QToolTip { background: @button@; color: @text@; border: 1px solid @edge@; padding: 3px 6px; }
)";

constexpr int markPiece = 22;

unsigned skinStateOf(const QStyleOption& option) {
    unsigned state = 0;
    const auto add = [&](QStyle::StateFlag flag, unsigned bit) {
        state |= option.state.testFlag(flag) ? bit : 0U;
    };
    add(QStyle::State_MouseOver, skinHovered);
    add(QStyle::State_Sunken, skinPressed);
    add(QStyle::State_On, skinOn);
    if (!option.state.testFlag(QStyle::State_Enabled)) {
        return (state & skinOn) | skinDisabled;
    }
    if (option.state.testFlag(QStyle::State_HasFocus) &&
        option.state.testFlag(QStyle::State_KeyboardFocusChange)) {
        state |= skinRinged;
    }
    return state;
}

/// A piece for a painter that counts in logical pixels.
QPixmap pictureOf(const SkinPiece& piece, const QPainter& painter) {
    const double scale = painter.device()->devicePixelRatioF();
    QPixmap picture = Skin::pixmap(piece, scale);
    picture.setDevicePixelRatio(scale);
    return picture;
}

QString withColors(const char* sheet) {
    QString text = QString::fromLatin1(sheet);
    const std::pair<const char*, QRgb> colors[]{
        {"@bars@", theme::bars},   {"@text@", theme::text},   {"@edge@", theme::edge},
        {"@line@", theme::line},   {"@mark@", theme::mark},   {"@button@", theme::buttonBottom},
        {"@sunk@", theme::sunk},   {"@inset@", theme::inset}, {"@selected@", theme::selected},
        {"@white@", theme::white}, {"@dim@", theme::text3},   {"@focus@", theme::focus},
    };
    for (const auto& [name, color] : colors) {
        text.replace(QLatin1String(name), QColor::fromRgb(color).name());
    }
    return text;
}

bool isFieldOfSpinBox(const QWidget* widget) {
    return widget != nullptr && qobject_cast<const QAbstractSpinBox*>(widget->parentWidget()) != nullptr;
}

/// The sheet of a kind of widget, null for what needs none.
const char* sheetFor(const QWidget& widget) {
    if (qobject_cast<const QMenuBar*>(&widget) != nullptr) {
        return menuBarSheet;
    }
    if (qobject_cast<const QMenu*>(&widget) != nullptr) {
        return menuSheet;
    }
    if (qobject_cast<const QScrollBar*>(&widget) != nullptr) {
        return scrollBarSheet;
    }
    if (qobject_cast<const QAbstractItemView*>(&widget) != nullptr) {
        return listSheet;
    }
    if (widget.metaObject() == &QLineEdit::staticMetaObject && !isFieldOfSpinBox(&widget)) {
        return editSheet;
    }
    return widget.inherits("QTipLabel") ? tipSheet : nullptr;
}

}  // namespace

ApplicationStyle::ApplicationStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void ApplicationStyle::polish(QApplication* application) {
    QProxyStyle::polish(application);
    application->installEventFilter(this);
}

bool ApplicationStyle::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Alt) {
                showMnemonics(event->type() == QEvent::KeyPress);
            }
            break;
        case QEvent::ApplicationStateChange:
            // This window will not receive the release of the key.
            showMnemonics(false);
            break;
        default:
            break;
    }
    return QProxyStyle::eventFilter(watched, event);
}

void ApplicationStyle::showMnemonics(bool shown) {
    if (mnemonicsShown_ == shown) {
        return;
    }
    mnemonicsShown_ = shown;
    for (QWidget* widget : QApplication::allWidgets()) {
        if (qobject_cast<QMenuBar*>(widget) != nullptr || qobject_cast<QMenu*>(widget) != nullptr) {
            widget->update();
        }
    }
}

void ApplicationStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    const char* sheet = sheetFor(*widget);
    // Setting the sheet lets the toolkit polish the widget a second time, from within this call.
    if (sheet != nullptr && !widget->property(dressed).toBool()) {
        widget->setProperty(dressed, true);
        widget->setStyleSheet(withColors(sheet) + widget->styleSheet());
    }
}

void ApplicationStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                     const QWidget* widget) const {
    if (element != PE_IndicatorCheckBox) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    const SkinPiece mark{SkinPiece::Kind::checkMark, skinStateOf(*option), QSize(markPiece, markPiece)};
    const QPointF corner = QRectF(option->rect).center() - QPointF(markPiece, markPiece) / 2;
    painter->drawPixmap(corner.toPoint(), pictureOf(mark, *painter));
}

void ApplicationStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                                   const QWidget* widget) const {
    const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (element != CE_PushButtonBevel || button == nullptr ||
        button->features.testFlag(QStyleOptionButton::Flat)) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    unsigned state = skinStateOf(*option);
    if (button->features.testFlag(QStyleOptionButton::DefaultButton)) {
        state |= skinAccented;
    }
    const SkinPiece body{SkinPiece::Kind::button, state, option->rect.size()};
    painter->drawPixmap(option->rect.topLeft(), pictureOf(body, *painter));
}

void ApplicationStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                          QPainter* painter, const QWidget* widget) const {
    const auto* const combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
    if (control != CC_ComboBox || combo == nullptr || combo->editable) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    const SkinPiece body{SkinPiece::Kind::combo, skinStateOf(*option) & ~skinOn, option->rect.size()};
    painter->drawPixmap(option->rect.topLeft(), pictureOf(body, *painter));
}

int ApplicationStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                                  const QWidget* widget) const {
    constexpr int markWidth = 18;
    return metric == PM_IndicatorWidth || metric == PM_IndicatorHeight
               ? markWidth
               : QProxyStyle::pixelMetric(metric, option, widget);
}

int ApplicationStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                                QStyleHintReturn* data) const {
    switch (hint) {
        case SH_ComboBox_Popup:
        // No button of the skin has a picture.
        case SH_DialogButtonBox_ButtonsHaveIcons:
            return 0;
        case SH_UnderlineShortcut:
            return mnemonicsShown_ ? 1 : 0;
        default:
            return QProxyStyle::styleHint(hint, option, widget, data);
    }
}

}  // namespace tessavo
