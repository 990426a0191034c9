#include "pages/output/clip_detect_dlg.h"

#include <QLabel>
#include <QPainter>
#include <utility>

#include "controls/clip_light.h"
#include "controls/control_id.h"
#include "controls/skin_button.h"
#include "controls/skin_group_box.h"
#include "controls/skin_painter.h"
#include "controls/state_lamp.h"
#include "controls/theme.h"

namespace tessavo {

namespace {

constexpr int columnWidth = 228;
constexpr int columnStep = 252;
constexpr int columnTop = 80;
constexpr int firstRowTop = 120;
constexpr int rowStep = 47;
constexpr int captionLine = 36;
constexpr int smallLight = 22;
constexpr int largeLight = 28;

/// Numbers of the lights of a row; in a stage's column those of its first, and the others follow.
struct LightIds {
    int clipping;
    int notClipping;
};
constexpr std::array<LightIds, clipStages.size()> columnIds{
    {{1386, 1392}, {1380, 1398}, {1404, 1412}, {1420, 1428}}};

/// By row. The target pairs each amplifier's quiet picture with the other row.
constexpr std::array<LightIds, clipAmplifierNames.size()> amplifierIds{{{1376, 1377}, {1375, 1378}}};

QString textOf(std::string_view text) {
    return QLatin1String(text.data(), static_cast<qsizetype>(text.size()));
}

/// A column's card with the lines between its rows.
class ColumnBox : public SkinGroupBox {
 public:
    ColumnBox(const ClipStage& stage, int id, QWidget* parent)
        : SkinGroupBox(textOf(stage.caption), id, parent), rows_(static_cast<int>(stage.names.size())) {
        setFont(theme::font(13, QFont::DemiBold));
        setTitlePlace({16, 10});
    }

 protected:
    void paintEvent(QPaintEvent* event) override {
        SkinGroupBox::paintEvent(event);
        SkinPainter painter(this);
        const auto line = [&](int left, int top, int width, QRgb color) {
            painter.fillRect(painter.snapped(QRectF(left, top, width, painter.hair())),
                             QColor::fromRgb(color));
        };
        line(1, captionLine, width() - 2, theme::line);
        for (int row = 1; row < rows_; ++row) {
            line(16, firstRowTop - columnTop + rowStep * row, width() - 32, theme::rowDivider);
        }
    }

 private:
    int rows_;
};

}  // namespace

CClipDetectDlg::CClipDetectDlg(Parts parts, QWidget* parent) : CTabDialog(parent) {
    makeSwitch();
    for (std::size_t group = 0; group < groupCount; ++group) {
        makeColumn(group);
    }
    for (std::size_t row = 0; row < amplifierCount; ++row) {
        makeAmplifier(row);
    }
    const auto deliver = [this](const std::optional<ClipState>& state) {
        calls_.call([this, state] {
            // An answer that was under way when a person switched off is no longer wanted.
            if (!isOn()) {
                return;
            }
            if (state) {
                showState(*state);
                noteAnswer();
            } else {
                noteNoAnswer();
            }
        });
    };
    poller_ = std::make_unique<ClipPoller>(
        ClipPoller::Outside{std::move(parts.ask), std::move(parts.takeTurn), deliver}, parts.clock);
}

CClipDetectDlg::~CClipDetectDlg() {
    // The thread first: it posts to this object.
    poller_.reset();
}

void CClipDetectDlg::makeSwitch() {
    switchGroup_ = new SkinGroupBox(QString(), clip_id::switchGroup, this);
    switchGroup_->setGeometry(0, 8, 984, 62);
    switchGroup_->setAccessibleName(QStringLiteral("Clip Detection"));
    switchGroup_->setInCircuit(false);
    auto* button = new CxSkinButton(QStringLiteral("On/Off"), clip_id::onOff, this);
    button->setGeometry(16, 23, 112, 32);
    button->setAccessibleName(QStringLiteral("Clip Detection On/Off"));
    connect(button, &QAbstractButton::clicked, this, &CClipDetectDlg::toggle);
    lamp_ = new StateLamp(12, clip_id::stateLamp, this);
    lamp_->move(147, 30);
    state_ = addLabel(QStringLiteral("Clip Detection is OFF"), {174, 23, 200, 32}, clip_id::state);
    state_->setFont(theme::font(15, QFont::Medium));
    answers_ = addLabel(QString(), {382, 23, 586, 32}, clip_id::lastAnswer);
}

void CClipDetectDlg::makeColumn(std::size_t group) {
    const ClipStage& stage = clipStages[group];
    const int left = columnStep * static_cast<int>(group);
    auto* box = new ColumnBox(stage, clip_id::firstColumn + static_cast<int>(group), this);
    box->setGeometry(left, columnTop, columnWidth, 424);
    for (std::size_t row = 0; row < stage.names.size(); ++row) {
        const int number = static_cast<int>(row);
        const int top = firstRowTop + rowStep * number;
        const QString name = textOf(stage.names[row]);
        addLabel(name, {left + 16, top, 140, rowStep});
        lights_[group][row] = addLight({left + 178, top + 7}, smallLight, columnIds[group].clipping + number,
                                       columnIds[group].notClipping + number,
                                       textOf(stage.caption) + QStringLiteral(", ") + name);
    }
}

void CClipDetectDlg::makeAmplifier(std::size_t row) {
    const QString caption = textOf(clipAmplifierNames[row]) + QStringLiteral(" Clipping Status");
    const int left = 504 * static_cast<int>(row);
    auto* box = new SkinGroupBox(QString(), clip_id::firstAmplifier + static_cast<int>(row), this);
    box->setGeometry(left, 514, 480, 74);
    box->setAccessibleName(caption);
    addLabel(caption, {left + 16, 535, 320, 32});
    amplifiers_[row] = addLight({left + 425, 529}, largeLight, amplifierIds[row].clipping,
                                amplifierIds[row].notClipping, caption);
}

CClipDetectDlg::Pair CClipDetectDlg::addLight(const QPoint& place, int diameter, int clippingId,
                                              int notClippingId, const QString& name) {
    const auto add = [&](ClipLight::Picture picture, int id) {
        auto* light = new ClipLight(picture, diameter, id, this);
        light->move(place);
        return light;
    };
    add(ClipLight::Picture::socket, -1);
    // Made last, the clipping picture lies above: where both are shown the warning is what a person sees.
    auto* notClipping = add(ClipLight::Picture::notClipping, notClippingId);
    auto* clipping = add(ClipLight::Picture::clipping, clippingId);
    notClipping->setAccessibleName(name + QStringLiteral(": not clipping"));
    clipping->setAccessibleName(name + QStringLiteral(": clipping"));
    clipping->hide();
    return {clipping, notClipping};
}

QLabel* CClipDetectDlg::addLabel(const QString& text, const QRect& place, int id) {
    auto* label = new QLabel(text, this);
    if (id >= 0) {
        setControlId(*label, id);
    }
    label->setGeometry(place);
    label->setFont(theme::font(13));
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, QColor::fromRgb(theme::text));
    label->setPalette(palette);
    return label;
}

