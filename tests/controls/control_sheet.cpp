#include "controls/control_sheet.h"

#include <QAbstractItemView>
#include <QListWidget>
#include <QMenu>
#include <QScrollBar>

#include "controls/bitmap_slider.h"
#include "controls/clip_light.h"
#include "controls/color_control.h"
#include "controls/number_edit.h"
#include "controls/read_only_edit.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/skin_group_box.h"
#include "controls/skin_message_box.h"
#include "controls/skin_painter.h"
#include "controls/skin_radio_button.h"
#include "controls/skin_tab_bar.h"
#include "controls/spin_edit.h"
#include "controls/state_lamp.h"
#include "controls/text_edit_box.h"
#include "controls/theme.h"
#include "controls/transfer_line.h"
#include "support/synthetic_events.h"

namespace tessavo::test {
namespace {

using namespace std::chrono_literals;

constexpr int noId = 0;

enum State { normal, hovered, dragged, focused, bypassed, disabled };
const QStringList stateNames{QStringLiteral("normal"),   QStringLiteral("hover"),
                             QStringLiteral("drag"),     QStringLiteral("focus"),
                             QStringLiteral("band off"), QStringLiteral("disabled")};
const QStringList fieldStates{QStringLiteral("normal"), QStringLiteral("hover"), QStringLiteral("focus"),
                              QStringLiteral("disabled")};

/// Puts a control into state 0 normal, 1 hover, 2 focus, 3 disabled.
void putInto(QWidget& control, int fieldState) {
    if (fieldState == 1) {
        sendHover(control);
    } else if (fieldState == 2) {
        sendFocus(control);
    } else if (fieldState == 3) {
        control.setEnabled(false);
    }
}

}  // namespace

ControlSheet::ControlSheet() {
    resize(1280, 1502);
    addText({24, 14, 400, 28}, QStringLiteral("Tessavo control sheet"), theme::font(15, QFont::DemiBold),
            theme::text, Qt::AlignLeft);
    addSliders();
    addButtons();
    addMarks();
    addCombos();
    addEdits();
    addTabs();
    addLights();
    addMenu();
    addGroups();
    addMessages();
    addTransfers();
    addPalette();
}

QPixmap ControlSheet::picture(double scale) {
    QPixmap pixmap((QSizeF(size()) * scale).toSize());
    pixmap.setDevicePixelRatio(scale);
    render(&pixmap);
    return pixmap;
}

void ControlSheet::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter(this).fillRect(rect(), QColor::fromRgb(theme::window));
}

void ControlSheet::addText(const QRect& bounds, const QString& text, const QFont& font, QRgb color,
                           Qt::Alignment alignment) {
    auto* label = new CColorControl(text, noId, this);
    label->setFont(font);
    label->setColors(QColor::fromRgb(color));
    label->setAlignment(alignment | Qt::AlignVCenter);
    label->setGeometry(bounds);
}

void ControlSheet::addLabel(int x, int y, int width, const QString& text) {
    addText({x, y, width, 16}, text, theme::font(11), theme::text2, Qt::AlignLeft);
}

void ControlSheet::addCentred(int x, int y, int width, const QString& text) {
    addText({x, y, width, 14}, text, theme::font(11), theme::text2, Qt::AlignHCenter);
}

QWidget* ControlSheet::addSection(const QRect& bounds, const QString& title) {
    auto* section = new SkinGroupBox(title, noId, this);
    section->setTitlePosition({16, 12});
    section->setFont(theme::font(13, QFont::DemiBold));
    section->setGeometry(bounds);
    return section;
}

void ControlSheet::addState(CBitmapSlider& slider, int state) {
    switch (state) {
        case hovered:
            sendHover(slider);
            break;
        case dragged: {
            const double at = slider.track().pixelOf(slider.position(), slider.minimum(), slider.maximum());
            sendPress(slider, slider.isVertical() ? QPointF(14, at) : QPointF(at, 14));
            break;
        }
        case focused:
            sendFocus(slider);
            break;
        case bypassed:
            slider.setBypassed(true);
            break;
        case disabled:
            slider.setEnabled(false);
            break;
        default:
            break;
    }
}

