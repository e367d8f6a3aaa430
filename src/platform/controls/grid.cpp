#include "platform/controls/grid.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "platform/controls/celldelegate.h"
#include "platform/controls/qtext.h"
#include "platform/controls/signs.h"
#include "platform/table/tablecopy.h"

namespace controls {

namespace {

/// Cells that cannot be typed into stand back behind those that can. Red ones have a mark.
class GridDelegate : public CellDelegate {
public:
    using CellDelegate::CellDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        CellDelegate::paint(painter, option, index);
        if (index.data(RedRole).toBool()) {
            const int side = option.fontMetrics.height();
            const bool selected = option.state.testFlag(QStyle::State_Selected);
            const QRect end(option.rect.right() - side, option.rect.top(), side,
                            option.rect.height());
            paintSign(*painter, end, Sign::Warning, selected ? Qt::white : Qt::black);
        }
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        CellDelegate::initStyleOption(option, index);
        const auto* grid = qobject_cast<const GridModel*>(index.model());
        if (grid->anyEditable() && !index.flags().testFlag(Qt::ItemIsEditable)) {
            option->backgroundBrush = option->palette.brush(QPalette::AlternateBase);
        }
    }
};

}  // namespace

class GridView : public QTableView {
public:
    using QTableView::QTableView;

    void finishTyping() {
        if (QWidget* editor = indexWidget(currentIndex())) {
            commitData(editor);
            closeEditor(editor, QAbstractItemDelegate::NoHint);
        }
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        if (enter && state() == EditingState) {
            // Behind the editor's own end, which waits in the queue as well.
            QMetaObject::invokeMethod(
                this, [this] { goDown(); }, Qt::QueuedConnection);
            return;
        }
        if (enter || (!event->text().isEmpty() && event->text()[0].isPrint())) {
            goToEditableCell();
        }
        if (enter) {
            edit(currentIndex());
            return;
        }
        QTableView::keyPressEvent(event);
    }

private:
    void goToEditableCell() {
        const QModelIndex current = currentIndex();
        for (int column = 0; column < model()->columnCount(); ++column) {
            const QModelIndex cell = model()->index(current.row(), column);
            if (cell.isValid() && cell.flags().testFlag(Qt::ItemIsEditable)) {
                selectionModel()->setCurrentIndex(cell, QItemSelectionModel::NoUpdate);
                return;
            }
        }
    }
    void goDown() {
        const QModelIndex below = currentIndex().siblingAtRow(currentIndex().row() + 1);
        if (below.isValid()) {
            setCurrentIndex(below);
        }
    }
};

Grid::Grid(QWidget* parent)
    : QFrame(parent),
      model_(new GridModel(this)),
      caption_(new QLabel(this)),
      view_(new GridView(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(caption_);
    layout->addWidget(view_);
    caption_->setBuddy(view_);
    caption_->hide();
    setFocusProxy(view_);

    view_->setModel(model_);
    view_->setItemDelegate(new GridDelegate(view_));
    view_->setSelectionBehavior(QAbstractItemView::SelectRows);
    view_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    // Not by a click on a selected row: the delay of that swallows what is typed meanwhile.
    view_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                           QAbstractItemView::AnyKeyPressed);
    view_->setTabKeyNavigation(false);
    view_->setCornerButtonEnabled(false);
    view_->verticalHeader()->hide();
    view_->verticalHeader()->setDefaultSectionSize(view_->fontMetrics().height() + 10);
    view_->horizontalHeader()->setHighlightSections(false);
    view_->horizontalHeader()->setStretchLastSection(true);
    view_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    connect(model_, &GridModel::typed, this, &Grid::cellEdited);
    connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { emit selectionCountChanged(static_cast<int>(selectedRows().size())); });
    addActions();
}

