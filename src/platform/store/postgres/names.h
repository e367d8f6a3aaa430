#pragma once

#include <string>
#include <string_view>

#include "platform/store/base/schema.h"

namespace store::postgres {

/// The statement with the names of tables that stand bare in it, and of their columns, in quotes
/// and as the catalogue has them: the server would take them for others, in small letters.
[[nodiscard]] std::string withQuotedNames(std::string_view sql, const Catalog& catalog);

}  // namespace store::postgres