void ControlSheet::addSliders() {
    addSection({24, 52, 784, 268}, QStringLiteral("Bitmap slider, vertical"));
    struct Family {
        QString name;
        QRgb color;
        int minimum, maximum, position;
    };
    const Family families[]{{QStringLiteral("frequency"), theme::frequency, -20000, -20, -9000},
                            {QStringLiteral("level"), theme::level, -180, 180, -72},
                            {QStringLiteral("Q and time"), theme::quality, -200, -1, -80}};
    int left = 40;
    for (const Family& family : families) {
        addText({left, 86, 230, 16}, family.name, theme::font(12, QFont::Medium), theme::text2,
                Qt::AlignLeft);
        for (int state = normal; state <= disabled; ++state) {
            auto* slider = new CBitmapSlider(Qt::Vertical, noId, this);
            slider->setGeometry(left + 38 * state + 4, 110, 28, 170);
            slider->setColor(family.color);
            slider->setRange(family.minimum, family.maximum);
            if (family.color == theme::level) {
                slider->setTicks({-180, -120, -60, 0, 60, 120, 180});
            }
            slider->setPosition(family.position);
            addState(*slider, state);
            addCentred(left + 38 * state - 10, state % 2 == 0 ? 288 : 301, 56, stateNames[state]);
        }
        left += 254;
    }
    addSection({24, 336, 612, 202}, QStringLiteral("Bitmap slider, horizontal"));
    for (int state = normal; state <= disabled; ++state) {
        const int x = 40 + 300 * (state % 2);
        const int y = 376 + 52 * (state / 2);
        addLabel(x, y + 6, 60, stateNames[state]);
        auto* slider = new CBitmapSlider(Qt::Horizontal, noId, this);
        slider->setGeometry(x + 62, y, 206, 28);
        if (state % 2 == 0) {
            slider->setRange(-60, 180);
        } else {
            slider->setRange(20, 20000);
            slider->setColor(theme::frequency);
        }
        slider->setPosition(slider->minimum() +
                            (slider->maximum() - slider->minimum()) * (36 + 5 * state) / 100);
        addState(*slider, state);
    }
}

void ControlSheet::addButtons() {
    addSection({652, 336, 604, 202}, QStringLiteral("Push button"));
    const QStringList plain{QStringLiteral("normal"), QStringLiteral("hover"), QStringLiteral("pressed"),
                            QStringLiteral("focus"), QStringLiteral("disabled")};
    for (int i = 0; i < 5; ++i) {
        auto* button = new CxSkinButton(QStringLiteral("Reset Channel"), noId, this);
        button->setGeometry(668 + 116 * i, 374, 104, 28);
        button->setDown(i == 2);
        putInto(*button, i < 2 ? i : i - 1 == 1 ? 0 : i - 1);
        addCentred(668 + 116 * i, 408, 104, plain[i]);
    }
    const QStringList toggles{QStringLiteral("toggle off"), QStringLiteral("off, hover"),
                              QStringLiteral("toggled on"), QStringLiteral("on, hover"),
                              QStringLiteral("on, focus")};
    for (int i = 0; i < 5; ++i) {
        auto* button = new CxSkinButton(i < 2 ? QStringLiteral("EQ Mode Off") : QStringLiteral("EQ Mode On"),
                                        noId, this);
        button->setGeometry(668 + 116 * i, 436, 104, 28);
        button->setFont(theme::font(11, QFont::Medium));
        button->setToggle(true);
        button->setOn(i >= 2);
        putInto(*button, i == 1 || i == 3 ? 1 : i == 4 ? 2 : 0);
        addCentred(668 + 116 * i, 470, 104, toggles[i]);
    }
    for (int i = 0; i < 5; ++i) {
        auto* button = new CxSkinButton(QStringLiteral("OK"), noId, this);
        button->setGeometry(668 + 116 * i, 494, 104, 28);
        button->setAccented(true);
        button->setDown(i == 2);
        putInto(*button, i < 2 ? i : i - 1 == 1 ? 0 : i - 1);
    }
}

