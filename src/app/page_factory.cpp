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
                     [page](qulonglong done, qulonglong all, qlonglong at) {
                         page->blockSent(done, all, Milliseconds{at});
                     });
    return page;
}

CTabDialog* makeClipDetection(const PageParts& parts) {
    CommLink& link = parts.link;
    auto* page = new CClipDetectDlg({.ask = [&link] { return link.background().ReadClipState(); },
                                     .lineIsFree = [&link] { return link.isFree(); }});
    QObject::connect(page, &CClipDetectDlg::switched, &link, &CommLink::forgetRepeatedBoxes);
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
