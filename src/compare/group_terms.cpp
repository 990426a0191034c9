#include "compare/group_terms.h"

namespace tessavo {

bool hasGroupTerms(const ParameterSet&) {
    return false;
}

GroupTermsResult takeOutGroupTerms(const ParameterSet& set, const ParameterImage&, GroupTerms) {
    return {.record = set, .taken = {}, .stays = {}};
}

}  // namespace tessavo
