#include "map/window/rowlist.h"

#include <QDropEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "map/small/formtheme.h"
#include "platform/controls/qtext.h"
#include "platform/controls/signs.h"
#include "platform/controls/tones.h"

namespace map {

using controls::toQt;

class RowList::Rows : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    void set(std::vector<PanelRow> rows) {
        beginResetModel();
        rows_ = std::move(rows);
        endResetModel();
    }
    [[nodiscard]] const std::vector<PanelRow>& all() const { return rows_; }
    void check(int row, bool on) {
        rows_[static_cast<std::size_t>(row)].isShown = on;
        emit dataChanged(index(row), index(row));
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }
    [[nodiscard]] QVariant data(const QModelIndex& at, int role) const override {
        if (!at.isValid()) {
            return {};
        }
        const auto& row = rows_[static_cast<std::size_t>(at.row())];
        if (role == Qt::DisplayRole || role == Qt::AccessibleTextRole) {
            return toQt(row.spoken.empty() ? row.title : row.spoken);
        }
        if (role == Qt::ToolTipRole) {
            return toQt(row.detail.empty() ? row.title : row.title + "\n" + row.detail);
        }
        if (role == Qt::CheckStateRole && row.canBeHidden) {
            return row.isShown ? Qt::Checked : Qt::Unchecked;
        }
        return {};
    }
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& at) const override {
        return at.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled
                            : Qt::ItemIsDropEnabled;
    }

private:
    std::vector<PanelRow> rows_;
};

namespace {

int padOf(const QFontMetrics& metrics) { return metrics.averageCharWidth(); }
int discOf(const QFontMetrics& metrics) { return metrics.height() + metrics.height() / 3; }

QFont strongFont(QFont font) {
    font.setBold(true);
    return font;
}

QFont smallFont(QFont font) {
    font.setPointSizeF(font.pointSizeF() * 0.92);
    return font;
}

/// A bus or a school, as on the map.
void paintPlaceMark(QPainter& painter, const QRectF& box, bool isSchool, const Theme& theme) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(isSchool ? theme.school : theme.garage);
    painter.drawRoundedRect(box, 3, 3);
    painter.setBrush(theme.onPlace);
    const QRectF inner =
        box.adjusted(box.width() / 4, box.height() / 4, -box.width() / 4, -box.height() / 4);
    if (isSchool) {
        painter.drawPolygon(QPolygonF{{{inner.left(), inner.center().y()},
                                       {inner.center().x(), inner.top() - 1},
                                       {inner.right(), inner.center().y()},
                                       {inner.right(), inner.bottom()},
                                       {inner.left(), inner.bottom()}}});
    } else {
        painter.drawRoundedRect(inner, 2, 2);
    }
}

}  // namespace

class RowList::Look : public QStyledItemDelegate {
public:
    explicit Look(RowList& list) : QStyledItemDelegate(&list), list_(list) {}

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override {
        const auto* row = list_.row(index.row());
        const bool isOne =
            row != nullptr && row->detail.empty() && row->mark == PanelRow::Mark::Run;
        const int line = option.fontMetrics.height();
        if (list_.isNarrow()) {
            return {line, line * 3};
        }
        return {line, isOne ? line * 2 : line * 5 / 2};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const auto* row = list_.row(index.row());
        if (row == nullptr) {
            return;
        }
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        Row at{*painter, option, *row, option.rect, option.state.testFlag(QStyle::State_Selected)};
        painter->fillRect(option.rect, at.isChosen
                                           ? option.palette.brush(QPalette::Highlight)
                                           : option.palette.brush(index.row() % 2 == 0
                                                                      ? QPalette::Base
                                                                      : QPalette::AlternateBase));
        const QRect below = takeLineBelow(at);
        paintMark(at);
        paintCells(at);
        if (list_.isNarrow()) {
            paintBelow(at, below);
        } else {
            paintTexts(at);
        }
        if (option.state.testFlag(QStyle::State_HasFocus)) {
            painter->setRenderHint(QPainter::Antialiasing, false);
            painter->setBrush(Qt::NoBrush);
            painter->setPen(QPen(controls::focusInk(option.palette), 1));
            painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
        }
        painter->restore();
    }

private:
    struct Row {
        QPainter& painter;
        const QStyleOptionViewItem& option;
        const PanelRow& row;
        QRect room;  ///< what is not painted yet
        bool isChosen;