void CClipDetectDlg::toggle() {
    const bool on = !poller_->isOn();
    poller_->setOn(on);
    state_->setText(on ? QStringLiteral("Clip Detection is ON") : QStringLiteral("Clip Detection is OFF"));
    answeredAt_ = {};
    silentSince_ = {};
    showAnswerTimes();
    lamp_->setLit(on);
    switchGroup_->setInCircuit(on);
    update();
    Q_EMIT switched(on);
}

void CClipDetectDlg::noteAnswer() {
    answeredAt_ = QTime::currentTime();
    silentSince_ = {};
    showAnswerTimes();
}

void CClipDetectDlg::noteNoAnswer() {
    if (isOn() && !silentSince_.isValid()) {
        silentSince_ = QTime::currentTime();
        showAnswerTimes();
    }
}

void CClipDetectDlg::showAnswerTimes() {
    const auto text = [](QTime time) { return time.toString(QStringLiteral("HH:mm:ss")); };
    QString words;
    if (answeredAt_.isValid()) {
        words = QStringLiteral("last answer ") + text(answeredAt_);
        if (silentSince_.isValid()) {
            words += QStringLiteral(", none since ") + text(silentSince_);
        }
    } else if (silentSince_.isValid()) {
        words = QStringLiteral("no answer since ") + text(silentSince_);
    } else if (isOn()) {
        words = QStringLiteral("no answer yet");
    }
    QPalette palette = answers_->palette();
    palette.setColor(QPalette::WindowText,
                     QColor::fromRgb(silentSince_.isValid() ? theme::trouble : theme::text2));
    answers_->setPalette(palette);
    answers_->setText(words);
}

void CClipDetectDlg::showState(const ClipState& state) {
    for (std::size_t group = 0; group < groupCount; ++group) {
        const std::span<const std::size_t> rows = clipStages[group].rows;
        for (std::size_t entry = 0; entry < rows.size(); ++entry) {
            const Pair& light = lights_[group][rows[entry]];
            const bool clips = state.groups[group][entry] != 0;
            light.clipping->setVisible(clips);
            light.notClipping->setVisible(!clips);
        }
    }
    for (std::size_t i = 0; i < amplifierCount; ++i) {
        // The target's wiring pairs each amplifier's quiet picture with the other row's place.
        const bool clips = state.amplifiers[i] != 0;
        amplifiers_[i].clipping->setVisible(clips);
        amplifiers_[amplifierCount - 1 - i].notClipping->setVisible(!clips);
    }
}

void CClipDetectDlg::paintEvent(QPaintEvent* event) {
    CTabDialog::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor::fromRgb(theme::mark), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    // The signal flows from column to column.
    for (int column = 0; column + 1 < static_cast<int>(groupCount); ++column) {
        const QPointF at(columnStep * column + columnWidth + 7, columnTop + 203);
        const std::array<QPointF, 3> chevron{at + QPointF(1.5, 1.5), at + QPointF(8.5, 9),
                                             at + QPointF(1.5, 16.5)};
        painter.drawPolyline(chevron.data(), static_cast<int>(chevron.size()));
    }
}

}  // namespace tessavo
