#include "app/page_factory.h"

#include <utility>

#include "app/comm_link.h"
#include "comm/page/communication.h"
#include "pages/input/audio_router.h"
#include "pages/input/input_eq.h"
#include "pages/output/clip_detect_dlg.h"
#include "pages/output/output_eq.h"
#include "pages/output/output_group.h"

namespace tessavo {

namespace {

CTabDialog* makeCommunication(const PageParts& parts) {
    CommLink& link = parts.link;
    Profile& profile = parts.profile;
    auto* page = new CCommunication({
        .tuning = parts.tuning,
        .transfers = link.foreground(),
        .boxes = parts.boxes,
        .dialogs = parts.dialogs,
        .listPorts = parts.listPorts,
        .usePort = [&link](const std::string& name) { link.setPortName(name); },
        .rememberPort =
            [&profile, demoPort = parts.demoPort](const std::string& name) {
                if (name != demoPort) {
                    profile.setLastPort(QString::fromStdString(name));
                }
            },
        .refreshPages = parts.refreshPages,
        .lastPort = parts.firstPort,
        .describePort = parts.describePort,
    });
    QObject::connect(&link, &CommLink::lineLogged, page, &CCommunication::Log);
    QObject::connect(&link, &CommLink::blockSent, page,
                     [page](LineUser user, qulonglong done, qulonglong all, qlonglong at) {
                         if (user == LineUser::command) {
                             page->blockSent(done, all, Milliseconds{at});
                         }
                     });
    QObject::connect(page, &CCommunication::commandReported, &link, &CommLink::commandReported);
    return page;
}

CTabDialog* makeClipDetection(const PageParts& parts) {
    CommLink& link = parts.link;
    auto* page = new CClipDetectDlg(
        {.ask = [&link] { return link.background().ReadClipState(); },
         .takeTurn = [&link](const LineTurns::Wanted& wanted) { return link.takeTurnForPoll(wanted); }});
    QObject::connect(page, &CClipDetectDlg::switched, &link, &CommLink::forgetRepeatedBoxes);
    QObject::connect(&link, &CommLink::exchangeEnded, page, [page](LineUser user, ExchangeEnd end) {
        // Told here already: while a box about the port is open the question itself has not returned.
        if (user == LineUser::clipPoll && end != ExchangeEnd::answered) {
            page->noteNoAnswer();
        }
    });
    return page;
}

}  // namespace

PageFactory pageFactory(PageParts parts) {
    return [parts = std::move(parts)](Page page) -> CTabDialog* {
        switch (page) {
            case Page::inputEqualizer:
                return new CInputEQ(parts.tuning, parts.boxes);
            case Page::channelConfig:
                return new CAudioRouter(parts.tuning);
            case Page::outputEqualizer:
                return new COutputEQ(parts.tuning, parts.boxes);
            case Page::outputGroup:
                return new COutputGroup(parts.tuning);
            case Page::clipDetection:
                return makeClipDetection(parts);
            case Page::communication:
                return makeCommunication(parts);
            default:
                return new CTabDialog;
        }
    };
}

}  // namespace tessavo
