#include "copies/restore.h"

namespace tessavo {

RestoreReport restoreSets(ITransfers& /*transfers*/, IClock& /*clock*/, std::span<const SetToWrite> /*sets*/,
                          const CopyWatch& /*watch*/,
                          const std::function<void(const SetToWrite&)>& /*saved*/) {
    return {};
}

std::vector<Comparison> compareSets(ITransfers& /*transfers*/, std::span<const SetToWrite> /*sets*/,
                                    const CopyWatch& /*watch*/) {
    return {};
}

}  // namespace tessavo
