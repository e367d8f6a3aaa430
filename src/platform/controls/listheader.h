#pragma once

#include <QHeaderView>

namespace controls {

/// The captions of a list, on two lines each where asked for. The first one stands clear of a
/// gutter at the left edge.
class ListHeader : public QHeaderView {
    Q_OBJECT

public:
    explicit ListHeader(QWidget* parent);

    void setTwoLines(bool on);
    void setGutter(int pixels);

protected:
    [[nodiscard]] QSize sectionSizeFromContents(int logicalIndex) const override;
    void initStyleOptionForIndex(QStyleOptionHeader* option, int logicalIndex) const override;
    void paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const override;

private:
    [[nodiscard]] QString captionOf(int logicalIndex) const;

    bool twoLines_ = false;
    int gutter_ = 0;
};

}  // namespace controls
