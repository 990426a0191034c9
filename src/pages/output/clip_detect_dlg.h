#pragma once

#include <QTime>
#include <functional>
#include <memory>
#include <optional>

#include "comm/target_commands.h"
#include "controls/tab_dialog.h"
#include "controls/ui_calls.h"
#include "pages/form/form.h"
#include "pages/output/clip_poller.h"
#include "pages/rows/clip_rows.h"

namespace tessavo {

/// The "Clip Detection" page: which stages of the target clip, asked for once a second while it is on.
class CClipDetectDlg : public CTabDialog {
    Q_OBJECT

 public:
    struct Dependencies {
        /// See ClipPoller::Dependencies; both run on its thread.
        std::function<std::optional<ClipState>()> ask;
        std::function<bool(const std::function<bool()>& wanted)> takeTurn;
        IClock* clock = nullptr;  ///< outlives the page; the machine's own when null
    };

    explicit CClipDetectDlg(Dependencies dependencies, QWidget* parent = nullptr);
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
    void toggle();
    void noteAnswer();
    void showAnswerTimes();

    UiCalls calls_;
    Form form_;
    QTime answeredAt_;   ///< since the last switching on; invalid before
    QTime silentSince_;  ///< the first question without answer after that; invalid when there is none
    std::unique_ptr<ClipPoller> poller_;
};

}  // namespace tessavo
