#pragma once

#include <QStyledItemDelegate>

#include "help/guide/guidesearch.h"

class QTextDocument;

namespace help {

/// A hit of the search in a list: its title, below it the text around what was found, which is
/// bold.
class HitDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    static constexpr int Markup = Qt::UserRole;  ///< what is painted, see markupOf()

    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] static QString markupOf(const Hit& hit);
    /// The same without marks, as it is read aloud.
    [[nodiscard]] static QString textOf(const Hit& hit);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;

private:
    static void fill(QTextDocument& document, const QStyleOptionViewItem& option,
                     const QModelIndex& index);
};

}  // namespace help