void Grid::addActions() {
    const auto add = [this](const QString& text, const QKeySequence& key, auto procedure) {
        auto* action = new QAction(text, view_);
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, procedure);
        view_->addAction(action);
    };
    add(tr("&Copy Rows"), QKeySequence::Copy, [this] { copyRows(); });
    add(tr("&Empty Cells"), QKeySequence::Delete, [this] { emptyRows(); });
    add(tr("Select &All"), QKeySequence::SelectAll, [this] { selectAllRows(); });
    view_->setContextMenuPolicy(Qt::ActionsContextMenu);
}

QString Grid::caption() const { return caption_->text(); }

void Grid::setCaption(const QString& caption) {
    caption_->setText(caption);
    caption_->setVisible(!caption.isEmpty());
}

void Grid::setColumns(std::vector<GridColumn> columns) {
    model_->setColumns(std::move(columns));
    view_->resizeColumnsToContents();
}

const std::vector<GridColumn>& Grid::columns() const { return model_->columns(); }

void Grid::setRows(std::vector<std::vector<std::string>> rows) {
    model_->setRows(std::move(rows));
    fitColumns();
    emit selectionCountChanged(0);
}

void Grid::fitColumns() {
    constexpr int Roomy = 8;
    for (int column = 0; column < model_->columnCount(); ++column) {
        view_->resizeColumnToContents(column);
        view_->setColumnWidth(column, view_->columnWidth(column) + Roomy);
    }
}

int Grid::rows() const { return model_->rowCount(); }

std::string Grid::cellText(int row, int column) const { return model_->text(row, column); }

void Grid::setCellText(int row, int column, const std::string& text) {
    model_->setText(row, column, text);
}

bool Grid::isRed(int row, int column) const { return model_->isRed(row, column); }

void Grid::setRed(int row, int column, bool red) { model_->setRed(row, column, red); }

void Grid::setNote(int row, int column, CellNote note) { model_->setNote(row, column, note); }

void Grid::setWideColumn(int column) {
    view_->horizontalHeader()->setStretchLastSection(false);
    view_->horizontalHeader()->setSectionResizeMode(column, QHeaderView::Stretch);
}

std::vector<int> Grid::selectedRows() const {
    std::vector<int> rows;
    for (const QModelIndex& index : view_->selectionModel()->selectedRows()) {
        rows.push_back(index.row());
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

void Grid::selectRows(std::span<const int> rows) {
    QItemSelection selection;
    for (const int row : rows) {
        selection.select(model_->index(row, 0), model_->index(row, model_->columnCount() - 1));
    }
    view_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void Grid::selectAllRows() { view_->selectAll(); }

void Grid::selectNone() { view_->clearSelection(); }

void Grid::finishTyping() { view_->finishTyping(); }

QTableView& Grid::view() { return *view_; }

void Grid::typeInto(int row, int column) {
    const QModelIndex cell = model_->index(row, column);
    view_->setFocus();
    view_->setCurrentIndex(cell);
    view_->scrollTo(cell);
    view_->edit(cell);
}

void Grid::copyRows() const {
    table::TextTable table;
    for (const GridColumn& column : columns()) {
        table.columns.push_back({column.caption});
    }
    std::vector<std::size_t> copied;
    for (const int row : selectedRows()) {
        copied.push_back(table.addRow());
        for (std::size_t column = 0; column < columns().size(); ++column) {
            table.setText(copied.back(), column, cellText(row, static_cast<int>(column)));
        }
    }
    if (!copied.empty()) {
        QApplication::clipboard()->setText(
            toQt(table::tabSeparated(table::wholeRows(table, copied), table::Captions::Shown)));
    }
}

void Grid::emptyRows() {
    for (const int row : selectedRows()) {
        for (int column = 0; column < model_->columnCount(); ++column) {
            const QModelIndex cell = model_->index(row, column);
            if (cell.flags().testFlag(Qt::ItemIsEditable)) {
                model_->setData(cell, QString(), Qt::EditRole);
            }
        }
    }
}

}  // namespace controls
