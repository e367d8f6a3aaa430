#pragma once

#include <QImage>
#include <cstdint>
#include <functional>
#include <vector>

#include "map/drawing/scenelayout.h"
#include "map/drawing/scenepainter.h"

class QPainter;

namespace map {

/// Paints the ways of a scene that changes from frame to frame, as one does while a stop is
/// dragged: those that stay as they are are painted once and kept. The others stand above them.
class KeptWays {
public:
    /// What all ways of a frame have in common.
    struct Frame {
        QSizeF size = {};
        double pixelRatio = 1;
        std::uint64_t look = 0;  ///< the version of theme and veil
        std::size_t runs = 0;

        friend bool operator==(const Frame&, const Frame&) = default;
    };
    using PainterOn = std::function<ScenePainter(QPainter&)>;

    /// As `ScenePainter::paintWays`; `on` gives a painter of the same scene and layout.
    void paint(QPainter& painter, const Frame& frame, const Scene& scene, const SceneLayout& layout,
               const PainterOn& on);

private:
    struct Way {
        Line line = {};
        std::size_t run = 0;
        int colour = 0;
        bool isChosen = false;
        bool isEmpty = false;
        bool isPale = false;

        friend bool operator==(const Way&, const Way&) = default;
    };
    [[nodiscard]] static std::vector<Way> waysOf(const Scene& scene, const SceneLayout& layout);
    [[nodiscard]] WayChoice staying(const Frame& frame, const std::vector<Way>& ways) const;
    [[nodiscard]] bool isKept(const WayChoice& stay) const;
    void keep(const Frame& frame, WayChoice stay, const PainterOn& on);

    Frame frame_;
    std::vector<Way> last_;
    QImage picture_;
    WayChoice kept_;  ///< which ways the picture holds
};

}  // namespace map
