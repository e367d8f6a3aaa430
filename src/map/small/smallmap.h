#pragma once

#include <QWidget>
#include <cstddef>
#include <memory>
#include <optional>

#include "map/drawing/mappicture.h"

namespace map {

/// A run's way and stops as a picture in a form, drawn as the map's window draws them, or the
/// reason why there is none. It keeps the whole of the scene in sight and follows the form's
/// colours.
class SmallMap : public QWidget {
    Q_OBJECT

public:
    explicit SmallMap(QWidget* parent = nullptr);

    /// Shows a scene; `told` says it for those who do not see it. A scene without any place says
    /// so in words.
    void showScene(std::shared_ptr<const Ground> ground, Scene scene, const QString& told);
    /// Shows words in the place of a map.
    void say(const QString& words);
    /// Marks one of the first run's stops as the chosen one, or none.
    void choose(std::optional<std::size_t> stop);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    /// The picture in sight is the last one wanted.
    [[nodiscard]] bool isSettled() const;

signals:
    /// A double click: the planner wants the map itself.
    void mapWanted();
    /// For who waits for streets; from any thread.
    void opened();
    /// A click on one of the first run's stops.
    void stopClicked(int stop);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    [[nodiscard]] Camera camera() const;
    [[nodiscard]] std::optional<int> stopAt(QPointF pixel) const;
    void paintWords(QPainter& painter) const;
    void takeTheme();

    MapPicture picture_;
    QString words_;
};

}  // namespace map
