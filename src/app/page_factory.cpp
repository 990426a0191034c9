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

CTabDialog* makeCommunication(const PageDependencies& dependencies) {
    CommLink& link = dependencies.link;
    Profile& profile = dependencies.profile;
    auto* page = new CCommunication({
        .tuning = dependencies.tuning,
        .transfers = link.foreground(),
        .boxes = dependencies.boxes,
        .dialogs = dependencies.dialogs,
        .listPorts = dependencies.listPorts,
        .usePort = [&link](const std::string& name) { link.setPortName(name); },
        .rememberPort =
            [&profile, demoPort = dependencies.demoPort](const std::string& name) {
                if (name != demoPort) {
                    profile.setLastPort(QString::fromStdString(name));
                }
            },
        .refreshPages = dependencies.refreshPages,
        .lastPort = dependencies.firstPort,
        .describePort = dependencies.describePort,
        .prepareSave = [&link] { return link.playPlainImage(); },
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

CTabDialog* makeClipDetection(const PageDependencies& dependencies) {
    CommLink& link = dependencies.link;
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

constexpr std::array<PageEntry, pageCount> pages{{
    {.page = Page::inputEqualizer,
     .title = "Equalizing Input",
     .tabWidth = 138,
     .plotTitle = "InputEQ Graph",
     .curve = PageCurve::input,
     .picture = "input_eq",
     .make = [](const PageDependencies& dependencies) -> CTabDialog* {
         return new CInputEQ(dependencies.tuning, dependencies.boxes);
     }},
    {.page = Page::channelConfig,
     .title = "Channel Config",
     .tabWidth = 124,
     .plotTitle = "No Plot",
     .curve = PageCurve::none,
     .picture = "channel_config",
     .make = [](const PageDependencies& dependencies) -> CTabDialog* {
         return new CAudioRouter(dependencies.tuning);
     }},
    {.page = Page::outputEqualizer,
     .title = "Equalizing Output",
     .tabWidth = 144,
     .plotTitle = "OutputEQ Graph",
     .curve = PageCurve::output,
     .picture = "output_eq",
     .make = [](const PageDependencies& dependencies) -> CTabDialog* {
         return new COutputEQ(dependencies.tuning, dependencies.boxes);
     }},
    {.page = Page::outputGroup,
     .title = "Output Group",
     .tabWidth = 112,
     .plotTitle = "No Plot",
     .curve = PageCurve::none,
     .picture = "output_group",
     .make = [](const PageDependencies& dependencies) -> CTabDialog* {
         return new COutputGroup(dependencies.tuning);
     }},
    {.page = Page::clipDetection,
     .title = "Clip Detection",
     .tabWidth = 122,
     .plotTitle = "Loudness",
     .curve = PageCurve::none,
     .picture = "clip_detection",
     .make = makeClipDetection},
    {.page = Page::communication,
     .title = "Communication",
     .tabWidth = 126,
     .plotTitle = "TAVO curve",
     .curve = PageCurve::none,
     .picture = "communication",
     .make = makeCommunication},
}};

// A page that was forgotten leaves an entry without a maker, one out of turn a wrong number.
static_assert([] {
    for (std::size_t i = 0; i < pages.size(); ++i) {
        if (pages[i].page != static_cast<Page>(i) || pages[i].make == nullptr) {
            return false;
        }
    }
    return true;
}());

}  // namespace

const std::array<PageEntry, pageCount>& pageTable() {
    return pages;
}

PageFactory pageFactory(PageDependencies dependencies) {
    return [dependencies = std::move(dependencies)](Page page) { return entryOf(page).make(dependencies); };
}

}  // namespace tessavo
