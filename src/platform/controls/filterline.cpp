#include "platform/controls/filterline.h"

#include <QKeyEvent>
#include <QPainter>
#include <QShortcut>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QTimer>

#include "platform/base/numbertext.h"
#include "platform/controls/focusall.h"
#include "platform/controls/multicolumnlist.h"
#include "platform/controls/qtext.h"

namespace controls {

FilterLine::FilterLine(QWidget* parent) : QLineEdit(parent) {
    setPlaceholderText(tr("Filter (Ctrl+F)"));
    setAccessibleName(tr("Filter the list"));
    setToolTip(
        tr("Shows the rows that hold all these words, in any column and any order.  What is hidden "
           "is not selected."));
    setClearButtonEnabled(true);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void FilterLine::filters(MultiColumnList& list) {
    list_ = &list;
    auto* find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, this, [this] { focusAll(*this); });
    connect(this, &QLineEdit::textChanged, &list, &MultiColumnList::setFilter);
    connect(&list, &MultiColumnList::filterChanged, this, [this] { follow(); });
    connect(list.model(), &QAbstractItemModel::modelReset, this, [this] { follow(); });
}

void FilterLine::follow() {
    if (text() != list_->filter()) {
        setText(list_->filter());
    }
    setAccessibleDescription(told());
    makeRoom();
}

void FilterLine::makeRoom() {
    constexpr int Gap = 6;
    const QString count = countThatFits();
    setTextMargins(0, 0, count.isEmpty() ? 0 : fontMetrics().horizontalAdvance(count) + Gap, 0);
    update();
}

/// More than half of the box belongs to what is typed.
QString FilterLine::countThatFits() const {
    QString count = told();
    if (fontMetrics().horizontalAdvance(count) > width() / 2) {
        count = QStringLiteral("%1/%2").arg(list_->rows()).arg(list_->rowsInAll());
    }
    return count;
}

QString FilterLine::told() const {
    if (list_ == nullptr || !list_->isFiltered()) {
        return {};
    }
    return tr("%1 of %2 shown")
        .arg(toQt(base::grouped(list_->rows(), 0)), toQt(base::grouped(list_->rowsInAll(), 0)));
}

void FilterLine::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    makeRoom();
}

void FilterLine::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    getReady();
}

/// In turns, so that neither the first letter nor anything else waits.
void FilterLine::getReady() {
    if (list_ != nullptr && list_->readForFilter()) {
        QTimer::singleShot(0, this, &FilterLine::getReady);
    }
}

int FilterLine::widthOf(int characters) const {
    return characters * fontMetrics().averageCharWidth() + 2 * QLineEdit::sizeHint().height();
}

QSize FilterLine::sizeHint() const {
    constexpr int Characters = 32;
    return {widthOf(Characters), QLineEdit::sizeHint().height()};
}

QSize FilterLine::minimumSizeHint() const {
    constexpr int Characters = 12;
    return {widthOf(Characters), QLineEdit::minimumSizeHint().height()};
}

void FilterLine::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Escape:
            if (text().isEmpty()) {
                return event->ignore();
            }
            return clear();
        case Qt::Key_Down:
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (list_ != nullptr) {
                list_->enter();
            }
            return;
        default:
            QLineEdit::keyPressEvent(event);
    }
}

/// The count stands where the text leaves it room, before the button that empties the box.
void FilterLine::paintEvent(QPaintEvent* event) {
    QLineEdit::paintEvent(event);
    const QString count = countThatFits();
    if (count.isEmpty()) {
        return;
    }
    QStyleOptionFrame frame;
    initStyleOption(&frame);
    const QRect inside = style()->subElementRect(QStyle::SE_LineEditContents, &frame, this);
    const int button = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(inside.adjusted(0, 0, -button * 3 / 2, 0), Qt::AlignRight | Qt::AlignVCenter,
                     count);
}

}  // namespace controls