        [[nodiscard]] QColor ink(QPalette::ColorRole role) const {
            return option.palette.color(isChosen ? QPalette::HighlightedText : role);
        }
    };

    /// In a narrow list the name has a line to itself.
    [[nodiscard]] QRect takeLineBelow(Row& at) const {
        const int line = at.option.fontMetrics.height();
        const QRect below(at.room.left(), at.room.bottom() - line - line / 6, at.room.width(),
                          line);
        at.room.setBottom(list_.isNarrow() ? below.top() : at.room.bottom());
        return below;
    }

    void paintBelow(Row& at, const QRect& below) const {
        const int pad = padOf(at.option.fontMetrics) / 2;
        at.painter.setPen(at.ink(QPalette::Text));
        at.painter.setFont(smallFont(at.option.font));
        paintLine(at, below.adjusted(pad, 0, -pad, 0), toQt(at.row.title));
    }

    void paintCheckBox(Row& at) const {
        const int side = at.option.fontMetrics.height();
        QStyleOptionButton box;
        box.palette = at.option.palette;
        box.state = QStyle::State_Enabled | (at.row.isShown ? QStyle::State_On : QStyle::State_Off);
        box.rect = QRect(at.room.left() + padOf(at.option.fontMetrics),
                         at.room.center().y() - side / 2, side, side);
        list_.style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, &at.painter, &list_);
        at.room.setLeft(box.rect.right() + padOf(at.option.fontMetrics));
    }

    void paintDisc(Row& at, const QRectF& box, const QColor& fill, const QColor& ink) const {
        at.painter.setPen(Qt::NoPen);
        at.painter.setBrush(fill);
        at.painter.drawEllipse(box);
        at.painter.setPen(ink);
        at.painter.setFont(strongFont(smallFont(at.option.font)));
        at.painter.drawText(box, Qt::AlignCenter, toQt(at.row.number));
    }

    void paintPlate(Row& at, const Theme& theme) const {
        const QFontMetrics metrics(strongFont(at.option.font));
        const auto text = toQt(at.row.number);
        const QRectF box(
            at.room.left() + padOf(metrics) / 2.0, at.room.center().y() - metrics.height() * 0.6,
            metrics.horizontalAdvance(text) + padOf(metrics) * 1.5, metrics.height() * 1.2);
        at.painter.setPen(Qt::NoPen);
        at.painter.setBrush(theme.run(at.row.colour));
        at.painter.drawRoundedRect(box, 3, 3);
        at.painter.setPen(theme.onRun);
        at.painter.setFont(strongFont(at.option.font));
        at.painter.drawText(box, Qt::AlignCenter, text);
        at.room.setLeft(static_cast<int>(box.right()) + padOf(metrics));
    }

    void paintMark(Row& at) const {
        const auto& theme = themeOf(at.option.palette);
        if (at.row.canBeHidden) {
            paintCheckBox(at);
        }
        if (at.row.mark == PanelRow::Mark::Run) {
            paintPlate(at, theme);
            return;
        }
        const int side = discOf(at.option.fontMetrics);
        const QRectF box(at.room.left() + padOf(at.option.fontMetrics) / 2.0,
                         at.room.center().y() - side / 2.0, side, side);
        if (at.row.mark == PanelRow::Mark::School || at.row.mark == PanelRow::Mark::Garage) {
            paintPlaceMark(at.painter, box, at.row.mark == PanelRow::Mark::School, theme);
        } else if (at.row.mark == PanelRow::Mark::Number) {
            paintDisc(at, box, at.isChosen ? at.ink(QPalette::Text) : theme.way,
                      at.isChosen ? at.option.palette.color(QPalette::Highlight) : theme.onRun);
        } else if (at.row.mark == PanelRow::Mark::Candidate) {
            paintDisc(at, box, at.isChosen ? at.ink(QPalette::Text) : theme.candidate,
                      at.isChosen ? at.option.palette.color(QPalette::Highlight) : theme.onRun);
        }
        at.room.setLeft(static_cast<int>(box.right()) + padOf(at.option.fontMetrics));
    }

    void paintCells(Row& at) const {
        for (std::size_t i = at.row.cells.size(); i-- > 0;) {
            const bool isMain = i == list_.columns().whenNarrow;
            if (list_.isNarrow() && !isMain) {
                continue;
            }
            const int width = list_.widths()[i];
            QRect box(at.room.right() - width, at.room.top(), width - padOf(at.option.fontMetrics),
                      at.room.height());
            const bool isStrong = isMain || (i == 2 && at.row.isStrong);
            at.painter.setFont(isStrong ? strongFont(at.option.font) : at.option.font);
            at.painter.setPen(at.ink(i == 0 ? QPalette::PlaceholderText : QPalette::Text));
            at.painter.drawText(box, Qt::AlignRight | Qt::AlignVCenter, toQt(at.row.cells[i]));
            at.room.setRight(at.room.right() - width);
        }
        if (list_.isNarrow() && at.row.isWarned) {
            paintWarning(at, at.room);
        }
    }

    void paintWarning(Row& at, const QRect& line) const {
        const int side = at.option.fontMetrics.height();
        const QRect box(line.left(), line.center().y() - side / 2, side, side);
        controls::paintSign(at.painter, box, controls::Sign::Warning,
                            at.isChosen ? at.ink(QPalette::Text)
                                        : controls::inkOf(controls::Tone::Look, at.option.palette));
    }

    void paintLine(Row& at, const QRect& line, const QString& text) const {
        at.painter.drawText(
            line, Qt::AlignLeft | Qt::AlignVCenter,
            QFontMetrics(at.painter.font()).elidedText(text, Qt::ElideRight, line.width()));
    }

    void paintTexts(Row& at) const {
        const int line = at.option.fontMetrics.height();
        const bool isOne = at.row.detail.empty();
        const bool isPlace =
            at.row.mark == PanelRow::Mark::School || at.row.mark == PanelRow::Mark::Garage;
        QRect first = at.room;
        first.setTop(isOne ? at.room.top() : at.room.center().y() - line);
        first.setHeight(isOne ? at.room.height() : line);
        at.painter.setPen(at.ink(QPalette::Text));
        at.painter.setFont(isPlace ? strongFont(at.option.font) : at.option.font);
        paintLine(at, first, toQt(at.row.title));
        if (isOne) {
            return;
        }
        QRect second(at.room.left(), first.bottom() + 1, at.room.width(), line);
        if (at.row.isWarned) {
            paintWarning(at, second);
            second.setLeft(second.left() + line + 2);
        }
        at.painter.setPen(at.isChosen ? at.ink(QPalette::Text)
                          : at.row.isWarned
                              ? controls::inkOf(controls::Tone::Look, at.option.palette)
                              : at.ink(QPalette::PlaceholderText));
        at.painter.setFont(smallFont(at.option.font));
        paintLine(at, second, toQt(at.row.detail));
    }

    RowList& list_;
};

