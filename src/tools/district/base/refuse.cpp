#include "tools/district/base/refuse.h"

#include "platform/base/error.h"

namespace tools::district {

void refuse(const std::string& why) { throw base::RunTimeError(base::errors::PathFileAccess, why); }

}  // namespace tools::district
