#include "app/page_factory.h"

#include "pages/output/output_eq.h"

namespace tessavo {

PageFactory pageFactory(TuningState& tuning, IMessageBox& boxes) {
    return [&tuning, &boxes](Page page) -> CTabDialog* {
        switch (page) {
            case Page::outputEqualizer:
                return new COutputEQ(tuning, boxes);
            default:
                return new CTabDialog;
        }
    };
}

}  // namespace tessavo