/// The captions above the rows.
class RowList::Head : public QWidget {
public:
    explicit Head(RowList& list) : QWidget(&list), list_(list) {}

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setFont(smallFont(font()));
        painter.setPen(palette().color(QPalette::PlaceholderText));
        int right = list_.viewport()->width();
        const auto& columns = list_.columns();
        for (std::size_t i = columns.cells.size(); i-- > 0;) {
            if (list_.isNarrow() && i != columns.whenNarrow) {
                continue;
            }
            const QRect box(right - list_.widths()[i], 0, list_.widths()[i] - padOf(fontMetrics()),
                            height());
            painter.drawText(box, Qt::AlignRight | Qt::AlignVCenter, toQt(columns.cells[i]));
            right = box.left();
        }
        const int left =
            list_.isNarrow() ? 0 : discOf(fontMetrics()) + padOf(fontMetrics()) * 3 / 2;
        painter.drawText(QRect(left, 0, right - left, height()), Qt::AlignLeft | Qt::AlignVCenter,
                         toQt(list_.isNarrow() ? std::string() : columns.title));
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawLine(0, height() - 1, width(), height() - 1);
    }

private:
    RowList& list_;
};

RowList::RowList(QWidget* parent) : QListView(parent), rows_(new Rows(this)), head_(nullptr) {
    setModel(rows_);
    setItemDelegate(new Look(*this));
    setSelectionMode(QAbstractItemView::SingleSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setUniformItemSizes(true);
    head_ = new Head(*this);
    connect(this, &QListView::activated, this,
            [this](const QModelIndex& at) { emit rowActivated(at.row()); });
}

RowList::~RowList() = default;

void RowList::showRows(const PanelColumns& columns, std::vector<PanelRow> rows) {
    quiet_ = true;
    columns_ = columns;
    rows_->set(std::move(rows));
    quiet_ = false;
    measure();
}

void RowList::measure() {
    const QFontMetrics strong(strongFont(font()));
    for (std::size_t i = 0; i < widths_.size(); ++i) {
        int width = strong.horizontalAdvance(toQt(columns_.cells[i]));
        for (const auto& row : rows_->all()) {
            width = std::max(width, strong.horizontalAdvance(toQt(row.cells[i])));
        }
        widths_[i] = width == 0 ? 0 : width + padOf(strong) * 3 / 2;
    }
    const int line = fontMetrics().height() * 3 / 2;
    setViewportMargins(0, line, 0, 0);
    head_->setGeometry(frameWidth(), frameWidth(), width() - 2 * frameWidth(), line);
    head_->update();
    scheduleDelayedItemsLayout();
    viewport()->update();
}

void RowList::setNarrow(bool narrow) {
    if (narrow_ != narrow) {
        narrow_ = narrow;
        measure();
    }
}

void RowList::setOrdering(bool on) {
    setDragDropMode(on ? QAbstractItemView::InternalMove : QAbstractItemView::NoDragDrop);
    setDropIndicatorShown(on);
}

const PanelRow* RowList::row(int row) const {
    const auto& rows = rows_->all();
    return row < 0 || row >= static_cast<int>(rows.size()) ? nullptr
                                                           : &rows[static_cast<std::size_t>(row)];
}

int RowList::rowOfIndex(std::size_t index) const {
    const auto& rows = rows_->all();
    const auto found = std::ranges::find(rows, index, &PanelRow::index);
    return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

void RowList::choose(int row) {
    quiet_ = true;
    const auto at = rows_->index(row, 0);
    setCurrentIndex(at);
    if (at.isValid()) {
        scrollTo(at);
    } else {
        clearSelection();
    }
    quiet_ = false;
}

QSize RowList::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 30, fontMetrics().height() * 12};
}

