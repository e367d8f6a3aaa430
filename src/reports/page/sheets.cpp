#include "reports/page/pagemaking.h"

namespace reports {

std::unique_ptr<PageMaking> makeSheets(Content& content) { return makeList(content); }

}  // namespace reports
