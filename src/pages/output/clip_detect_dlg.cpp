#include "pages/output/clip_detect_dlg.h"

#include <QLabel>
#include <QPainter>
#include <utility>

#include "controls/clip_light.h"
#include "controls/skin_group_box.h"
#include "controls/state_lamp.h"
#include "controls/theme.h"

namespace tessavo {

CClipDetectDlg::CClipDetectDlg(Dependencies dependencies, QWidget* parent)
    : CTabDialog(parent), form_(*this) {
    // The pictures of an indicator lie upon each other.
    std::size_t made = 0;
    form_.build(clipRows(), [&made](const ControlRow& row, QWidget& place) {
        constexpr std::array pictures{ClipLight::Picture::socket, ClipLight::Picture::notClipping,
                                      ClipLight::Picture::clipping};
        const int diameter = row.bounds.width == 34 ? 22 : 28;
        return new ClipLight(pictures[made++ % pictures.size()], diameter, row.identifier, &place);
    });
    form_.onClick(clip_id::onOff, [this] { toggle(); });
    form_.control<QLabel>(clip_id::state).setFont(theme::font(15, QFont::Medium));
    form_.control<SkinGroupBox>(clip_id::switchGroup).setInCircuit(false);
    for (std::size_t stage = 0; stage < clipStages.size(); ++stage) {
        form_.control<SkinGroupBox>(clip_id::firstColumn + static_cast<int>(stage))
            .setFont(theme::font(13, QFont::DemiBold));
    }
    showState({});
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
        ClipPoller::Dependencies{std::move(dependencies.ask), std::move(dependencies.takeTurn), deliver},
        dependencies.clock);
}

CClipDetectDlg::~CClipDetectDlg() {
    // The thread first: it posts to this object.
    poller_.reset();
}

void CClipDetectDlg::toggle() {
    const bool on = !poller_->isOn();
    poller_->setOn(on);
    form_.control<QLabel>(clip_id::state)
        .setText(on ? QStringLiteral("Clip Detection is ON") : QStringLiteral("Clip Detection is OFF"));
    answeredAt_ = {};
    silentSince_ = {};
    showAnswerTimes();
    form_.control<StateLamp>(clip_id::stateLamp).setLit(on);
    form_.control<SkinGroupBox>(clip_id::switchGroup).setInCircuit(on);
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
    auto& answers = form_.control<QLabel>(clip_id::lastAnswer);
    setTextColour(answers, silentSince_.isValid() ? theme::trouble : theme::text2);
    answers.setText(words);
}

void CClipDetectDlg::showState(const ClipState& state) {
    const auto showPicture = [this](int picture, bool shown) {
        form_.control<ClipLight>(picture).setVisible(shown);
    };
    for (std::size_t stage = 0; stage < clipStages.size(); ++stage) {
        const std::span<const std::size_t> rows = clipStages[stage].rows;
        for (std::size_t entry = 0; entry < rows.size(); ++entry) {
            const clip_id::LightIds light = clip_id::light(stage, rows[entry]);
            const bool clips = state.groups[stage][entry] != 0;
            showPicture(light.clipping, clips);
            showPicture(light.notClipping, !clips);
        }
    }
    for (std::size_t i = 0; i < clipAmplifierNames.size(); ++i) {
        const bool clips = state.amplifiers[i] != 0;
        showPicture(clip_id::amplifiers[i].clipping, clips);
        // The target's wiring pairs each amplifier's quiet picture with the other row's place.
        showPicture(clip_id::amplifiers[clipAmplifierNames.size() - 1 - i].notClipping, !clips);
    }
}

void CClipDetectDlg::paintEvent(QPaintEvent* event) {
    CTabDialog::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor::fromRgb(theme::mark), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    // The signal flows from column to column.
    for (std::size_t stage = 0; stage + 1 < clipStages.size(); ++stage) {
        const QRect column = rectOf(clipColumnPlace(stage));
        const QPointF at(column.right() + 8, column.top() + 203);
        const std::array<QPointF, 3> chevron{at + QPointF(1.5, 1.5), at + QPointF(8.5, 9),
                                             at + QPointF(1.5, 16.5)};
        painter.drawPolyline(chevron.data(), static_cast<int>(chevron.size()));
    }
}

}  // namespace tessavo
