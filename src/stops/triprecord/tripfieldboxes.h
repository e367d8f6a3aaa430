#pragma once

#include <QString>
#include <array>
#include <optional>

#include "stops/triprecord/tripfields.h"

class QWidget;

namespace stops {

/// The controls of a trip record's fields, one each: number boxes, a time box, a combo for the
/// pick-up side, a check box and a text of several lines.
class TripFieldBoxes {
public:
    using Controls = std::array<QWidget*, AllTripFields.size()>;  ///< in the order of TripField

    explicit TripFieldBoxes(const Controls& controls) : controls_(controls) {}

    /// Shows the fields as they are stored; what was typed is gone.
    void show(const TripFields& stored);
    /// Shows these where they differ from what is stored, as if they had been typed.
    void showTyped(const TripFields& fields);

    /// Whether anything differs from what was shown as stored.
    [[nodiscard]] bool areTouched() const;
    /// The fields as they stand in the boxes. A box that was not touched stands for the stored
    /// value, which may have more decimals.
    [[nodiscard]] TripFields entered() const;

    /// Paints the box of that field red and all others as usual.
    void paintRed(std::optional<TripField> field);
    void focus(TripField field);

private:
    [[nodiscard]] QWidget* control(TripField field) const {
        return controls_[static_cast<std::size_t>(field)];
    }
    [[nodiscard]] bool isTouched(TripField field) const;
    void showField(TripField field, const base::Value& value);
    [[nodiscard]] base::Value read(TripField field) const;

    Controls controls_;
    TripFields stored_;
    std::array<QString, AllTripFields.size()> shown_;  ///< each box's content before any typing
};

}  // namespace stops
