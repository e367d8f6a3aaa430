#pragma once

#include <QHBoxLayout>
#include <QObject>
#include <QSize>
#include <QString>
#include <vector>

class QScrollArea;
class QWidget;

namespace forms {

/// Remembers which labels of a form have a text before it is filled: what it shows of a district
/// never breaks.
void noteCaptions(const QWidget& form);

/// The buttons beside a form that is too wide give up some of their width: long captions stand on
/// two lines, parted near their middle.
void breakCaptions(QHBoxLayout& row);

/// Keeps what scrolls from scrolling sideways: where it needs more width than there is, the longest
/// captions of its labels, check boxes and buttons break, one after the other, and those stay
/// broken that the width hangs on.
class CaptionBreaker : public QObject {
    Q_OBJECT

public:
    explicit CaptionBreaker(QScrollArea& area);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// A caption, and its text before it was broken.
    struct Broken {
        QWidget* part;
        QString before;
    };

    [[nodiscard]] bool isTooWide() const;
    void breakLongest();
    void mendNeedless(const std::vector<Broken>& broken);

    QScrollArea& area_;
    QWidget* contents_;
    QSize tried_;  ///< the width that there was, and what was needed when all had been broken
    bool isAsked_ = false;
};

}  // namespace forms
