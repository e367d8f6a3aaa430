#pragma once

#include <QModelIndex>

#include "platform/controls/grid.h"
#include "tools/script/adapter.h"

namespace script {

/// A grid: cells are typed into as a user does, by a click, F2 and Enter.
class GridAdapter : public Adapter {
public:
    explicit GridAdapter(controls::Grid& grid) : grid_(grid) {}
    [[nodiscard]] std::string kind() const override { return "a grid"; }
    [[nodiscard]] std::string text() const override { return std::to_string(grid_.rows()); }
    [[nodiscard]] std::vector<std::string> lines() const override;
    [[nodiscard]] std::string rowText(int row) const override;
    void selectRows(std::span<const int> rows) override;
    void selectAll() override;
    void selectNone() override { grid_.selectNone(); }
    void setCell(int row, int column, const std::string& text) override;

private:
    [[nodiscard]] QModelIndex cell(int row, int column) const;
    [[nodiscard]] QPoint place(const QModelIndex& index) const;

    controls::Grid& grid_;
};

}  // namespace script
