#include "app/page_factory.h"

#include "pages/input/audio_router.h"
#include "pages/input/input_eq.h"
#include "pages/output/output_eq.h"
#include "pages/output/output_group.h"

namespace tessavo {

PageFactory pageFactory(TuningState& tuning, IMessageBox& boxes) {
    return [&tuning, &boxes](Page page) -> CTabDialog* {
        switch (page) {
            case Page::inputEqualizer:
                return new CInputEQ(tuning, boxes);
            case Page::channelConfig:
                return new CAudioRouter(tuning);
            case Page::outputEqualizer:
                return new COutputEQ(tuning, boxes);
            case Page::outputGroup:
                return new COutputGroup(tuning);
            default:
                return new CTabDialog;
        }
    };
}

}  // namespace tessavo
