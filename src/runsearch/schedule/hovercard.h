#pragma once

#include <QWidget>
#include <memory>

#include "runsearch/schedule/colours.h"
#include "runsearch/schedule/telling.h"
#include "runsearch/schedule/words.h"

namespace schedule {

/// What there is to know of a run, on a card beside its bar.
class HoverCard : public QWidget {
    Q_OBJECT

public:
    explicit HoverCard(QWidget* parent);

    /// `unit` is the size of a pixel of the measures; the card takes the height that it needs.
    void showCard(const Card& card, const QColor& edge, double unit);
    [[nodiscard]] const Card& card() const { return card_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] double neededWidth() const;

    Card card_;
    QColor edge_;
    double unit_ = 1;
    std::unique_ptr<Words> words_;
};

/// The sign of a problem, or the tick of none, in a box of 11 pixels of the measures.
void paintSign(QPainter& painter, QPointF middle, double unit, Trouble trouble,
               const Colours& colours);

}  // namespace schedule
