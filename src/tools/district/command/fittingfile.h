#pragma once

#include <string>

#include "platform/ado/connection.h"

namespace tools::district {

/// Opens one of a district's files. Raises store::StoreError; base::RunTimeError with what helps
/// where the file is not of this program's version. A file that is none of a district's, neither by
/// its mark nor by its name, is opened as it is.
void openFitting(ado::Connection& connection, const std::string& path);

}  // namespace tools::district