void RowList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QListView::currentChanged(current, previous);
    if (!quiet_ && current.isValid()) {
        emit rowChosen(current.row());
    }
}

void RowList::toggle(int row) {
    const auto* at = this->row(row);
    if (at != nullptr && at->canBeHidden) {
        rows_->check(row, !at->isShown);
        emit rowChecked(row, at->isShown);
    }
}

void RowList::mousePressEvent(QMouseEvent* event) {
    const auto at = indexAt(event->position().toPoint());
    const auto* row = this->row(at.row());
    const int box = fontMetrics().height() + padOf(fontMetrics()) * 2;
    if (event->button() == Qt::LeftButton && row != nullptr && row->canBeHidden &&
        event->position().x() < box) {
        toggle(at.row());
        return;
    }
    QListView::mousePressEvent(event);
}

void RowList::keyPressEvent(QKeyEvent* event) {
    const bool isOrdering = event->modifiers() == Qt::AltModifier && dragEnabled();
    if (isOrdering && event->key() == Qt::Key_Up) {
        emit rowDropped(chosen(), chosen() - 1);
    } else if (isOrdering && event->key() == Qt::Key_Down) {
        emit rowDropped(chosen(), chosen() + 2);
    } else if (event->key() == Qt::Key_Space) {
        toggle(chosen());
    } else {
        QListView::keyPressEvent(event);
    }
}

void RowList::dropEvent(QDropEvent* event) {
    const auto at = indexAt(event->position().toPoint());
    int before = at.isValid() ? at.row() : rows_->rowCount({});
    if (at.isValid() && event->position().y() > visualRect(at).center().y()) {
        ++before;
    }
    event->setDropAction(Qt::IgnoreAction);
    event->accept();
    emit rowDropped(chosen(), before);
}

void RowList::resizeEvent(QResizeEvent* event) {
    QListView::resizeEvent(event);
    head_->setGeometry(frameWidth(), frameWidth(), width() - 2 * frameWidth(), head_->height());
}

void RowList::changeEvent(QEvent* event) {
    QListView::changeEvent(event);
    if (event->type() == QEvent::FontChange && head_ != nullptr) {
        measure();
    }
}

}  // namespace map
