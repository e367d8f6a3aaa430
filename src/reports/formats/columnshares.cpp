#include "reports/formats/columnshares.h"

#include <algorithm>

#include "reports/page/page.h"

namespace reports {

constexpr double Narrowest = 12;
constexpr double GrowingAtLeast = 60;

double textWidth(const Options& options) {
    return static_cast<double>(sizeOf(options).width) - 2 * Margin;
}

std::vector<double> columnShares(const Report& report, const Options& options) {
    std::vector<double> shares;
    double fixed = 0;
    double growing = 0;
    for (const Column& column : report.columns) {
        shares.push_back(std::max(column.width, Narrowest));
        (column.grows ? growing : fixed) += shares.back();
    }
    const double least = std::min(growing, GrowingAtLeast);
    const double factor = growing > 0 ? std::max(textWidth(options) - fixed, least) / growing : 1;
    double whole = 0;
    for (std::size_t i = 0; i < shares.size(); ++i) {
        shares[i] *= report.columns[i].grows ? factor : 1;
        whole += shares[i];
    }
    for (double& share : shares) {
        share /= whole;
    }
    return shares;
}

}  // namespace reports
