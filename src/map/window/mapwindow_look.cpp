#include <QMenu>
#include <QShortcut>

#include "map/window/mapwindow.h"
#include "platform/controls/layoutmemory.h"

#include "ui_mapwindow.h"

namespace map {

constexpr auto AskKey = "MapWindow/AskFirst";

// What the map needs beside the panel, in pixels: its signs do not grow with the font.
constexpr int LeastBesidePanel = 728;
constexpr int LeastBesideNarrow = 650;
constexpr int LeastLinesBelow = 20;
constexpr int PanelCharacters = 64;
constexpr int NarrowCharacters = 26;

void MapWindow::wireControls() {
    on(ui_->SolveIt, &QPushButton::clicked, "SolveIt_Click", &MapWindow::SolveIt_Click);
    on(ui_->TakeOver, &QPushButton::clicked, "TakeOver_Click", &MapWindow::TakeOver_Click);
    on(ui_->KeepOldWay, &QPushButton::clicked, "KeepOldWay_Click", &MapWindow::KeepOldWay_Click);
    on(ui_->OpenRun, &QPushButton::clicked, "OpenRun_Click", &MapWindow::OpenRun_Click);
    on(ui_->SolveRuns, &QPushButton::clicked, "SolveRuns_Click", &MapWindow::SolveRuns_Click);
    on(ui_->Directions, &QPushButton::clicked, "Directions_Click", &MapWindow::Directions_Click);
    on(ui_->CloseIt, &QPushButton::clicked, "CloseIt_Click", &MapWindow::CloseIt_Click);
    on(ui_->Rows, &RowList::rowChosen, "Rows_Click", &MapWindow::chooseRow);
    on(ui_->Rows, &RowList::rowActivated, "Rows_DblClick", &MapWindow::activateRow);
    on(ui_->Rows, &RowList::rowChecked, "Rows_Check", [this](int row, bool shown) {
        runs_[ui_->Rows->row(row)->index].isShown = shown;
        showScene(false);
        tellStatus();
    });
    on(ui_->FindIt, &SearchBox::offerWanted, "FindIt_Change", &MapWindow::FindIt_Change);
    on(ui_->FindIt, &SearchBox::taken, "FindIt_Click", &MapWindow::find);
    on(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, "FindIt_GotFocus",
       [this] { ui_->FindIt->setFocus(Qt::ShortcutFocusReason); });
    on(new QShortcut(Qt::Key_F5, this), &QShortcut::activated, "Reload", &MapWindow::Reload);
}

void MapWindow::wireMap() {
    ui_->Streets->setTelling([this](const Hit& hit) { return toldOf(hit); });
    ui_->Streets->setStepping([this](bool forward) { return step(forward); });
    on(ui_->Streets, &MapView::hitChosen, "Streets_Click", &MapWindow::chooseHit);
    on(ui_->Streets, &MapView::hitActivated, "Streets_DblClick", &MapWindow::openHit);
    on(ui_->Streets, &MapView::enterPressed, "Streets_Enter", &MapWindow::enterStop);
    on(ui_->Streets, &MapView::escapePressed, "Streets_Escape", &MapWindow::leaveStop);
}

void MapWindow::fillMenu() {
    auto* menu = new QMenu(this);
    on(menu->addAction(tr("Runs of the &School")), &QAction::triggered, "SchoolRuns_Click",
       &MapWindow::SchoolRuns_Click);
    on(menu->addAction(tr("Runs of the &Route")), &QAction::triggered, "RouteRuns_Click",
       &MapWindow::RouteRuns_Click);
    menu->addSeparator();
    auto* points = menu->addAction(tr("Show A&ll Stops"));
    points->setObjectName(QStringLiteral("AllStops"));
    points->setCheckable(true);
    on(points, &QAction::toggled, "AllStops_Click", &MapWindow::AllStops_Click);
    auto* homes = menu->addAction(tr("Show Students' &Homes"));
    homes->setObjectName(QStringLiteral("Homes"));
    homes->setCheckable(true);
    homes->setShortcut(Qt::CTRL | Qt::Key_H);
    homes->setVisible(district_.homes != nullptr);
    homes->setChecked(showsHomes());
    addAction(homes);
    on(homes, &QAction::toggled, "Homes_Click", &MapWindow::Homes_Click);
    menu->addSeparator();
    auto* moves = menu->addAction(tr("&Move Stops by Hand"));
    moves->setCheckable(true);
    moves->setToolTip(tr("Stops are dragged without holding Alt."));
    on(moves, &QAction::toggled, "MoveStop_Click", &MapWindow::MoveStop_Click);
    on(menu->addAction(tr("Suggest an &Order")), &QAction::triggered, "SuggestOrder_Click",
       &MapWindow::SuggestOrder_Click);
    menu->addSeparator();
    on(menu->addAction(tr("&Print Map...")), &QAction::triggered, "PrintIt_Click",
       &MapWindow::PrintIt_Click);
    on(menu->addAction(tr("&Export Map...")), &QAction::triggered, "ExportIt_Click",
       &MapWindow::ExportIt_Click);
    menu->addSeparator();
    auto* asks = menu->addAction(tr("&Ask Before Taking Over"));
    asks->setCheckable(true);
    asks->setChecked(asksFirst());
    asks->setToolTip(tr("A run that Map It sends is shown before and after first."));
    on(asks, &QAction::toggled, "AskFirst_Click",
       [](bool on) { controls::LayoutMemory::instance().remember(QLatin1String(AskKey), on); });
    ui_->More->setMenu(menu);
}

bool MapWindow::asksFirst() {
    return controls::LayoutMemory::instance().recall(QLatin1String(AskKey)).value<QVariant>() !=
           QVariant(false);
}

void MapWindow::formDress() { arrange(); }

void MapWindow::resizeEvent(QResizeEvent* event) {
    TrappedForm::resizeEvent(event);
    arrange();
}

/// The map takes what the panel leaves: a narrow window folds the panel to numbers and times, a
/// narrower one that is high enough moves it below the map.
void MapWindow::arrange() {
    const int character = fontMetrics().averageCharWidth();
    const bool isNarrow = width() - PanelCharacters * character < LeastBesidePanel;
    const bool isBelow = width() - NarrowCharacters * character < LeastBesideNarrow &&
                         height() / 2 >= LeastLinesBelow * fontMetrics().height();
    const bool isFolded = isNarrow && !isBelow;
    ui_->body->setDirection(isBelow ? QBoxLayout::BottomToTop : QBoxLayout::LeftToRight);
    const int characters = isFolded ? NarrowCharacters : PanelCharacters;
    ui_->PanelArea->setMinimumWidth(isBelow ? 0 : characters * character);
    ui_->PanelArea->setMaximumWidth(isBelow ? QWIDGETSIZE_MAX : characters * character);
    ui_->PanelArea->setMaximumHeight(isBelow ? height() / 2 : QWIDGETSIZE_MAX);
    ui_->Rows->setNarrow(isFolded);
    ui_->Totals->setVisible(!isFolded);
    ui_->findRow->setDirection(isFolded ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    ui_->Subject->setVisible(!isFolded && !ui_->Subject->text().isEmpty());
    ui_->buttonRow->setDirection(isFolded ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    ui_->decisionRow->setDirection(isFolded ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    showTrouble();
}

}  // namespace map
