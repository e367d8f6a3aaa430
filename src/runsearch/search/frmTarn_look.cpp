#include <QPainter>
#include <QResizeEvent>
#include <QStackedWidget>
#include <QTabBar>
#include <algorithm>
#include <span>

#include "platform/controls/rowdelegate.h"
#include "platform/controls/tones.h"
#include "platform/forms/flowrow.h"
#include "runsearch/finder/finderbox.h"
#include "runsearch/search/frmTarn.h"

#include "ui_frmTarn.h"

namespace runsearch {

namespace {

/// A sign beside a word, as high as the row marks of the list.
template <class Draw>
QPixmap signBeside(const QLabel& label, Draw draw) {
    constexpr qreal SideInLines = 0.62;
    const qreal ratio = label.devicePixelRatioF();
    const qreal side = label.fontMetrics().height() * SideInLines;
    QPixmap pixmap(QSizeF(side, side).toSize() * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    draw(painter, QRectF(0, 0, side, side));
    return pixmap;
}

struct Cell {
    int row;
    int column;
    int span = 1;
};

/// Where a criterion stands in three columns, in two and in one.
struct Place {
    QWidget* part;
    Cell cells[3];
};

/// Rows that none of the arrangements needs stay empty at the end of the grid.
void arrange(QGridLayout& grid, std::span<const Place> places, std::size_t arrangement) {
    for (const auto& place : places) {
        grid.removeWidget(place.part);
    }
    for (const auto& place : places) {
        const auto& [row, column, span] = place.cells[arrangement];
        grid.addWidget(place.part, row, column, 1, span);
    }
}

}  // namespace

/// What the .ui file cannot say.
void frmTarn::dress() {
    ui_->runBox->setAutoFillBackground(false);
    ui_->RunArea->viewport()->setAutoFillBackground(false);
    on(ui_->RunTab, &QTabWidget::currentChanged, "followPage", &frmTarn::followPage);
    ui_->ToResolve->setForegroundRole(QPalette::PlaceholderText);
    forms::FlowRow::in(*ui_->totalRow);
    ui_->runBox->installEventFilter(this);
}

/// What is told of the selected rows has its lines before a row is selected: the rows never move
/// under a double click. In one column the run's sign and id say enough.
void frmTarn::keepPlaceOfChoice() {
    const bool lean = arranged_ == Criteria::Lean;
    for (QWidget* part : {ui_->ChosenSign, ui_->ChosenLabel, ui_->ChosenRun}) {
        QSizePolicy keeps = part->sizePolicy();
        keeps.setRetainSizeWhenHidden(part != ui_->ChosenLabel || !lean);
        part->setSizePolicy(keeps);
    }
    showChosenRun();
}

void frmTarn::formDress() {
    const QPalette colours = palette();
    const auto keepRoom = [](QLabel& label, const QString& text) {
        label.setMinimumWidth(label.indent() + label.fontMetrics().horizontalAdvance(text));
    };
    keepRoom(*ui_->SelectedCount, tr("1 selected"));
    keepRoom(*ui_->SelectedTotals, tr("100 students, 100.00 miles, 100.00 minutes"));
    keepRoom(*ui_->ChosenRun, QStringLiteral("10000-10"));
    keepRoom(*ui_->ChosenDescription, QStringLiteral("\u2026"));
    ui_->ChosenSign->setPixmap(signBeside(*ui_->ChosenSign, [&](QPainter& painter, QRectF square) {
        controls::drawChosenSign(painter, square, colours.color(QPalette::Highlight));
    }));
    ui_->ToResolveSign->setPixmap(
        signBeside(*ui_->ToResolveSign, [&](QPainter& painter, QRectF square) {
            controls::drawWarningSign(painter, square, inkOf(controls::Tone::Wrong, colours),
                                      colours.color(QPalette::Window));
        }));
    arranged_.reset();
    arrangeCriteria();
    followPage();
}

/// The tabs are as high as the page that is shown, and leave most of the form to the list.
void frmTarn::followPage() {
    constexpr double MostOfForm = 0.4;
    const QWidget& page = *ui_->RunTab->currentWidget();
    const auto& pages = *ui_->RunTab->findChild<QStackedWidget*>();
    const int around = ui_->RunTab->sizeHint().height() - pages.sizeHint().height();
    const int least = page.minimumSizeHint().height();
    const int most = std::max(least, static_cast<int>(height() * MostOfForm));
    // What scrolls goes on telling of the arrangement that it was asked in first.
    const int changed = page.isAncestorOf(ui_->runBox)
                            ? ui_->runBox->sizeHint().height() - ui_->RunArea->sizeHint().height()
                            : 0;
    ui_->RunTab->setFixedHeight(around +
                                std::clamp(page.sizeHint().height() + changed, least, most));
}

void frmTarn::resizeEvent(QResizeEvent* event) {
    TrappedForm::resizeEvent(event);
    arrangeCriteria();
    followPage();
}

bool frmTarn::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::LayoutRequest && watched == ui_->runBox) {
        followPage();
    }
    return TrappedForm::eventFilter(watched, event);
}

