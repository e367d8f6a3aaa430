#include "streets/network/network.h"

namespace streets {

Network::~Network() = default;

}  // namespace streets
