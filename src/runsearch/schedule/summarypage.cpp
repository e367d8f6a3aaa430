#include "runsearch/schedule/summarypage.h"

#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/controls/multicolumnlist.h"
#include "platform/controls/qtext.h"
#include "runsearch/schedule/busplot.h"

namespace schedule {

namespace {

using controls::toQt;

QString footText(const Summaries& summaries) {
    const auto text = SummaryPage::tr(
        "Hours and miles are with riders; an empty trip between two runs counts once, with the run "
        "it leads to.");
    const int count = summaries.withoutLength;
    return count == 0   ? text
           : count == 1 ? SummaryPage::tr(
                              "1 run has no length: it counts as a run, not in hours, "
                              "peaks and plots. ") +
                              text
                        : SummaryPage::tr(
                              "%1 runs have no length: they count as runs, not in "
                              "hours, peaks and plots. ")
                                  .arg(count) +
                              text;
}

/// Draws the day of each row in the last column.
class DayDelegate : public QStyledItemDelegate {
public:
    DayDelegate(SummaryPage& page, const Plan* const& plan)
        : QStyledItemDelegate(&page), page_(page), plan_(plan) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyledItemDelegate::paint(painter, option, index);
        if (plan_ == nullptr) {
            return;
        }
        const auto& curve = page_.groupOf(index.row()).buses;
        const bool isSelected = (option.state & QStyle::State_Selected) != 0;
        paintDay(*painter, QRectF(option.rect).adjusted(0, 3, 0, -2), curve, *plan_,
                 page_.summaries().all.buses, option.palette,
                 isSelected ? option.palette.color(QPalette::HighlightedText) : QColor());
    }

private:
    SummaryPage& page_;
    const Plan* const& plan_;
};

}  // namespace

/// The total under the list, in its columns wherever these are.
class TotalRow : public QWidget {
public:
    explicit TotalRow(controls::MultiColumnList& list, QWidget* parent)
        : QWidget(parent), list_(list) {
        auto* header = list.header();
        QObject::connect(header, &QHeaderView::sectionResized, this, [this] { update(); });
        QObject::connect(list.horizontalScrollBar(), &QScrollBar::valueChanged, this,
                         [this] { update(); });
        QObject::connect(header, &QHeaderView::geometriesChanged, this, [this] { update(); });
    }

    void showTotal(table::TextTable table, const Plan& plan, const StepCurve& curve) {
        table_ = std::move(table);
        plan_ = &plan;
        curve_ = &curve;
        update();
    }
    [[nodiscard]] QSize sizeHint() const override { return {100, fontMetrics().height() + 10}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        auto bold = font();
        bold.setBold(true);
        painter.setFont(bold);
        painter.fillRect(rect(), palette().base());
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawLine(0, 0, width(), 0);
        for (int column = 0; plan_ != nullptr && column < list_.header()->count(); ++column) {
            paintCell(painter, column);
        }
    }

private:
    void paintCell(QPainter& painter, int column) {
        const auto* header = list_.header();
        const int left = header->sectionViewportPosition(column) + list_.frameWidth();
        const QRect cell(left, 1, header->sectionSize(column), height() - 1);
        if (column + 1 == header->count()) {
            paintDay(painter, QRectF(cell).adjusted(0, 3, 0, -2), *curve_, *plan_, *curve_,
                     palette(), {});
            return;
        }
        painter.setPen(palette().color(QPalette::Text));
        const int align =
            list_.model()->headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt();
        painter.drawText(cell.adjusted(6, 0, -6, 0), align | Qt::AlignVCenter,
                         toQt(table_.text(0, static_cast<std::size_t>(column))));
    }

    controls::MultiColumnList& list_;
    table::TextTable table_;
    const Plan* plan_ = nullptr;
    const StepCurve* curve_ = nullptr;
};

SummaryPage::SummaryPage(QWidget* parent)
    : QWidget(parent),
      list_(new controls::MultiColumnList(this)),
      total_(new TotalRow(*list_, this)),
      plot_(new BusPlot(this)),
      foot_(new QLabel(this)) {
    auto* column = new QVBoxLayout(this);
    column->setSpacing(0);
    list_->setAccessibleName(tr("Summary"));
    list_->setMinimumHeight(120);
    list_->header()->setStretchLastSection(true);
    list_->setItemDelegateForColumn(LastSummaryColumn, new DayDelegate(*this, plan_));
    column->addWidget(list_, 2);
    column->addWidget(total_);
    column->addSpacing(8);
    column->addWidget(plot_, 3);
    column->addSpacing(4);
    foot_->setObjectName("SummaryFoot");
    foot_->setWordWrap(true);
    column->addWidget(foot_);
    connect(list_, &controls::MultiColumnList::rowClicked, this, [this] { showChosen(); });
    connect(list_, &controls::MultiColumnList::columnClicked, list_,
            [this](int clicked) { list_->toggleSort(clicked); });
}

const Summary& SummaryPage::groupOf(int row) const {
    return summaries_.groups[list_->tableRow(row)];
}

void SummaryPage::showSummaries(const Plan& plan, Summaries summaries, Grouping grouping) {
    list_->setObjectName(objectName() + "List");
    const auto chosen = list_->chosenKey();
    const int sorted = list_->sortColumn();
    const auto order = list_->sortOrder();
    plan_ = &plan;
    summaries_ = std::move(summaries);
    list_->setTable(summaryTable(summaries_, grouping));
    if (sorted >= 0) {
        list_->sortingOff();
        list_->toggleSort(sorted);
        if (order == Qt::DescendingOrder) {
            list_->toggleSort(sorted);
        }
    }
    for (int row = 0; row < list_->rows() && !chosen.empty(); ++row) {
        if (list_->cellText(row, 0) == chosen) {
            list_->choose(row);
            break;
        }
    }
    total_->showTotal(totalTable(summaries_, grouping), plan, summaries_.all.buses);
    foot_->setText(footText(summaries_));
    showChosen();
}

void SummaryPage::showChosen() {
    const int row = list_->chosenRow();
    plot_->showCurves(summaries_.all, row < 0 ? nullptr : &groupOf(row));
}

}  // namespace schedule
