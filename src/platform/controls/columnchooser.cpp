#include "platform/controls/columnchooser.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/controls/multicolumnlist.h"
#include "platform/controls/qtext.h"

namespace controls {

namespace {

class ColumnChooser : public QDialog {
public:
    explicit ColumnChooser(MultiColumnList& list);

private:
    void addColumns();
    QPushButton* addButton(const QString& text);
    void move(int by);
    void enableMoves();
    void apply();
    void reset();
    [[nodiscard]] bool mayMove(int row, int by) const;
    [[nodiscard]] int columnAt(int row) const {
        return columns_->item(row)->data(Qt::UserRole).toInt();
    }

    MultiColumnList& list_;
    QListWidget* columns_;
    QVBoxLayout* buttons_;
    QPushButton* up_;
    QPushButton* down_;
};

ColumnChooser::ColumnChooser(MultiColumnList& list)
    : QDialog(list.window()),
      list_(list),
      columns_(new QListWidget),
      buttons_(new QVBoxLayout),
      up_(addButton(MultiColumnList::tr("Move &Up"))),
      down_(addButton(MultiColumnList::tr("Move &Down"))) {
    setObjectName("ColumnChooser");
    setWindowTitle(MultiColumnList::tr("Choose Columns"));
    auto* label =
        new QLabel(MultiColumnList::tr("&Columns from the left; those with a tick are shown"));
    label->setBuddy(columns_);
    auto* row = new QHBoxLayout;
    row->addWidget(columns_, 1);
    row->addLayout(buttons_);
    connect(addButton(MultiColumnList::tr("&Reset")), &QPushButton::clicked, this,
            [this] { reset(); });
    buttons_->addStretch();
    auto* answers = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    auto* column = new QVBoxLayout(this);
    column->addWidget(label);
    column->addLayout(row, 1);
    column->addWidget(answers);
    connect(up_, &QPushButton::clicked, this, [this] { move(-1); });
    connect(down_, &QPushButton::clicked, this, [this] { move(1); });
    connect(columns_, &QListWidget::currentRowChanged, this, [this] { enableMoves(); });
    connect(answers, &QDialogButtonBox::accepted, this, [this] { apply(); });
    connect(answers, &QDialogButtonBox::rejected, this, &QDialog::reject);
    addColumns();
}

QPushButton* ColumnChooser::addButton(const QString& text) {
    auto* button = new QPushButton(text);
    button->setAutoDefault(false);
    buttons_->addWidget(button);
    return button;
}

void ColumnChooser::addColumns() {
    for (const int column : list_.columnOrder()) {
        const auto& shown = list_.table().columns[static_cast<std::size_t>(column)];
        auto* item = new QListWidgetItem(toQt(shown.caption), columns_);
        item->setData(Qt::UserRole, column);
        item->setCheckState(list_.header()->isSectionHidden(column) ? Qt::Unchecked : Qt::Checked);
        if (list_.isFixed(column)) {
            item->setFlags(item->flags() & ~Qt::ItemIsUserCheckable);
        }
    }
    columns_->setCurrentRow(0);
}

bool ColumnChooser::mayMove(int row, int by) const {
    const int to = row + by;
    return row >= 0 && to >= 0 && to < columns_->count() && !list_.isFixed(columnAt(row)) &&
           !list_.isFixed(columnAt(to));
}

void ColumnChooser::enableMoves() {
    up_->setEnabled(mayMove(columns_->currentRow(), -1));
    down_->setEnabled(mayMove(columns_->currentRow(), 1));
}

void ColumnChooser::move(int by) {
    const int row = columns_->currentRow();
    if (mayMove(row, by)) {
        columns_->insertItem(row + by, columns_->takeItem(row));
        columns_->setCurrentRow(row + by);
    }
}

void ColumnChooser::apply() {
    std::vector<int> order;
    order.reserve(static_cast<std::size_t>(columns_->count()));
    for (int row = 0; row < columns_->count(); ++row) {
        order.push_back(columnAt(row));
        list_.showColumn(columnAt(row), columns_->item(row)->checkState() == Qt::Checked);
    }
    list_.orderColumns(order);
    accept();
}

void ColumnChooser::reset() {
    list_.resetColumns();
    accept();
}

}  // namespace

void chooseColumns(MultiColumnList& list) { ColumnChooser(list).exec(); }

}  // namespace controls