void frmTarn::arrangeCriteria() {
    constexpr int WideInCharacters = 185;
    constexpr int NarrowInCharacters = 110;
    const int characters = width() / fontMetrics().averageCharWidth();
    const auto wanted = characters >= WideInCharacters     ? Criteria::Wide
                        : characters >= NarrowInCharacters ? Criteria::Narrow
                                                           : Criteria::Lean;
    if (wanted == arranged_) {
        return;
    }
    arranged_ = wanted;
    keepPlaceOfChoice();
    arrangeHeading();
    arrangeRunPage();
    arrangeSchoolPage();
    arrangeRoutePage();
}

/// Heading and district stand beside the tabs, or above them.
void frmTarn::arrangeHeading() {
    const bool above = arranged_ != Criteria::Wide;
    ui_->RunTab->setCornerWidget(above ? nullptr : ui_->Heading, Qt::TopLeftCorner);
    ui_->RunTab->setCornerWidget(above ? nullptr : headingEnd_, Qt::TopRightCorner);
    if (above) {
        ui_->headingRow->insertWidget(0, ui_->Heading);
        ui_->headingRow->addWidget(headingEnd_);
    }
    ui_->Heading->show();
    headingEnd_->show();
    // Keys go from left to right, wherever it stands.
    QWidget* const before = ui_->RunTab->tabBar();
    setTabOrder(above ? ui_->Exit : before, finder_);
}

