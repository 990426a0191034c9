#include "app/group_terms_offer.h"

#include <QStringList>
#include <algorithm>

#include "app/status_line.h"
#include "app/undo_commands.h"
#include "compare/group_terms.h"
#include "pages/form/form.h"

namespace tessavo {

namespace {

bool haveSameTerms(const ParameterSet& one, const ParameterSet& other) {
    return std::ranges::equal(one.channels, other.channels,
                              [](const OutputChannelParams& a, const OutputChannelParams& b) {
                                  return a.volumeDb == b.volumeDb && a.groupGainDb == b.groupGainDb &&
                                         a.delayMs == b.delayMs && a.groupDelayMs == b.groupDelayMs;
                              });
}

}  // namespace

GroupTermsOffer::GroupTermsOffer(const Dependencies& dependencies) : dependencies_(dependencies) {
    connect(&dependencies_.link, &CommLink::commandReported, this, &GroupTermsOffer::offer);
    connect(&dependencies_.undo, &UndoCommands::historyChanged, this, [this](HistoryEvent event) {
        if (event == HistoryEvent::stepsChanged) {
            withdrawOutdated();
        }
    });
}

void GroupTermsOffer::offer(const CommandReport& report) {
    if (report.command != Command::readSet || report.result != CommandReport::Result::done) {
        return;
    }
    const TuningState& tuning = dependencies_.tuning;
    dependencies_.status.withdrawNotice(notice_);
    received_.reset();
    if (!hasGroupTerms(tuning.currentParameterSet())) {
        return;
    }
    received_ = std::make_unique<const Received>(
        Received{tuning.currentSet(), tuning.currentParameterSet(), tuning.image()});
    notice_ = dependencies_.status.showNotice(
        {.text = QStringLiteral("Group values count twice"),
         .buttons = {{QStringLiteral("Take Them Out of the Channels"), [this] { take(); }}}});
}

void GroupTermsOffer::withdrawOutdated() {
    if (received_ &&
        !haveSameTerms(dependencies_.tuning.store().sets.at(received_->set), received_->record)) {
        dependencies_.status.withdrawNotice(notice_);
        received_.reset();
    }
}

void GroupTermsOffer::take() {
    if (!received_) {
        return;
    }
    const QString command = QStringLiteral("Take Them Out of the Channels");
    if (!dependencies_.edits.mayWrite(command)) {
        return;
    }
    // What ended a drag may have changed a volume.
    withdrawOutdated();
    if (!received_) {
        return;
    }
    const Received received = *received_;
    received_.reset();
    const GroupTermsResult result =
        takeOutGroupTerms(dependencies_.tuning.store().sets.at(received.set), received.image);
    const std::array replacement{SetReplacement{received.set, result.record}};
    if (!result.taken.empty()) {
        dependencies_.edits.write(replacement, command,
                                  QStringLiteral("Took the group values out of the channels"));
    }
    QStringList reasons;
    for (const UntakenChannel& channel : result.stays) {
        reasons << textOf(channel.reason);
    }
    if (!reasons.isEmpty()) {
        dependencies_.edits.tell(reasons.join(QLatin1Char(' ')), true);
    }
}

}  // namespace tessavo
