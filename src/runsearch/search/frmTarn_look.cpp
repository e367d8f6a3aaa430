#include <QPainter>
#include <QResizeEvent>
#include <QStackedWidget>
#include <algorithm>

#include "platform/controls/rowdelegate.h"
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

/// Where a criterion stands in three columns and in two.
struct Place {
    QWidget* part;
    Cell wide;
    Cell narrow;
};

}  // namespace

/// What the .ui file cannot say.
void frmTarn::dress() {
    ui_->RunTab->setCornerWidget(ui_->Heading, Qt::TopLeftCorner);
    ui_->RunTab->setCornerWidget(ui_->DistrictName, Qt::TopRightCorner);
    on(ui_->RunTab, &QTabWidget::currentChanged, "followPage", &frmTarn::followPage);
    followPage();
    const QPalette colours = palette();
    ui_->ChosenSign->setPixmap(signBeside(*ui_->ChosenSign, [&](QPainter& painter, QRectF square) {
        controls::drawChosenSign(painter, square, colours.color(QPalette::Highlight));
    }));
    const bool dark = colours.color(QPalette::Base).lightness() < 128;
    ui_->ToResolveSign->setPixmap(
        signBeside(*ui_->ToResolveSign, [&](QPainter& painter, QRectF square) {
            controls::drawWarningSign(painter, square, QColor(dark ? "#ff8a85" : "#b3151b"),
                                      colours.color(QPalette::Window));
        }));
    ui_->ToResolve->setForegroundRole(QPalette::PlaceholderText);
}

/// The tabs are as high as the page that is shown, and leave most of the form to the list.
void frmTarn::followPage() {
    constexpr double MostOfForm = 0.4;
    const QWidget& page = *ui_->RunTab->currentWidget();
    const auto& pages = *ui_->RunTab->findChild<QStackedWidget*>();
    const int around = ui_->RunTab->sizeHint().height() - pages.sizeHint().height();
    const int least = page.minimumSizeHint().height();
    const int most = std::max(least, static_cast<int>(height() * MostOfForm));
    ui_->RunTab->setFixedHeight(around + std::clamp(page.sizeHint().height(), least, most));
}

void frmTarn::resizeEvent(QResizeEvent* event) {
    TrappedForm::resizeEvent(event);
    arrangeCriteria();
    followPage();
}

void frmTarn::arrangeCriteria() {
    constexpr int WideInCharacters = 185;
    const bool wide = width() >= WideInCharacters * fontMetrics().averageCharWidth();
    if (wide == wide_) {
        return;
    }
    wide_ = wide;
    const Place places[]{
        {ui_->cmbRunFamilyLabel, {0, 2}, {2, 0}}, {ui_->cmbRunFamily, {0, 3}, {2, 1}},
        {ui_->cmbLOCCODELabel, {1, 2}, {3, 0}},   {ui_->cmbLOCCODE, {1, 3}, {3, 1}},
        {ui_->StartLabel, {0, 4}, {0, 2}},        {ui_->StartBegLabel, {0, 5}, {0, 3}},
        {ui_->Start_BegTime, {0, 6}, {0, 4}},     {ui_->StartEndLabel, {0, 7}, {0, 5}},
        {ui_->Start_EndTime, {0, 8}, {0, 6}},     {ui_->EndLabel, {1, 4}, {1, 2}},
        {ui_->EndBegLabel, {1, 5}, {1, 3}},       {ui_->End_BegTime, {1, 6}, {1, 4}},
        {ui_->EndEndLabel, {1, 7}, {1, 5}},       {ui_->End_EndTime, {1, 8}, {1, 6}},
        {ui_->BellLabel, {2, 4}, {2, 2}},         {ui_->BellBegLabel, {2, 5}, {2, 3}},
        {ui_->Bell_BegTime, {2, 6}, {2, 4}},      {ui_->BellEndLabel, {2, 7}, {2, 5}},
        {ui_->Bell_EndTime, {2, 8}, {2, 6}},      {ui_->NeedResolve, {2, 1, 3}, {3, 2, 5}}};
    for (const auto& place : places) {
        ui_->runGrid->removeWidget(place.part);
    }
    for (const auto& [part, wideCell, narrowCell] : places) {
        const auto& [row, column, span] = wide ? wideCell : narrowCell;
        ui_->runGrid->addWidget(part, row, column, 1, span);
    }
    const int stretches[2][9]{{0, 8, 0, 0, 0, 0, 0, 1, 0}, {0, 3, 0, 2, 0, 0, 0, 0, 0}};
    for (int column = 0; column < 9; ++column) {
        ui_->runGrid->setColumnStretch(column, stretches[wide ? 1 : 0][column]);
    }
}

}  // namespace runsearch