void frmTarn::arrangeRunPage() {
    const Place places[]{{ui_->RunIdLabel, {{0, 0}, {0, 0}, {0, 0}}},
                         {ui_->RunId, {{0, 1}, {0, 1}, {0, 1, 4}}},
                         {ui_->RunDescLabel, {{1, 0}, {1, 0}, {1, 0}}},
                         {ui_->RunDesc, {{1, 1}, {1, 1}, {1, 1, 4}}},
                         {ui_->cmbRunFamilyLabel, {{0, 2}, {2, 0}, {2, 0}}},
                         {ui_->cmbRunFamily, {{0, 3}, {2, 1}, {2, 1, 4}}},
                         {ui_->cmbLOCCODELabel, {{1, 2}, {3, 0}, {3, 0}}},
                         {ui_->cmbLOCCODE, {{1, 3}, {3, 1}, {3, 1, 4}}},
                         {ui_->StartLabel, {{0, 4}, {0, 2}, {4, 0}}},
                         {ui_->StartBegLabel, {{0, 5}, {0, 3}, {4, 1}}},
                         {ui_->Start_BegTime, {{0, 6}, {0, 4}, {4, 2}}},
                         {ui_->StartEndLabel, {{0, 7}, {0, 5}, {4, 3}}},
                         {ui_->Start_EndTime, {{0, 8}, {0, 6}, {4, 4}}},
                         {ui_->EndLabel, {{1, 4}, {1, 2}, {5, 0}}},
                         {ui_->EndBegLabel, {{1, 5}, {1, 3}, {5, 1}}},
                         {ui_->End_BegTime, {{1, 6}, {1, 4}, {5, 2}}},
                         {ui_->EndEndLabel, {{1, 7}, {1, 5}, {5, 3}}},
                         {ui_->End_EndTime, {{1, 8}, {1, 6}, {5, 4}}},
                         {ui_->BellLabel, {{2, 4}, {2, 2}, {6, 0}}},
                         {ui_->BellBegLabel, {{2, 5}, {2, 3}, {6, 1}}},
                         {ui_->Bell_BegTime, {{2, 6}, {2, 4}, {6, 2}}},
                         {ui_->BellEndLabel, {{2, 7}, {2, 5}, {6, 3}}},
                         {ui_->Bell_EndTime, {{2, 8}, {2, 6}, {6, 4}}},
                         {ui_->NeedResolve, {{2, 1, 3}, {3, 2, 5}, {7, 0, 5}}}};
    constexpr int Stretches[3][9]{
        {0, 3, 0, 2, 0, 0, 0, 0, 0}, {0, 8, 0, 0, 0, 0, 0, 1, 0}, {0, 0, 1, 0, 1, 0, 0, 0, 0}};
    constexpr int IndentOfRanges = 18;
    const auto arrangement = static_cast<std::size_t>(*arranged_);
    const bool lean = arranged_ == Criteria::Lean;
    arrange(*ui_->runGrid, places, arrangement);
    for (int column = 0; column < 9; ++column) {
        ui_->runGrid->setColumnStretch(column, Stretches[arrangement][column]);
    }
    for (auto* label : {ui_->StartLabel, ui_->EndLabel, ui_->BellLabel}) {
        label->setIndent(lean ? 0 : IndentOfRanges);
    }
    ui_->runGrid->activate();
    const int rows = lean ? 4 : 8;
    ui_->RunArea->setMinimumHeight(
        std::min(ui_->runBox->sizeHint().height(),
                 rows * (ui_->RunId->sizeHint().height() + ui_->runGrid->verticalSpacing())));
}

/// In one column the check boxes stand below the captions of their lists.
void frmTarn::arrangeSchoolPage() {
    const Place school{ui_->SearchStops, {{0, 3}, {0, 3}, {1, 0, 4}}};
    const Place tripType{ui_->Search_Stops_TripType, {{0, 3}, {0, 3}, {1, 0, 4}}};
    const auto arrangement = static_cast<std::size_t>(*arranged_);
    arrange(*ui_->lstSchoolTop, {&school, 1}, arrangement);
    arrange(*ui_->lstTripTypeTop, {&tripType, 1}, arrangement);
}

/// In one column the names stand below their codes.
void frmTarn::arrangeRoutePage() {
    const Place places[]{{ui_->UseRoute, {{0, 0, 3}, {0, 0, 3}, {0, 0, 6}}},
                         {ui_->NotOnRoute, {{0, 3, 3}, {0, 3, 3}, {1, 0, 6}}},
                         {ui_->cmbRouteLabel, {{1, 0}, {1, 0}, {2, 0}}},
                         {ui_->cmbRoute, {{1, 1}, {1, 1}, {2, 1, 2}}},
                         {ui_->cmbVehicleLabel, {{1, 3}, {1, 3}, {2, 3}}},
                         {ui_->cmbVehicle, {{1, 4}, {1, 4}, {2, 4, 2}}},
                         {ui_->VehDescription, {{1, 5}, {1, 5}, {3, 4, 2}}},
                         {ui_->cmbEmployeeLabel, {{2, 0}, {2, 0}, {4, 0}}},
                         {ui_->cmbEmployee, {{2, 1}, {2, 1}, {4, 1, 2}}},
                         {ui_->EmpName, {{2, 2}, {2, 2}, {5, 1, 2}}},
                         {ui_->cmbAidLabel, {{2, 3}, {2, 3}, {4, 3}}},
                         {ui_->cmbAid, {{2, 4}, {2, 4}, {4, 4, 2}}},
                         {ui_->AidName, {{2, 5}, {2, 5}, {5, 4, 2}}}};
    arrange(*ui_->routeGrid, places, static_cast<std::size_t>(*arranged_));
}

}  // namespace runsearch
