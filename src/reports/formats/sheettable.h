#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "reports/base/content.h"

namespace reports {

/// Sheets for drivers as a list, for files that are tables: a row a stop, the way to the next one
/// among its cells.
class SheetTable : public Content {
public:
    explicit SheetTable(Content& sheets);

    [[nodiscard]] const Report& report() const override { return report_; }
    [[nodiscard]] const Options& options() const override { return sheets_.options(); }
    [[nodiscard]] const Heading& heading() const override { return sheets_.heading(); }
    [[nodiscard]] std::size_t size() const override { return sheets_.size(); }
    std::optional<Item> next() override;

private:
    void put(const SheetHead& head);
    void put(const SheetStop& stop);
    void put(const SheetWay& way);
    void put(const SheetRemark& remark);
    void put(const SheetMap& /*map*/) {}  ///< tables have no pictures
    template <class Other>
    void put(const Other& other) {
        ready_.emplace_back(other);
    }
    void endStop();
    void endSheet();

    Content& sheets_;
    Report report_;
    std::deque<Item> ready_;
    std::string run_;
    bool hasStops_ = true;
    bool isRead_ = false;
    std::optional<SheetStop> stop_;  ///< whose way is not read to its end
    std::vector<std::string> way_;
};

}  // namespace reports
