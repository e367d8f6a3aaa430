#pragma once

#include <QAccessibleWidget>

#include "reports/preview/pageview.h"

namespace reports {

/// The pages of a report for a screen reader: a document whose text is that of the page in sight, a
/// line a row, and whose value says which page that is. Letters count from 0.
class PageAccess : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    explicit PageAccess(PageView& view);

    void* interface_cast(QAccessible::InterfaceType type) override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;

    void selection(int place, int* from, int* to) const override;
    [[nodiscard]] int selectionCount() const override { return 0; }
    void addSelection(int /*from*/, int /*to*/) override {}
    void removeSelection(int /*place*/) override {}
    void setSelection(int /*place*/, int /*from*/, int /*to*/) override {}
    [[nodiscard]] int cursorPosition() const override { return cursor_; }
    void setCursorPosition(int letter) override { cursor_ = letter; }
    [[nodiscard]] QString text(int from, int to) const override;
    [[nodiscard]] int characterCount() const override;
    [[nodiscard]] QRect characterRect(int letter) const override;
    [[nodiscard]] int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int from, int to) override;
    QString attributes(int letter, int* from, int* to) const override;

private:
    [[nodiscard]] const PageView& view() const;

    int cursor_ = 0;  ///< where the reader has come to
};

}  // namespace reports
