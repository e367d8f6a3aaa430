#include "streets/network/graphnetwork.h"

#include "platform/base/error.h"

namespace streets {

std::unique_ptr<const Network> graphNetwork(std::shared_ptr<const StreetMap> map,
                                            const DrivingRules& rules,
                                            std::span<const std::uint32_t> closedPieces) {
    (void)map;
    (void)rules;
    (void)closedPieces;
    throw base::RunTimeError(base::errors::InvalidProcedureCall,
                             "Streets from a file cannot be driven yet.");
}

}  // namespace streets
