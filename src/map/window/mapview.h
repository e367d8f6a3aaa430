#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

#include "map/drawing/mappicture.h"
#include "map/drawing/scene.h"
#include "map/ground/camera.h"
#include "map/ground/ground.h"

class QToolButton;

namespace map {

/// The map to look at and move about in: the hand drags it, the wheel, two fingers, a double click
/// and + and - zoom, the arrows move it by a fifth, Home shows everything. Tab goes from stop to
/// stop. A stop is dragged with Alt held, or where stops may be moved.
class MapView : public QWidget {
    Q_OBJECT

public:
    explicit MapView(QWidget* parent = nullptr);
    ~MapView() override;

    void setGround(std::shared_ptr<const Ground> ground);
    /// `Fit::Yes` shows the part of it that is to be seen at first, otherwise the map stays where
    /// it is.
    enum class Fit { No, Yes };
    void showScene(Scene scene, const streets::Box& firstSight, Fit fit);
    void showScene(Scene scene);
    [[nodiscard]] const Scene& scene() const { return picture_.scene(); }
    [[nodiscard]] const Camera& camera() const { return camera_; }

    /// What is to be seen at first.
    void fit();
    /// Nearer above 1, about the middle.
    void zoom(double times);
    /// The map moves so that the place is seen, in its middle where it was not; nearer where it
    /// was farther away than so many feet a pixel.
    void reveal(geo::Feet place, double feetPerPixel = Camera::Farthest);
    void setCamera(const Camera& camera);

    /// What is read out and shown on hovering over something.
    using Telling = std::function<QString(const Hit&)>;
    void setTelling(Telling telling) { telling_ = std::move(telling); }
    [[nodiscard]] QString tellOf(const Hit& hit) const;
    /// The stops shown, of all runs, from 0 on.
    [[nodiscard]] int stopCount() const;
    [[nodiscard]] Hit hitOfStop(int place) const;
    /// Goes to the next stop or the one before; false where there is none.
    using Stepping = std::function<bool(bool forward)>;
    void setStepping(Stepping stepping) { stepping_ = std::move(stepping); }
    /// Whether a stop is dragged without Alt, too.
    void setMovingStops(bool on);

    [[nodiscard]] QSize sizeHint() const override;

signals:
    void hitChosen(const map::Hit& hit);
    void hitActivated(const map::Hit& hit);
    /// Enter and Escape, where they mean nothing to the map itself.
    void enterPressed();
    void escapePressed();
    /// A stop of the scene is over a place; then it was let go there, or put back.
    void stopDragged(const map::Hit& stop, geo::Feet to);
    void stopDropped(const map::Hit& stop, geo::Feet to);
    void stopPutBack(const map::Hit& stop);
    /// At a point of the screen.
    void menuAsked(const QPoint& at, geo::Feet place);

protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void applyTheme();
    void makeButtons();
    void placeButtons();
    void moveCamera(const Camera& camera);
    bool moveByKey(int key);
    bool pinch(QEvent* event);
    void hover(QPointF at);
    void cancelDrag();
    [[nodiscard]] std::optional<Hit> hitAt(QPointF at) const;

    MapPicture picture_;
    Camera camera_;
    streets::Box firstSight_ = emptyBox();
    bool showsAll_ = true;  ///< until the planner looks at a part
    Telling telling_;
    Stepping stepping_;
    bool movesStops_ = false;
    std::optional<QPointF> pressedAt_;
    QPointF lastAt_;
    bool panned_ = false;
    std::optional<Hit> dragged_;
    QToolButton* zoomIn_ = nullptr;
    QToolButton* zoomOut_ = nullptr;
    QToolButton* fit_ = nullptr;
};

}  // namespace map
