#include "platform/controls/foundline.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QStandardItemModel>
#include <algorithm>

namespace controls {

FoundLine::FoundLine(const QString& rows, int mostSeen, QWidget* parent)
    : QLineEdit(parent),
      found_(new QStandardItemModel(this)),
      popup_(new QCompleter(found_, this)) {
    popup_->setWidget(this);
    popup_->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    popup_->setMaxVisibleItems(mostSeen);
    popup_->popup()->setAccessibleName(rows);
    connect(popup_, qOverload<const QModelIndex&>(&QCompleter::activated), this,
            [this](const QModelIndex& row) { take(row); });
}

void FoundLine::addHint(const QString& hint) {
    auto* item = new QStandardItem(hint);
    item->setFlags(Qt::NoItemFlags);
    item->setForeground(palette().text());
    found_->appendRow(item);
}

void FoundLine::showFound() {
    const int wanted =
        std::min(popup_->popup()->sizeHintForColumn(0) + 2 * height(), window()->width() * 3 / 4);
    // A place keeps rows that are wider than the line on the screen.
    popup_->complete({0, 0, std::max(width(), wanted), height()});
}

void FoundLine::hideFound() { popup_->popup()->hide(); }

void FoundLine::keyPressEvent(QKeyEvent* event) {
    const QAbstractItemView& rows = *popup_->popup();
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (!rows.isVisible()) {
                emit offerWanted();
            }
            return take(rows.currentIndex().isValid() ? rows.currentIndex()
                                                      : popup_->completionModel()->index(0, 0));
        case Qt::Key_Escape:
            if (rows.isVisible()) {
                return hideFound();
            }
            return text().isEmpty() ? event->ignore() : clear();
        default:
            QLineEdit::keyPressEvent(event);
    }
}

}  // namespace controls
