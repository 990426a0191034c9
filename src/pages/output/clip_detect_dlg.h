#pragma once

#include <QTime>
#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

#include "comm/clip_layout.h"
#include "comm/target_commands.h"
#include "controls/tab_dialog.h"
#include "controls/ui_calls.h"
#include "pages/output/clip_poller.h"

class QLabel;

namespace tessavo {

class ClipLight;
class SkinGroupBox;
class StateLamp;

/// Numbers of the clip detection page's controls; those of the lights are in its table.
namespace clip_id {
inline constexpr int onOff = 1369;
inline constexpr int state = 1379;
inline constexpr int stateLamp = 1374;
inline constexpr int lastAnswer = 1373;
inline constexpr int switchGroup = 1360;
inline constexpr int firstColumn = 1361;     ///< four columns
inline constexpr int firstAmplifier = 1365;  ///< two amplifiers
}  // namespace clip_id

/// The "Clip Detection" page: which stages of the target clip, asked for once a second while it is on.
class CClipDetectDlg : public CTabDialog {
    Q_OBJECT

 public:
    static constexpr std::size_t groupCount = clipStages.size();
    static constexpr std::size_t amplifierCount = clipAmplifierNames.size();

    struct Parts {
        /// See ClipPoller::Outside; both run on its thread.
        std::function<std::optional<ClipState>()> ask;
        std::function<bool(const std::function<bool()>& wanted)> takeTurn;
        IClock* clock = nullptr;  ///< outlives the page; the machine's own when null
    };

    explicit CClipDetectDlg(Parts parts, QWidget* parent = nullptr);
    ~CClipDetectDlg() override;

    [[nodiscard]] bool isOn() const { return poller_->isOn(); }

    /// Shows an answer of the target. User-interface thread.
    void showState(const ClipState& state);
    /// Notes that a question got no answer. Told again for the same question it changes nothing.
    /// User-interface thread.
    void noteNoAnswer();

 Q_SIGNALS:
    void switched(bool on);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    /// Two pictures at one place, shown and hidden one by one.
    struct Pair {
        ClipLight* clipping = nullptr;
        ClipLight* notClipping = nullptr;
    };

    void makeSwitch();
    void makeColumn(std::size_t group);
    void makeAmplifier(std::size_t row);
    Pair addLight(const QPoint& place, int diameter, int clippingId, int notClippingId, const QString& name);
    QLabel* addLabel(const QString& text, const QRect& place, int id = -1);
    void toggle();
    void noteAnswer();
    void showAnswerTimes();

    UiCalls calls_;
    SkinGroupBox* switchGroup_ = nullptr;
    StateLamp* lamp_ = nullptr;
    QLabel* state_ = nullptr;
    QLabel* answers_ = nullptr;  ///< when the last answer came, and since when none does
    QTime answeredAt_;           ///< since the last switching on; invalid before
    QTime silentSince_;          ///< the first question without answer after that; invalid when there is none
    std::array<std::array<Pair, clipEntryCount>, groupCount> lights_;  ///< by stage and row
    std::array<Pair, amplifierCount> amplifiers_;                      ///< by row
    std::unique_ptr<ClipPoller> poller_;
};

}  // namespace tessavo