void ControlSheet::addMarks() {
    addSection({24, 554, 392, 190}, QStringLiteral("Check box and radio button"));
    for (int i = 0; i < 4; ++i) {
        const int y = 590 + 35 * i;
        addLabel(40, y + 2, 60, fieldStates[i]);
        for (const bool on : {false, true}) {
            auto* check = new SkinCheckBox(QStringLiteral("Enabled"), noId, this);
            check->setGeometry(on ? 187 : 101, y - 1, 83, 22);
            check->setChecked(on);
            putInto(*check, i);
        }
        for (const bool on : {false, true}) {
            auto* radio = new SkinRadioButton(on ? QStringLiteral("Channel 1") : QString(), noId, this);
            radio->setAutoExclusive(false);
            radio->setGeometry(on ? 309 : 279, y - 1, on ? 99 : 23, 22);
            radio->setChecked(on);
            putInto(*radio, i);
        }
    }
}

void ControlSheet::addCombos() {
    addSection({432, 554, 408, 190}, QStringLiteral("Combo box"));
    const QStringList types{QStringLiteral("Low Shelf"), QStringLiteral("Peak"),
                            QStringLiteral("High Shelf")};
    for (int i = 0; i < 4; ++i) {
        const int y = 590 + 35 * i;
        addLabel(448, y + 4, 60, fieldStates[i]);
        auto* combo = new SkinComboBox(noId, this);
        combo->addItems(types);
        combo->setGeometry(512, y, 120, 24);
        putInto(*combo, i);
        auto* compact = new SkinComboBox(noId, this);
        compact->addItems({types[2], types[0]});
        compact->setGeometry(644, y, 80, 24);
        putInto(*compact, i);
        auto* dotted = new SkinComboBox(noId, this);
        for (int group = 0; group < 8; ++group) {
            dotted->addItem(QString(QLatin1Char(static_cast<char>('A' + group))));
            dotted->setItemDot(group, QColor::fromRgb(theme::groups[static_cast<std::size_t>(group)]));
        }
        dotted->setCurrentIndex(2 * i);
        dotted->setGeometry(736, y, 52, 24);
        putInto(*dotted, i);
    }
}

void ControlSheet::addEdits() {
    addSection({856, 554, 400, 190}, QStringLiteral("Edit"));
    const auto number = [this](const QRect& bounds, const QString& text, QRgb color) {
        auto* edit = new NumberEdit(noId, this);
        edit->setGeometry(bounds);
        edit->setColor(color);
        edit->setValueText(text);
        return edit;
    };
    for (int i = 0; i < 4; ++i) {
        const int y = 590 + 35 * i;
        addLabel(872, y + 4, 60, fieldStates[i]);
        NumberEdit* edit = number({936, y, 92, 24}, QStringLiteral("-5.5"), theme::level);
        putInto(*edit, i);
    }
    addLabel(1042, 594, 78, QStringLiteral("read-only"));
    auto* readOnly = new CReadOnlyEdit(noId, this);
    readOnly->setGeometry(1122, 590, 118, 24);
    readOnly->setText(QStringLiteral("0x00010002"));
    addLabel(1042, 630, 78, QStringLiteral("up-down"));
    for (int i = 0; i < 2; ++i) {
        auto* spin = new SpinEdit(noId, this);
        spin->setRange(0, 4);
        spin->setValue(2);
        spin->setGeometry(1100 + 74 * i, 625, 66, 26);
        spin->setEnabled(i == 0);
    }
    addLabel(1042, 664, 78, QStringLiteral("frequency"));
    number({1122, 660, 58, 24}, QStringLiteral("16000"), theme::frequency);
    number({1190, 660, 58, 24}, QStringLiteral("20000"), theme::frequency)->setBypassed(true);
    addLabel(1042, 699, 78, QStringLiteral("time, centred"));
    number({1122, 695, 58, 24}, QStringLiteral("120"), theme::quality);
    number({1190, 695, 47, 24}, QStringLiteral("68.6"), theme::quality)->setAlignment(Qt::AlignCenter);
}

