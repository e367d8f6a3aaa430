#include "runsearch/schedule/frmRunSchdl.h"

#include <QClipboard>
#include <QDateTime>
#include <QGuiApplication>
#include <QLocale>
#include <QMenu>
#include <QPrintDialog>
#include <QPrinter>
#include <QShortcut>
#include <algorithm>

#include <fmt/format.h>

#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/controls/access.h"
#include "platform/controls/focusall.h"
#include "platform/controls/layoutmemory.h"
#include "platform/controls/qtext.h"
#include "platform/forms/filedialog.h"
#include "platform/forms/flowrow.h"
#include "platform/forms/operation.h"
#include "runsearch/schedule/access.h"
#include "runsearch/schedule/telling.h"
#include "startup/base/mdlSecurity_Routines.h"
#include "startup/base/session.h"

#include "ui_frmRunSchdl.h"

namespace schedule {

namespace {

using controls::fromQt;
using controls::toQt;

constexpr auto Form_ = "frmRunSchdl";
constexpr auto TightKey = "frmRunSchdl/TightUnder";
constexpr double ZoomStep = 1.4;

constexpr auto NotPrintedTitle = "Not Printed";
constexpr auto NotPrinted =
    "Oops, the printer did not take the run schedule.  Please look after the printer and try "
    "again, or export "
    "the schedule and print the file.";
constexpr auto NotExportedTitle = "Not Exported";
constexpr auto NotExported =
    "Oops, the file {} could not be written: {}.  What was there before is as it was.  Please "
    "choose "
    "another folder and try again.";
constexpr auto PrintedFormat = "MMM d, yyyy h:mm AP";
constexpr auto NoSuchKind =
    "Oops, {} is no PDF, SVG or PNG file.  Please give it a name that ends in .pdf, .svg or .png "
    "and try again.";

constexpr std::array Weekdays{"Mondays", "Tuesdays", "Wednesdays", "Thursdays", "Fridays"};

/// The trip type that all runs have in common, "all trip types" otherwise.
std::string tripTypeText(const Plan& plan, const Chart& chart) {
    const auto isOther = [&](int run) {
        return plan.run(run).tripType != plan.run(chart.runs.front()).tripType;
    };
    if (chart.runs.empty() || std::ranges::any_of(chart.runs, isOther)) {
        return "all trip types";
    }
    const auto& type =
        plan.tripTypes[static_cast<std::size_t>(plan.run(chart.runs.front()).tripType)];
    return type.code.empty() ? "no trip type" : type.code;
}

}  // namespace

frmRunSchdl::frmRunSchdl(RunListPort list, forms::Form* owner)
    : TrappedForm(Form_, owner), ui_(std::make_unique<Ui::frmRunSchdl>()), list_(std::move(list)) {
    controls::makeAccessible<ScheduleView, ScheduleAccess>();
    ui_->setupUi(this);
    ui_->Day->addItem(tr("All days"));
    for (const auto* day : Weekdays) {
        ui_->Day->addItem(tr(day));
    }
    for (QHBoxLayout* row : {ui_->headRow, ui_->controlRow, ui_->sketchRow}) {
        forms::FlowRow::in(*row);
    }
    ui_->SketchBar->hide();
    setCancelButton(ui_->Exit);
    wireControls();
    wireView();
    wireKeys();
    wireSketch();
}

frmRunSchdl::~frmRunSchdl() = default;

void frmRunSchdl::wireControls() {
    on(ui_->PrintIt, &QPushButton::clicked, "PrintIt_Click", &frmRunSchdl::PrintIt_Click);
    on(ui_->ExportIt, &QPushButton::clicked, "ExportIt_Click", &frmRunSchdl::ExportIt_Click);
    on(ui_->Exit, &QPushButton::clicked, "Exit_Click", &frmRunSchdl::Exit_Click);
    on(ui_->ByRoute, &QRadioButton::toggled, "Layout_Click", &frmRunSchdl::Layout_Click);
    on(ui_->Day, &QComboBox::currentIndexChanged, "Layout_Click", &frmRunSchdl::Layout_Click);
    on(ui_->TightUnder, &QSpinBox::valueChanged, "Layout_Click", &frmRunSchdl::Layout_Click);
    on(ui_->Find, &QLineEdit::textChanged, "Find_Change", &frmRunSchdl::Find_Change);
    on(ui_->Find, &QLineEdit::returnPressed, "findNext", &frmRunSchdl::findNext);
    on(ui_->CollapseAll, &QPushButton::clicked, "CollapseAll_Click",
       &frmRunSchdl::CollapseAll_Click);
    on(ui_->NextProblem, &QPushButton::clicked, "NextProblem_Click",
       &frmRunSchdl::NextProblem_Click);
    on(ui_->Fit, &QPushButton::clicked, "Fit_Click", &frmRunSchdl::Fit_Click);
    on(ui_->ZoomIn, &QPushButton::clicked, "ZoomIn_Click",
       [this] { ui_->TimeLine->zoomTime(ZoomStep, ui_->TimeLine->frame().plot.width() / 2); });
    on(ui_->ZoomOut, &QPushButton::clicked, "ZoomOut_Click",
       [this] { ui_->TimeLine->zoomTime(1 / ZoomStep, ui_->TimeLine->frame().plot.width() / 2); });
    on(ui_->ScheduleTab, &QTabWidget::currentChanged, "ScheduleTab_Click",
       &frmRunSchdl::ScheduleTab_Click);
}

void frmRunSchdl::wireView() {
    on(ui_->TimeLine, &ScheduleView::runChosen, "TimeLine_ClickItem",
       [this](int run) { list_.choose(plan().run(run).id); });
    on(ui_->TimeLine, &ScheduleView::runActivated, "TimeLine_DblClick", &frmRunSchdl::editRun);
    on(ui_->TimeLine, &ScheduleView::menuAsked, "TimeLine_Menu", &frmRunSchdl::showMenu);
    on(ui_->TimeLine, &ScheduleView::schoolClicked, "TimeLine_School", &frmRunSchdl::toggleSchool);
    on(ui_->TimeLine, &ScheduleView::viewChanged, "TimeLine_View",
       [this] { ui_->ZoneLegend->show(ui_->TimeLine->frame()); });
}

void frmRunSchdl::wireKeys() {
    on(new QShortcut(Qt::Key_F5, this), &QShortcut::activated, "Reload", &frmRunSchdl::Reload);
    on(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, "Find_Focus", [this] {
        ui_->ScheduleTab->setCurrentWidget(ui_->TimeLinePage);
        controls::focusAll(*ui_->Find);
    });
}

void frmRunSchdl::Form_Load() {
    const auto tight = controls::LayoutMemory::instance().recall(TightKey);
    if (tight.isValid()) {
        ui_->TightUnder->setValue(tight.toInt());
    }
    read();
    follow(list_.chosen());
    ui_->TimeLine->setFocus();
}

void frmRunSchdl::Form_Activate() {
    if (isStale_ || startup::RefreshRunList || readSql_ != startup::RunSearchSchoolSQL) {
        read();
    }
    follow(list_.chosen());
}

void frmRunSchdl::follow(const std::string& run) {
    const auto& runs = plan().runs;
    const auto found = std::ranges::find(runs, run, &ScheduledRun::id);
    const int place = found == runs.end() ? None : static_cast<int>(found - runs.begin());
    if (place != ui_->TimeLine->selected() && !run.empty()) {
        ui_->TimeLine->select(place);
    }
}

void frmRunSchdl::listChanged() { isStale_ = true; }

void frmRunSchdl::Reload() { read(); }

void frmRunSchdl::read() {
    const forms::BusyCursor hourglass;
    isStale_ = false;
    readSql_ = startup::RunSearchSchoolSQL;
    stored_ = readPlan(*startup::gcnRouting, readSql_);
    travel_.clear();
    checks_.emplace(runedit::ValidationDatabases{*startup::gcnRouting, *startup::gcnTrip});
    ui_->DistrictName->setText(toQt(stored_.district));
    showSketch();
}

void frmRunSchdl::layOutAnew() {
    chart_ = layOut(plan(), layout_);
    ui_->TimeLine->showChart(plan(), chart_);
    const bool byRoute = layout_.order == Order::ByRoute;
    ui_->CollapseAll->setVisible(!byRoute);
    ui_->NextProblem->setEnabled(!chart_.problems.empty());
    const bool mayPrint = startup::HasAuthority("RTG270", false);
    for (auto* button : {ui_->PrintIt, ui_->ExportIt}) {
        button->setEnabled(mayPrint && !chart_.runs.empty());
    }
    showCounts();
    showSummary();
    if (!ui_->Find->text().isEmpty()) {
        Find_Change();
    }
}

void frmRunSchdl::showCounts() {
    const auto text = fmt::format("{} · {} · {}", countText(plan(), chart_),
                                  tripTypeText(plan(), chart_), troublesText(chart_.troubles));
    ui_->Counts->setText(toQt(text));
    ui_->Counts->setToolTip(toQt(text));
}

void frmRunSchdl::Layout_Click() {
    layout_.order = ui_->ByRoute->isChecked() ? Order::ByRoute : Order::BySchool;
    const int day = ui_->Day->currentIndex();
    layout_.days = day == 0 ? AllDays : static_cast<Days>(1U << (day - 1));
    layout_.tightUnder = ui_->TightUnder->value() * Minute;
    controls::LayoutMemory::instance().remember(TightKey, ui_->TightUnder->value());
    layOutAnew();
}

void frmRunSchdl::toggleSchool(int school) {
    if (layout_.closedSchools.erase(school) == 0) {
        layout_.closedSchools.insert(school);
    }
    layOutAnew();
}

void frmRunSchdl::CollapseAll_Click() {
    if (layout_.closedSchools.empty()) {
        for (int school = 0; school < static_cast<int>(plan().schools.size()); ++school) {
            layout_.closedSchools.insert(school);
        }
    } else {
        layout_.closedSchools.clear();
    }
    layOutAnew();
}

void frmRunSchdl::NextProblem_Click() { ui_->TimeLine->goToProblem(1); }

void frmRunSchdl::Fit_Click() { ui_->TimeLine->fit(); }

void frmRunSchdl::Find_Change() {
    const auto typed = fromQt(ui_->Find->text());
    const int found = ui_->TimeLine->find(typed);
    ui_->FindCount->setText(base::trim(typed).empty() ? QString()
                            : found == 0              ? tr("none")
                                                      : tr("%1 found").arg(found));
}

void frmRunSchdl::findNext() {
    ui_->TimeLine->find(fromQt(ui_->Find->text()), ScheduleView::From::Next);
}

void frmRunSchdl::ScheduleTab_Click() { showSummary(); }

/// Only the page that is seen is summed up.
void frmRunSchdl::showSummary() {
    constexpr std::array Groupings{Grouping::School, Grouping::SchoolType, Grouping::TripType,
                                   Grouping::Location, Grouping::VehicleType};
    const int page = ui_->ScheduleTab->currentIndex();
    if (auto* shown = qobject_cast<SummaryPage*>(ui_->ScheduleTab->currentWidget())) {
        const auto grouping = Groupings[static_cast<std::size_t>(page - 1)];
        shown->showSummaries(plan(), summarise(plan(), chart_.runs, grouping), grouping);
    }
}

const ScheduledRun* frmRunSchdl::selectedRun() const {
    const int run = ui_->TimeLine->selected();
    return run == None ? nullptr : &plan().run(run);
}

void frmRunSchdl::editRun(int run) { list_.edit(plan().run(run).id); }

void frmRunSchdl::showMenu(const QPoint& at) {
    const auto* run = selectedRun();
    QMenu menu(this);
    auto* edit = menu.addAction(tr("&Edit Run"));
    auto* copy = menu.addAction(tr("&Copy Run Id"));
    menu.addSeparator();
    auto* next = menu.addAction(tr("Next &Problem"));
    auto* reload = menu.addAction(tr("&Read Anew"));
    edit->setEnabled(run != nullptr);
    copy->setEnabled(run != nullptr);
    next->setEnabled(!chart_.problems.empty());
    const auto* chosen = menu.exec(at);
    forms::Application::instance().throwIfEnding();
    if (chosen == edit) {
        editRun(ui_->TimeLine->selected());
    } else if (chosen == copy) {
        QGuiApplication::clipboard()->setText(toQt(run->id));
    } else if (chosen == next) {
        NextProblem_Click();
    } else if (chosen == reload) {
        read();
    }
}

/// "By route, Tuesdays: 59 runs on 31 routes, AM; 2 overlaps, 1 short"
std::string frmRunSchdl::selectionText() const {
    const auto day = ui_->Day->currentIndex() == 0 ? "all days" : fromQt(ui_->Day->currentText());
    return fmt::format(
        "{}, {}: {}, {}; {}", layout_.order == Order::ByRoute ? "By route" : "By school", day,
        countText(plan(), chart_), tripTypeText(plan(), chart_), troublesText(chart_.troubles));
}

Pages frmRunSchdl::pages() const {
    reports::Heading heading;
    heading.title = "Run schedule";
    heading.selection = selectionText();
    heading.district = plan().district;
    const auto now = QDateTime::fromString(toQt(base::Now().iso()), Qt::ISODate);
    heading.printed = fromQt(QLocale::c().toString(now, PrintedFormat));
    heading.user = startup::gCommandLine;
    return {ui_->TimeLine->frame(), font(), std::move(heading)};
}

void frmRunSchdl::PrintIt_Click() {
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(QPageLayout::Landscape);
    printer.setDocName(tr("Run Schedule"));
    QPrintDialog dialog(&printer, this);
    const bool isWanted = dialog.exec() == QDialog::Accepted;
    forms::Application::instance().throwIfEnding();
    if (!isWanted) {
        return;
    }
    const forms::BusyCursor hourglass;
    auto printed = pages();
    if (!printPages(printed, printer)) {
        base::MsgBox(NotPrinted, NotPrintedTitle, base::MsgIcon::Information);
    }
}

void frmRunSchdl::ExportIt_Click() {
    auto file = forms::chooseFile(
        *this, {.title = tr("Export Run Schedule"),
                .startAt = toQt(startup::gReportPath + "/Run Schedule.pdf"),
                .filter = tr("PDF, by pages (*.pdf);;SVG, one picture (*.svg);;PNG, one picture "
                             "(*.png)"),
                .isToWrite = true});
    if (file.isEmpty()) {
        return;
    }
    const auto kind = fileKindOf(file);
    const forms::BusyCursor hourglass;
    auto saved = pages();
    if (!kind) {
        base::MsgBox(fmt::format(NoSuchKind, fromQt(file)), NotExportedTitle,
                     base::MsgIcon::Information);
    } else if (const auto reason = savePages(saved, file, *kind); !reason.isEmpty()) {
        base::MsgBox(fmt::format(NotExported, fromQt(file), fromQt(reason)), NotExportedTitle,
                     base::MsgIcon::Information);
    }
}

void frmRunSchdl::Exit_Click() { closeForm(); }

}  // namespace schedule
