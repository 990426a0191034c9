#include "pages/input/input_eq.h"

#include <QCoreApplication>
#include <QLabel>

#include "comm/target_commands.h"
#include "controls/bitmap_slider.h"
#include "controls/control_id.h"
#include "controls/note_mark.h"
#include "controls/number_edit.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_group_box.h"
#include "controls/slider_event.h"

namespace tessavo {

namespace {

constexpr std::array<const char*, inputSectionCount> bandHeads{
    "60", "170", "310", "600", "1K", "3K", "6K", "12K", "14K", "16K", "Bass", "Mid", "Treble"};

struct Level {
    FieldId field;
    const char* title;
};

constexpr std::array<Level, 6> levels{{
    {FieldId::inputGain, "Gain"},
    {FieldId::preampGain, "Preamp"},
    {FieldId::powerampGain, "Poweramp"},
    {FieldId::lineInGain, "Line-In Gain"},
    {FieldId::suppression, "Suppression"},
    {FieldId::gainDetectionLevel, "Gain Detection"},
}};

struct CompressorColumn {
    FieldId field;
    const char* head;
    const char* unit;
    const char* name;
    QRgb color;
};

constexpr std::array<CompressorColumn, 6> compressorColumns{{
    {FieldId::compressorCrossover, "Crossover", "Hz", "Compressor crossover", theme::frequency},
    {FieldId::pone, "PONE", "dB", "PONE", theme::level},
    {FieldId::compressorLowerLimit, "Compressor\nLower Limit", "dB", "Compressor lower limit", theme::level},
    {FieldId::compressorGain, "Gain", "dB", "Compressor gain", theme::level},
    {FieldId::expanderUpperLimit, "Expander\nUpper Limit", "dB", "Expander upper limit", theme::level},
    {FieldId::expanderFactor, "Expander\nFactor", "", "Expander factor", theme::level},
}};

struct CompressorTime {
    FieldId field;
    int id;
    const char* caption;
    const char* name;
    int y;  ///< of the edit box
};

constexpr std::array<CompressorTime, 2> compressorTimes{{
    {FieldId::compressorAttack, input_eq_id::attackTime, "Attacktime", "Compressor attack time", 500},
    {FieldId::compressorRelease, input_eq_id::releaseTime, "Releasetime", "Compressor release time", 554},
}};

// Lines behind the band sliders at +20, +10, 0, -10 and -20 dB, where the middle of a cap stands.
constexpr std::array<int, 5> rulerLines{77, 120, 163, 205, 248};
constexpr int zeroLine = 163;
constexpr QRgb ruler = 0xFF28303A;
constexpr QRgb zeroRuler = 0xFF46535F;

constexpr Qt::Alignment rightAligned = Qt::AlignRight | Qt::AlignVCenter;

}  // namespace

CInputEQ::CInputEQ(TuningState& tuning, IMessageBox& boxes, QWidget* parent)
    : ParameterPage(tuning, parent), boxes_(boxes) {
    makeEqualizer();
    makeTone();
    makeLevels();
    makeCompressor();
    refresh();
}

void CInputEQ::addRuler(int left, int right, SkinGroupBox* group) {
    for (const int y : rulerLines) {
        addLine({left, y, right - left, 1}, group, y == zeroLine ? zeroRuler : ruler);
    }
}

SliderBinding& CInputEQ::addBand(std::size_t inputBand, int left, int width, const QString& head,
                                 const QString& name, SkinGroupBox* group) {
    const bool graphic = inputBand < inputBandCount;
    const BoundField bound = graphic ? BoundField{FieldId::inputBandGain, inputBand}
                                     : BoundField{FieldId::toneGain, inputBand - inputBandCount};
    const int center = left + width / 2;
    addLabel(head, {left, 50, width, 14}, group, Qt::AlignCenter, theme::text);
    SliderBinding& made = addSlider({bound,
                                     input_eq_id::firstBandSlider + static_cast<int>(inputBand),
                                     input_eq_id::firstBandEdit + static_cast<int>(inputBand),
                                     Qt::Vertical,
                                     {center - 14, 68, 28, 190},
                                     {center - 25, 266, 50, 24},
                                     theme::level},
                                    name, group);
    made.setTyping(Typing::rewritten);
    // The lines of the group are the ruler.
    made.slider().setTicks({});
    made.edit().setColor(0);
    made.edit().setAlignment(Qt::AlignCenter);
    bands_[inputBand] = &made;
    return made;
}

void CInputEQ::makeEqualizer() {
    equalizer_ = addGroup(QStringLiteral("Equalizer"), {0, 8, 656, 292});
    eqOn_ = addButton(QStringLiteral("EQ On"), input_eq_id::eqOn, {470, 16, 92, 26}, equalizer_);
    eqOn_->setToggle(true);
    connect(eqOn_, &QAbstractButton::clicked, this, &CInputEQ::toggleEqualizer);
    eqNote_ = new NoteMark(input_eq_id::eqNote, equalizer_, Qt::AlignRight);
    eqNote_->setGeometry(placeIn(equalizer_, {120, 20, 340, NoteMark::markHeight}));
    CxSkinButton* resetButton =
        addButton(QStringLiteral("Reset"), input_eq_id::reset, {570, 16, 74, 26}, equalizer_);
    connect(resetButton, &QAbstractButton::clicked, this, &CInputEQ::reset);
    addRuler(56, 644, equalizer_);
    addLabel(QStringLiteral("Hz"), {6, 50, 42, 14}, equalizer_, rightAligned);
    addLabel(QStringLiteral("20 dB"), {6, 70, 42, 15}, equalizer_, rightAligned);
    addLabel(QStringLiteral("-20 dB"), {6, 241, 42, 15}, equalizer_, rightAligned);
    addLabel(QStringLiteral("dB"), {6, 266, 42, 24}, equalizer_, rightAligned);
    std::vector<QWidget*> order{eqOn_, resetButton};
    for (std::size_t band = 0; band < inputBandCount; ++band) {
        const QString head = QLatin1String(bandHeads[band]);
        const double frequencyHz = shown({FieldId::inputBandFrequency, band});
        const QString name = QStringLiteral("%1 Hz gain").arg(frequencyHz, 0, 'f', 0);
        order.push_back(
            &addBand(band, 58 + 58 * static_cast<int>(band), 58, head, name, equalizer_).slider());
    }
    for (std::size_t band = 0; band < inputBandCount; ++band) {
        order.push_back(&bands_[band]->edit());
    }
    setReadingOrder(order);
}

void CInputEQ::makeTone() {
    tone_ = addGroup(QStringLiteral("Tone"), {666, 8, 318, 292});
    addRuler(724, 972, tone_);
    addLabel(QStringLiteral("20 dB"), {672, 70, 46, 15}, tone_, rightAligned);
    addLabel(QStringLiteral("-20 dB"), {672, 241, 46, 15}, tone_, rightAligned);
    addLabel(QStringLiteral("dB"), {672, 266, 46, 24}, tone_, rightAligned);
    std::vector<QWidget*> order;
    for (std::size_t band = inputBandCount; band < inputSectionCount; ++band) {
        const QString head = QLatin1String(bandHeads[band]);
        const int left = 725 + 82 * static_cast<int>(band - inputBandCount);
        order.push_back(&addBand(band, left, 82, head, head + QStringLiteral(" gain"), tone_).slider());
    }
    for (std::size_t band = inputBandCount; band < inputSectionCount; ++band) {
        order.push_back(&bands_[band]->edit());
    }
    setReadingOrder(order);
}

void CInputEQ::makeLevels() {
    for (int i = 0; i < static_cast<int>(levels.size()); ++i) {
        const Level& level = levels[static_cast<std::size_t>(i)];
        const QString title = QLatin1String(level.title);
        const int top = 310 + 48 * i;
        SkinGroupBox* group = addGroup(title, {0, top, 394, 38});
        group->setTitlePlace({12, 11});
        if (level.field == FieldId::gainDetectionLevel) {
            addLabel(QStringLiteral("Level"), {134, top + 7, 34, 24}, group, rightAligned);
        }
        levels_.push_back(&addSlider({{level.field},
                                      input_eq_id::firstLevelSlider + i,
                                      input_eq_id::firstLevelEdit + i,
                                      Qt::Horizontal,
                                      {172, top + 5, 138, 28},
                                      {316, top + 7, 50, 24},
                                      theme::level},
                                     title, group));
        levels_.back()->setTyping(Typing::rewritten);
        addLabel(QStringLiteral("dB"), {370, top + 7, 18, 24}, group);
    }
}

void CInputEQ::makeCompressor() {
    compressor_ = addGroup(QStringLiteral("Compressor"), {404, 310, 580, 278});
    for (int i = 0; i < static_cast<int>(compressorColumns.size()); ++i) {
        const CompressorColumn& column = compressorColumns[static_cast<std::size_t>(i)];
        const int left = 412 + 75 * i;
        addLabel(QLatin1String(column.head), {left, 340, 75, 28}, compressor_,
                 Qt::AlignHCenter | Qt::AlignBottom);
        SliderBinding& made = addSlider({{column.field},
                                         input_eq_id::firstCompressorSlider + i,
                                         input_eq_id::firstCompressorEdit + i,
                                         Qt::Vertical,
                                         {left + 24, 372, 28, 174},
                                         {left + 2, 554, 50, 24},
                                         column.color},
                                        QLatin1String(column.name), compressor_);
        made.setTyping(Typing::rewritten);
        compressorSliders_.push_back(&made);
        compressorControls_.push_back(&made);
        if (column.unit[0] != '\0') {
            addLabel(QLatin1String(column.unit), {left + 55, 554, 20, 24}, compressor_);
        }
    }
    addLine({872, 344, 1, 234}, compressor_);
    disabled_ =
        &addCheck({FieldId::compressorDisabled}, input_eq_id::compressorDisabled, {883, 341, 91, 22},
                  QStringLiteral("Disable"), false, QStringLiteral("Compressor disable"), compressor_);
    std::vector<QWidget*> order;
    for (SliderBinding* slider : compressorSliders_) {
        order.push_back(&slider->slider());
    }
    for (SliderBinding* slider : compressorSliders_) {
        order.push_back(&slider->edit());
    }
    order.push_back(&disabled_->box());
    for (const CompressorTime& time : compressorTimes) {
        addLabel(QLatin1String(time.caption), {886, time.y - 18, 90, 14}, compressor_);
        NumberBinding& made = addNumber({time.field}, time.id, {886, time.y, 56, 24}, theme::quality,
                                        QLatin1String(time.name), compressor_);
        compressorControls_.push_back(&made);
        order.push_back(&made.edit());
        addLabel(QStringLiteral("ms"), {946, time.y, 28, 24}, compressor_);
    }
    setReadingOrder(order);
}

void CInputEQ::write(BoundField bound, double value, bool final) {
    switch (bound.field) {
        case FieldId::inputBandGain:
            tuning().setInputBandGain(bound.part, static_cast<float>(value), final);
            break;
        case FieldId::toneGain:
            tuning().setInputBandGain(inputBandCount + bound.part, static_cast<float>(value), final);
            break;
        default:
            ParameterPage::write(bound, value, final);
    }
}

bool CInputEQ::isEqualizerOn() const {
    return tuning().image().inputRow0.bypass != 1;
}

void CInputEQ::updateLook() {
    const bool on = isEqualizerOn();
    eqOn_->setText(on ? QStringLiteral("EQ On") : QStringLiteral("EQ Off"));
    eqOn_->setOn(on);
    equalizer_->setInCircuit(on);
    tone_->setInCircuit(on);
    for (SliderBinding* band : bands_) {
        band->setBypassed(!on);
    }
    showFileState(on);
    const bool compressing = !disabled_->box().isChecked();
    compressor_->setInCircuit(compressing);
    for (Binding* control : compressorControls_) {
        control->setBypassed(!compressing);
    }
}

// The image's bypass byte plays; a file gets the record's switch.
void CInputEQ::showFileState(bool on) {
    const InputGainRow& first = tuning().image().inputRow0;
    const InputGainRow& second = tuning().image().inputRow1;
    const bool onInFile = tuning().currentParameterSet().inputEqOn != 0;
    QStringList lines;
    QStringList sentences;
    if (onInFile != on) {
        const auto word = onInFile ? QStringLiteral("on") : QStringLiteral("off");
        lines << QStringLiteral("the set's file says ") + word;
        sentences << QStringLiteral(
                         "The set's file says %1: a file saved now holds the input equalizer "
                         "switched %1")
                         .arg(word);
    }
    if (first.bypass != second.bypass || first.bypass > 1) {
        lines << QStringLiteral("odd bypass bytes");
        sentences << QStringLiteral("What plays has the bypass bytes %1 and %2")
                         .arg(first.bypass)
                         .arg(second.bypass);
    }
    eqNote_->setNote(lines.join(QStringLiteral("; ")), sentences.join(QLatin1Char('\n')));
    eqOn_->setMark(eqNote_->toolTip());
}

void CInputEQ::toggleEqualizer() {
    tuning().setInputEqOn(!isEqualizerOn());
    updateLook();
}

void CInputEQ::applyAll() {
    for (std::size_t band = 0; band < inputSectionCount; ++band) {
        const bool last = band + 1 == inputSectionCount;
        tuning().setInputBandGain(band, static_cast<float>(bands_[band]->value()), last);
    }
    updateMarks();
}

void CInputEQ::reset() {
    if (tuning().liveMode()) {
        boxes_.showPlain(turnOffLiveModeText);
        return;
    }
    if (boxes_.show("Are you sure?\r\nThe current settings will be lost!", BoxIcon::error,
                    BoxButtons::okCancel) != BoxAnswer::ok) {
        return;
    }
    const auto toZero = [this](SliderBinding& binding) {
        CBitmapSlider& slider = binding.slider();
        slider.setPosition(0);
        QCoreApplication::postEvent(
            this, new SliderEvent(SliderEvent::released, controlId(slider), slider.position()));
    };
    for (SliderBinding* band : bands_) {
        toZero(*band);
    }
    for (SliderBinding* level : levels_) {
        toZero(*level);
    }
    for (SliderBinding* slider : compressorSliders_) {
        toZero(*slider);
    }
}

}  // namespace tessavo