void ControlSheet::addTabs() {
    addSection({24, 760, 612, 130}, QStringLiteral("Tab bar"));
    for (int i = 0; i < 2; ++i) {
        auto* tabs = new SkinTabBar(noId, this);
        if (i == 0) {
            tabs->addFixedTab(QStringLiteral("Equalizing Input"), 138);
            tabs->addFixedTab(QStringLiteral("Channel Config"), 124);
            tabs->addFixedTab(QStringLiteral("Equalizing Output"), 144);
        } else {
            tabs->addFixedTab(QStringLiteral("Output Group"), 112);
        }
        tabs->setGeometry(i == 0 ? 48 : 462, 816, i == 0 ? 412 : 114, 34);
        tabs->setCurrentIndex(i == 0 ? 2 : 0);
        if (i == 0) {
            QHoverEvent hover(QEvent::HoverMove, QPointF(200, 10), QPointF(200, 10), QPointF());
            QApplication::sendEvent(tabs, &hover);
        } else {
            sendFocus(*tabs);
        }
    }
    const QStringList names{QStringLiteral("normal"), QStringLiteral("hover"), QStringLiteral("selected"),
                            QStringLiteral("selected, focus")};
    const int lefts[]{48, 188, 314, 462};
    const int widths[]{138, 124, 144, 112};
    for (int i = 0; i < 4; ++i) {
        addCentred(lefts[i], 862, widths[i], names[i]);
    }
}

void ControlSheet::addLights() {
    addSection({652, 760, 300, 130}, QStringLiteral("Clip and state lights"));
    const QStringList names{QStringLiteral("no clip"), QStringLiteral("clip"), QStringLiteral("empty"),
                            QStringLiteral("off"), QStringLiteral("on")};
    const ClipLight::Picture pictures[]{ClipLight::Picture::notClipping, ClipLight::Picture::clipping,
                                        ClipLight::Picture::socket};
    for (int i = 0; i < 5; ++i) {
        const int middle = 694 + 54 * i;
        if (i < 3) {
            (new ClipLight(pictures[i], 22, noId, this))->move(middle - 17, 788);
            (new ClipLight(pictures[i], 28, noId, this))->move(middle - 22, 818);
        } else {
            auto* lamp = new StateLamp(12, noId, this);
            lamp->setLit(i == 4);
            lamp->move(middle - 9, 809);
        }
        addCentred(middle - 27, 868, 54, names[i]);
    }
}

void ControlSheet::addMenu() {
    addSection({968, 760, 288, 130}, QStringLiteral("Menu, list, scroll bar"));
    auto* menu = new QMenu(this);
    menu->addAction(QStringLiteral("Open"));
    menu->addAction(QStringLiteral("Save"));
    menu->addSeparator();
    menu->addAction(QStringLiteral("Export"))->setEnabled(false);
    menu->setActiveAction(menu->actions().front());
    menu->setWindowFlags(Qt::Widget);
    menu->setGeometry(QRect(QPoint(984, 792), menu->sizeHint()));
    auto* list = new QListWidget(this);
    list->setFont(theme::fixedFont(11));
    for (int i = 0; i < 12; ++i) {
        list->addItem(QStringLiteral("ST-->    line %1").arg(i));
    }
    list->setCurrentRow(1);
    list->setGeometry(1096, 792, 148, 92);
}

