#include "reports/preview/pageaccess.h"

namespace reports {

PageAccess::PageAccess(PageView& view) : QAccessibleWidget(&view, QAccessible::Document) {}

const PageView& PageAccess::view() const { return static_cast<const PageView&>(*widget()); }

void* PageAccess::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                              : QAccessibleWidget::interface_cast(type);
}

QString PageAccess::text(QAccessible::Text kind) const {
    return kind == QAccessible::Value && view().pageCount() > 0
               ? PageView::tr("Page %1 of %2").arg(view().page() + 1).arg(view().pageCount())
               : QAccessibleWidget::text(kind);
}

void PageAccess::selection(int /*place*/, int* from, int* to) const { *from = *to = 0; }

QString PageAccess::text(int from, int to) const {
    return view().pageText().mid(from, to < 0 ? to : to - from);
}

int PageAccess::characterCount() const { return static_cast<int>(view().pageText().size()); }

QRect PageAccess::characterRect(int /*letter*/) const { return rect(); }

int PageAccess::offsetAtPoint(const QPoint& /*point*/) const { return cursor_; }

void PageAccess::scrollToSubstring(int from, int /*to*/) { cursor_ = from; }

QString PageAccess::attributes(int /*letter*/, int* from, int* to) const {
    *from = 0;
    *to = characterCount();
    return {};
}

}  // namespace reports
