#include "map/drawing/keptways.h"

#include <QPainter>
#include <algorithm>
#include <utility>

namespace map {

std::vector<KeptWays::Way> KeptWays::waysOf(const Scene& scene, const SceneLayout& layout) {
    std::vector<Way> ways;
    ways.reserve(layout.ways.size());
    for (const WayMark& mark : layout.ways) {
        const DrawnRun& run = scene.runs[mark.run];
        const DrawnLeg& leg = run.legs[mark.leg];
        ways.push_back({mark.line, mark.run, run.colour, run.isChosen, leg.isEmpty, leg.isPale});
    }
    return ways;
}

WayChoice KeptWays::staying(const Frame& frame, const std::vector<Way>& ways) const {
    WayChoice stay(ways.size());
    if (frame == frame_ && ways.size() == last_.size()) {
        for (std::size_t i = 0; i < ways.size(); ++i) {
            stay[i] = ways[i] == last_[i];
        }
    }
    return stay;
}

bool KeptWays::isKept(const WayChoice& stay) const {
    if (picture_.isNull() || kept_.size() != stay.size()) {
        return false;
    }
    for (std::size_t i = 0; i < stay.size(); ++i) {
        if (kept_[i] && !stay[i]) {
            return false;
        }
    }
    return true;
}

void KeptWays::keep(const Frame& frame, WayChoice stay, const PainterOn& on) {
    picture_ =
        QImage((frame.size * frame.pixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    picture_.setDevicePixelRatio(frame.pixelRatio);
    picture_.fill(Qt::transparent);
    QPainter painter(&picture_);
    ScenePainter ways = on(painter);
    ways.paintOwnStreets(stay);
    ways.paintLegs(stay);
    kept_ = std::move(stay);
}

void KeptWays::paint(QPainter& painter, const Frame& frame, const Scene& scene,
                     const SceneLayout& layout, const PainterOn& on) {
    auto ways = waysOf(scene, layout);
    WayChoice stay = staying(frame, ways);
    last_ = std::move(ways);
    frame_ = frame;
    ScenePainter live = on(painter);
    if (2 * std::ranges::count(stay, true) < std::ssize(stay)) {
        picture_ = {};
        return live.paintWays();
    }
    if (!isKept(stay)) {
        keep(frame, std::move(stay), on);
    }
    WayChoice rest = kept_;
    rest.flip();
    live.paintOwnStreets(rest);
    live.paintOldWay();
    painter.drawImage(QPointF(0, 0), picture_);
    live.paintLegs(rest);
    live.paintLegPlates();
}

}  // namespace map
