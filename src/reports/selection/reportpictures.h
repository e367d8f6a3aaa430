#pragma once

#include <QPixmap>
#include <QStyledItemDelegate>
#include <map>
#include <vector>

#include "reports/base/report.h"
#include "reports/preview/pagepainter.h"

namespace reports {

/// A report in a list: a picture of its first page, its title, and the line that says what it is
/// for.
class ReportPictures : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// `reports` are those of the list's table, in its order, and outlive this.
    explicit ReportPictures(const std::vector<const Report*>& reports, QObject* parent);

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    [[nodiscard]] const QPixmap& pictureOf(const Report& report, int side, qreal ratio) const;

    const std::vector<const Report*>& reports_;
    mutable PagePainter pages_;
    mutable std::map<std::string, QPixmap> pictures_;
};

}  // namespace reports