void ControlSheet::addGroups() {
    addSection({24, 906, 392, 200}, QStringLiteral("Group box"));
    auto* on = new SkinGroupBox(QStringLiteral("Filter 1"), noId, this);
    on->setGeometry(40, 944, 110, 146);
    on->setInCircuit(true);
    auto* off = new SkinGroupBox(QStringLiteral("Filter 6"), noId, this);
    off->setGeometry(160, 944, 110, 146);
    off->setInCircuit(false);
    addLabel(52, 970, 90, QStringLiteral("in circuit"));
    addLabel(172, 970, 90, QStringLiteral("bypassed"));
    auto* outer = new SkinGroupBox(QStringLiteral("Output Gain"), noId, this);
    outer->setGeometry(280, 944, 120, 146);
    auto* inner = new SkinGroupBox(QStringLiteral("Channel 1"), noId, this, SkinGroupBox::Kind::inset);
    inner->setGeometry(290, 976, 100, 102);
    inner->setBar(QColor::fromRgb(theme::groups[1]));
    addCentred(290, 1010, 100, QStringLiteral("inset group"));
}

void ControlSheet::addMessages() {
    addSection({432, 906, 824, 200}, QStringLiteral("Message boxes"));
    const QString title = QStringLiteral("Tessavo Velmira");
    auto* first = new SkinMessageBox(
        title, QStringLiteral("Are you sure?\r\nThe current channel settings will be lost!"),
        SkinMessageBox::Icon::stop, SkinMessageBox::Buttons::okCancel, this);
    auto* second = new SkinMessageBox(
        title, QStringLiteral("The current settings will be lost!\r\n Do you want to save settings?"),
        SkinMessageBox::Icon::stop, SkinMessageBox::Buttons::yesNoCancel, this);
    auto* third = new SkinMessageBox(title, QStringLiteral("Please turn on Live Mode"),
                                     SkinMessageBox::Icon::none, SkinMessageBox::Buttons::ok, this);
    auto* fourth = new SkinMessageBox(title, QStringLiteral("Settings saved"), SkinMessageBox::Icon::info,
                                      SkinMessageBox::Buttons::ok, this);
    // A dialog that is shown gives its window's focus anew.
    if (focusWidget() != nullptr) {
        focusWidget()->clearFocus();
    }
    int x = 440;
    int y = 938;
    for (SkinMessageBox* box : {first, second, third, fourth}) {
        box->setWindowFlags(Qt::Widget);
        box->move(x, y);
        box->show();
        x += box->width() + 8;
        if (box == second) {
            x = 40;
            y = 1290;
        }
    }
    sendFocus(*second->buttons().front());
}

void ControlSheet::addTransfers() {
    addSection({24, 1122, 740, 136}, QStringLiteral("Transfer progress"));
    for (int i = 0; i < 4; ++i) {
        auto* line = new TransferLine(noId, this);
        line->setGeometry(110, 1158 + 24 * i, 600, 16);
        line->setLineLength(300);
        if (i > 0) {
            line->showProgress(37, 512, 9200ms);
        }
        if (i == 2) {
            line->showStopped();
        } else if (i == 3) {
            line->showDone();
        }
    }
    const QStringList names{QStringLiteral("idle"), QStringLiteral("running"), QStringLiteral("stopped"),
                            QStringLiteral("done")};
    for (int i = 0; i < 4; ++i) {
        addLabel(40, 1158 + 24 * i, 60, names[i]);
    }
}

void ControlSheet::addPalette() {
    addSection({780, 1122, 476, 136}, QStringLiteral("Type"));
    struct Sample {
        QString text;
        QFont font;
        QRgb color;
    };
    const Sample samples[]{
        {QStringLiteral("15 / 500  Clip Detection is ON"), theme::font(15, QFont::Medium), theme::text},
        {QStringLiteral("12 / 400  Enabled  16000  -5.5"), theme::font(12), theme::text},
        {QStringLiteral("11 / 400  Freq  Gain  [dB]  Hz"), theme::font(11), theme::text2},
        {QStringLiteral("ERR-->   Can't connect to Target"), theme::fixedFont(11), theme::trouble}};
    for (int i = 0; i < 4; ++i) {
        addText({796, 1156 + 24 * i, 440, 22}, samples[i].text, samples[i].font, samples[i].color,
                Qt::AlignLeft);
    }
}

}  // namespace tessavo::test
