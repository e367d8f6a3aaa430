#pragma once

#include <cstdint>
#include <optional>

#include "platform/controls/celldelegate.h"
#include "platform/controls/tones.h"

namespace runedit {

/// Numbers of passengers; those above the seats are bold and red.
class CrowdedDelegate : public controls::CellDelegate {
public:
    using CellDelegate::CellDelegate;

    void setSeats(std::optional<std::int64_t> seats) { seats_ = seats; }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        CellDelegate::initStyleOption(option, index);
        if (!seats_ || index.data().toLongLong() <= *seats_) {
            return;
        }
        option->font.setBold(true);
        if (!index.data(controls::RedRole).toBool()) {
            option->palette.setColor(QPalette::Text,
                                     controls::inkOf(controls::Tone::Wrong, option->palette));
        }
    }

private:
    std::optional<std::int64_t> seats_;
};

}  // namespace runedit
