#pragma once

#include <QRectF>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace map {

/// Rectangles of a picture that are taken.
class Occupied {
public:
    void take(const QRectF& box);
    /// Touching edges do not meet.
    [[nodiscard]] bool meets(const QRectF& box) const;

private:
    template <typename Visit>
    static bool anyCell(const QRectF& box, const Visit& visit);

    std::unordered_map<std::uint64_t, std::vector<QRectF>> cells_;
};

}  // namespace map
