#pragma once

#include <QImage>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "map/drawing/lanes.h"
#include "map/drawing/scene.h"
#include "map/drawing/scenelayout.h"
#include "map/drawing/theme.h"
#include "map/ground/camera.h"
#include "map/ground/ground.h"
#include "platform/base/notcopied.h"

namespace map {

/// A scene, and who shares which street in it.
struct PreparedScene {
    Scene scene = {};
    std::vector<RunLanes> lanes = {};
};

/// Which picture is wanted.
struct PictureOrder {
    Camera camera = {};
    double pixelRatio = 1;
    std::shared_ptr<const Ground> ground = {};
    Theme theme = {};
    std::shared_ptr<const PreparedScene> scene = {};
    Sight sight = {};                 ///< what names and plates keep clear of besides the scene
    std::uint64_t groundVersion = 0;  ///< of ground, theme and veil
    std::uint64_t sceneVersion = 0;   ///< of the scene and what is reserved
};

/// A map in layers, so that a scene that changes can be painted between them.
struct KeptPicture {
    Camera camera = {};
    double pixelRatio = 1;
    std::uint64_t groundVersion = 0;
    std::uint64_t sceneVersion = 0;
    QImage ground = {};
    QImage names = {};
    QImage whole = {};  ///< ground, scene and names
};

/// Paints pictures one after the other on a thread of its own.
class PictureThread : private base::NotCopied {
public:
    /// Called on that thread for each picture that is ready.
    explicit PictureThread(std::function<void()> ready);
    ~PictureThread();

    /// Paints this next. What is being painted at another scale or of another ground is given up.
    void want(PictureOrder order);
    /// The last picture; none at first.
    [[nodiscard]] std::shared_ptr<const KeptPicture> latest() const;

private:
    void run();
    [[nodiscard]] std::optional<PictureOrder> next();
    void deliver(std::shared_ptr<const KeptPicture> picture);

    std::function<void()> ready_;
    mutable std::mutex mutex_;
    std::condition_variable wanted_;
    std::optional<PictureOrder> waiting_;
    std::optional<KeptPicture> painting_;  ///< without its images
    std::shared_ptr<const KeptPicture> latest_;
    std::atomic<bool> isGivenUp_ = false;
    bool isEnding_ = false;
    std::thread thread_;
};

}  // namespace map
