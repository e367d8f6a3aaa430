#include "runedit/editor/fieldarrangement.h"

#include <QFontMetrics>
#include <QScrollBar>
#include <algorithm>

#include "ui_Run.h"

namespace runedit {

namespace {

constexpr int WideCharacters = 175;
constexpr int MiddleCharacters = 128;
constexpr int NarrowCharacters = 95;
constexpr int CodeCharacters = 13;
constexpr int NumberCharacters = 5;
constexpr int LowestLines = 5;
constexpr int LowestLeanLines = 3;

/// The space of all forms: a line of text is three and a half steps high.
int steps(double count, const QWidget& widget) {
    return static_cast<int>(count * widget.fontMetrics().height() / 3.5);
}

int widthOf(const QString& text, const QWidget& widget) {
    return widget.fontMetrics().horizontalAdvance(text);
}

struct Cell {
    int row;
    int column;
    int rows = 1;
    int columns = 1;
};

void move(QGridLayout& grid, QWidget* widget, Cell to) {
    grid.removeWidget(widget);
    grid.addWidget(widget, to.row, to.column, to.rows, to.columns);
}

void arrangeRun(Ui::Run& ui, bool wide) {
    const int row = wide ? 5 : 6;
    const int column = wide ? 3 : 0;
    auto& grid = *ui.runGrid;
    for (auto* across :
         {static_cast<QWidget*>(ui.SchoolName), static_cast<QWidget*>(ui.TripTypeName)}) {
        move(grid, across, {across == ui.SchoolName ? 3 : 4, 2, 1, 4});
    }
    move(grid, ui.RunDesc, {2, 1, 1, 5});
    move(grid, ui.RunFamilyName, {5, 2, 1, wide ? 1 : 4});
    move(grid, ui.cmbLOCCODELabel, {row, column});
    move(grid, ui.cmbLOCCODE, {row, column + 1});
    move(grid, ui.LocationName, {row, column + 2, 1, wide ? 1 : 4});
    grid.setColumnStretch(2, wide ? 5 : 1);
    grid.setColumnStretch(5, wide ? 3 : 0);
}

void arrangeBus(Ui::Run& ui, bool wide) {
    auto& grid = *ui.busGrid;
    grid.removeItem(ui.dayGrid);
    grid.addLayout(ui.dayGrid, 4, 1, wide ? 1 : 2, 2);
    move(*ui.dayGrid, ui.chkThursday, wide ? Cell{0, 3} : Cell{1, 0});
    move(*ui.dayGrid, ui.chkFriday, wide ? Cell{0, 4} : Cell{1, 1});
    move(grid, ui.Regenerate, wide ? Cell{5, 1, 1, 2} : Cell{6, 0, 1, 3});
}

void arrangeTimes(Ui::Run& ui, bool wide) {
    move(*ui.timeGrid, ui.CalcTimes, wide ? Cell{5, 2} : Cell{6, 0, 1, 3});
}

/// Miles and minutes on a line of their own where there is no room beside the stops.
void arrangeTotals(Ui::Run& ui, bool lean) {
    ui.totalGrid->removeItem(ui.wayTotals);
    ui.totalGrid->addLayout(ui.wayTotals, lean ? 1 : 0, lean ? 0 : 1);
}

}  // namespace

Arrangement arrangementFor(int characters) {
    return characters >= WideCharacters     ? Arrangement::Wide
           : characters >= MiddleCharacters ? Arrangement::Middle
           : characters >= NarrowCharacters ? Arrangement::Narrow
                                            : Arrangement::Lean;
}

void sizeFields(Ui::Run& ui) {
    const auto& form = *ui.Fields;
    const int code = CodeCharacters * form.fontMetrics().averageCharWidth() + steps(1, form);
    for (QWidget* box : {static_cast<QWidget*>(ui.cmbSchool), static_cast<QWidget*>(ui.cmbTripType),
                         static_cast<QWidget*>(ui.cmbRunFamily),
                         static_cast<QWidget*>(ui.cmbLOCCODE), static_cast<QWidget*>(ui.cmbVEHTYPE),
                         static_cast<QWidget*>(ui.cmbCapacity), static_cast<QWidget*>(ui.RunID)}) {
        box->setFixedWidth(code);
    }
    const int time = widthOf("00:00:00 AM", form) + steps(5, form);
    for (QWidget* box : {static_cast<QWidget*>(ui.BellTime), static_cast<QWidget*>(ui.StartTime),
                         static_cast<QWidget*>(ui.EndTime), static_cast<QWidget*>(ui.TimeToUse)}) {
        box->setFixedWidth(time);
    }
    ui.OverFill->setFixedWidth(widthOf(QString(NumberCharacters, '0'), form) + steps(3, form));
    ui.Fields->setMaximumWidth(widthOf(QString(WideCharacters, '0'), form));
}

void arrangeFields(Ui::Run& ui, Arrangement arrangement) {
    const bool wide = arrangement == Arrangement::Wide;
    const bool lean = arrangement == Arrangement::Lean;
    const bool narrow = lean || arrangement == Arrangement::Narrow;
    arrangeRun(ui, wide);
    arrangeBus(ui, wide);
    arrangeTimes(ui, wide);
    move(*ui.fieldGrid, ui.RunFields, lean ? Cell{0, 0, 1, 5} : Cell{0, 0});
    move(*ui.fieldGrid, ui.BusFields, lean ? Cell{1, 0, 1, 5} : Cell{0, 2});
    move(*ui.fieldGrid, ui.TimeFields,
         lean     ? Cell{2, 0, 1, 5}
         : narrow ? Cell{1, 0, 1, 5}
                  : Cell{0, 4});
    arrangeTotals(ui, lean);
    ui.busLine->setVisible(!lean);
    ui.timeLine->setVisible(!narrow);
    ui.PassengerBar->setVisible(!narrow);

    ui.fieldGrid->activate();
    const int all = ui.Fields->sizeHint().height();
    const int line = steps(1, *ui.Fields) + ui.RunDesc->sizeHint().height();
    ui.FieldArea->verticalScrollBar()->setSingleStep(line);
    ui.FieldArea->setMaximumHeight(all);
    ui.FieldArea->setMinimumHeight(std::min(all, (lean ? LowestLeanLines : LowestLines) * line));
}

}  // namespace runedit
