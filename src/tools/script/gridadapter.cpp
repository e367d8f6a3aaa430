#include "tools/script/gridadapter.h"

#include <QTableView>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/controls/qtext.h"
#include "tools/script/userinput.h"

namespace script {

std::vector<std::string> GridAdapter::lines() const {
    std::vector<std::string> lines{
        base::joined(grid_.columns(), "\t", &controls::GridColumn::caption)};
    for (int row = 1; row <= grid_.rows(); ++row) {
        lines.push_back(rowText(row));
    }
    return lines;
}

std::string GridAdapter::rowText(int row) const {
    const int at = cell(row, 1).row();
    std::string text;
    for (int column = 0; column < std::ssize(grid_.columns()); ++column) {
        text += column == 0 ? "" : "\t";
        text += grid_.isRed(at, column) ? "!" : "";
        text += grid_.cellText(at, column);
    }
    return text;
}

void GridAdapter::selectRows(std::span<const int> rows) {
    Qt::KeyboardModifiers held = Qt::NoModifier;
    for (const int row : rows) {
        clickAt(*grid_.view().viewport(), place(cell(row, 1)), held);
        held = Qt::ControlModifier;
    }
}

void GridAdapter::selectAll() {
    focus(grid_.view());
    pressKey(grid_.view(), Qt::Key_A, Qt::ControlModifier);
}

void GridAdapter::setCell(int row, int column, const std::string& text) {
    const QModelIndex index = cell(row, column);
    if (!index.flags().testFlag(Qt::ItemIsEditable)) {
        cannot(fmt::format("has a column {} to type into", column));
    }
    QTableView& view = grid_.view();
    focus(view);
    // A single click on a selected row waits for a second one and lets no key begin meanwhile.
    doubleClickAt(*view.viewport(), place(index));
    if (view.indexWidget(index) == nullptr) {
        cannot(fmt::format("takes a text in row {}, column {} now", row, column));
    }
    QWidget& editor = *view.indexWidget(index);
    pressKey(editor, Qt::Key_A, Qt::ControlModifier);
    pressKey(editor, Qt::Key_Delete);
    typeText(editor, controls::toQt(text));
    pressKey(editor, Qt::Key_Return);
    settle();
}

QModelIndex GridAdapter::cell(int row, int column) const {
    if (row < 1 || row > grid_.rows()) {
        cannot(fmt::format("has a row {}, it has {}", row, grid_.rows()));
    }
    if (column < 1 || column > std::ssize(grid_.columns())) {
        cannot(fmt::format("has a column {}, it has {}", column, grid_.columns().size()));
    }
    return grid_.view().model()->index(row - 1, column - 1);
}

QPoint GridAdapter::place(const QModelIndex& index) const {
    grid_.view().scrollTo(index);
    return grid_.view().visualRect(index).center();
}

}  // namespace script
