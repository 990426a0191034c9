#include "pages/input/input_eq.h"

#include <QCoreApplication>

#include "comm/target_commands.h"
#include "controls/bitmap_slider.h"
#include "controls/note_mark.h"
#include "controls/skin_button.h"
#include "controls/slider_event.h"

namespace tessavo {

CInputEQ::CInputEQ(TuningState& tuning, IMessageBox& boxes, QWidget* parent)
    : ParameterPage(tuning, parent), boxes_(boxes) {
    form().setTyping(Typing::rewritten);
    form().build(inputEqRows());
    form().onClick(input_eq_id::eqOn, [this] { toggleEqualizer(); });
    form().onClick(input_eq_id::reset, [this] { reset(); });
    refresh();
}

bool CInputEQ::isEqualizerOn() const {
    return tuning().image().inputRow0.bypass != 1;
}

void CInputEQ::updateLook() {
    const bool on = isEqualizerOn();
    auto& button = form().control<CxSkinButton>(input_eq_id::eqOn);
    button.setText(on ? QStringLiteral("EQ On") : QStringLiteral("EQ Off"));
    button.setOn(on);
    form().setInCircuit("Equalizer", on);
    form().setInCircuit("Tone", on);
    showFileState(on);
    const auto& disabled = form().control<QAbstractButton>(input_eq_id::compressorDisabled);
    form().setInCircuit("Compressor", !disabled.isChecked());
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
    auto& note = form().control<NoteMark>(input_eq_id::eqNote);
    note.setNote(lines.join(QStringLiteral("; ")), sentences.join(QLatin1Char('\n')));
    form().control<CxSkinButton>(input_eq_id::eqOn).setMark(note.toolTip());
}

void CInputEQ::toggleEqualizer() {
    tuning().setInputEqOn(!isEqualizerOn());
    updateLook();
}

void CInputEQ::applyAll() {
    for (std::size_t band = 0; band < inputSectionCount; ++band) {
        const bool last = band + 1 == inputSectionCount;
        const int slider = input_eq_id::firstBandSlider + static_cast<int>(band);
        const double gainDb = form().binding<SliderBinding>(slider).value();
        tuning().setInputBandGain(band, static_cast<float>(gainDb), last);
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
    for (const Form::Bound& bound : form().bindings()) {
        if (auto* binding = qobject_cast<SliderBinding*>(bound.binding.get())) {
            CBitmapSlider& slider = binding->slider();
            slider.setPosition(0);
            QCoreApplication::postEvent(
                this, new SliderEvent(SliderEvent::released, bound.identifier, slider.position()));
        }
    }
}

}  // namespace tessavo
