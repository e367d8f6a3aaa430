#include "reports/page/page.h"

#include <utility>

namespace reports {

PageSize sizeOf(const Options& options) {
    PageSize size = options.paper == Paper::A4 ? PageSize{595.28F, 841.89F} : PageSize{612, 792};
    if (options.landscape) {
        std::swap(size.width, size.height);
    }
    return size;
}

}  // namespace reports
