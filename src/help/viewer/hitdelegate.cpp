#include "help/viewer/hitdelegate.h"

#include <QAbstractItemView>
#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QTextDocument>
#include <cmath>

namespace help {

namespace {

QString titleOf(const Hit& hit) {
    return hit.title.isEmpty() ? hit.page : hit.page + QStringLiteral(" – ") + hit.title;
}

}  // namespace

QString HitDelegate::markupOf(const Hit& hit) {
    QString marked;
    int done = 0;
    for (const auto& [at, length] : hit.marks) {
        if (at >= done) {
            marked += hit.snippet.mid(done, at - done).toHtmlEscaped() + "<b>" +
                      hit.snippet.mid(at, length).toHtmlEscaped() + "</b>";
            done = at + length;
        }
    }
    marked += hit.snippet.mid(done).toHtmlEscaped();
    return "<b>" + titleOf(hit).toHtmlEscaped() + "</b><br>" + marked;
}

QString HitDelegate::textOf(const Hit& hit) { return titleOf(hit) + ". " + hit.snippet; }

void HitDelegate::fill(QTextDocument& document, const QStyleOptionViewItem& option,
                       const QModelIndex& index) {
    const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
    document.setDefaultFont(option.font);
    document.setDocumentMargin(option.fontMetrics.height() / 3.0);
    document.setHtml(index.data(Markup).toString());
    document.setTextWidth(view == nullptr ? option.rect.width() : view->viewport()->width());
}

QSize HitDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QTextDocument document;
    fill(document, option, index);
    return {0, static_cast<int>(std::ceil(document.size().height()))};
}

void HitDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
    QStyleOptionViewItem ground = option;
    initStyleOption(&ground, index);
    ground.text.clear();
    const QStyle& style = *option.widget->style();
    style.drawControl(QStyle::CE_ItemViewItem, &ground, painter, option.widget);
    QTextDocument document;
    fill(document, option, index);
    QAbstractTextDocumentLayout::PaintContext context;
    const bool isSelected = (option.state & QStyle::State_Selected) != 0;
    context.palette.setColor(
        QPalette::Text,
        option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
    painter->save();
    painter->translate(option.rect.topLeft());
    document.documentLayout()->draw(painter, context);
    painter->restore();
}

}  // namespace help
