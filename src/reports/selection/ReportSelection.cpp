#include "reports/selection/ReportSelection.h"

#include <QHeaderView>
#include <QScopedValueRollback>
#include <algorithm>

#include <fmt/format.h>

#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/controls/layoutmemory.h"
#include "platform/controls/qtext.h"
#include "reports/preview/ReportPreview.h"
#include "reports/selection/choices.h"
#include "reports/selection/reportpictures.h"
#include "startup/base/mdlSecurity_Routines.h"
#include "startup/base/session.h"
#include "streets/district/districtstreets.h"

#include "ui_ReportSelection.h"

namespace reports {

namespace {

using controls::fromQt;
using controls::toQt;

constexpr auto Form_ = "ReportSelection";
constexpr auto FormatKey = "reports/Format";
constexpr int StatusMs = 15'000;

constexpr auto LockedText =
    "Oops, another program is writing to the report database just now.  Your choices are not "
    "lost.  Please wait a moment and try again.";
constexpr auto NoDateTitle = "Invalid Date";
constexpr auto NoDate =
    "Oops, \"{}\" is not a date.  Please enter a date such as 9/1/2026 and try again.";
constexpr auto ConfidentialNote =
    "This report shows students: every page and every file says that it is confidential.";

/// What runs can be sorted by: its words and its field.
constexpr std::pair<const char*, const char*> RunOrders[]{
    {"Run", "Run"},       {"Time of day", "RunSeq"}, {"End time", "ENDTIME"},
    {"Bell", "BELLTIME"}, {"School", "SCHOOLNAME"},  {"Route", "ROUTEID"},
    {"Bus", "VEHICLE"},   {"Driver", "DRIVER"},      {"Description", "DESCRIPTION"},
    {"Riders", "RIDERS"}, {"Minutes", "MINUTES"},    {"Miles", "MILES"}};

QString breakText(PageBreak breaks) {
    switch (breaks) {
        case PageBreak::Run:
            return QObject::tr("for each run");
        case PageBreak::Route:
            return QObject::tr("for each route");
        case PageBreak::School:
            return QObject::tr("for each school");
        case PageBreak::None:
            break;
    }
    return QObject::tr("only where one is full");
}

QString chosenReportKey(const std::string& group) {
    return QString("reports/%1/Report").arg(toQt(group));
}

}  // namespace

ReportSelection::ReportSelection(AskRuns runs, forms::Form* owner)
    : TrappedForm(Form_, owner),
      ui_(std::make_unique<Ui::ReportSelection>()),
      Timer1(this),
      runs_(std::move(runs)) {
    ui_->setupUi(this);
    setCancelButton(ui_->Exit);
    forms::hideInPlace(*ui_->StatusMsg);
    forms::hideInPlace(*ui_->ProgressBar1);
    ui_->Stop->setEnabled(false);
    const forms::OperationPanel panel{
        {ui_->ProgressBar1}, ui_->StatusMsg, ui_->Stop, &Timer1, StatusMs};
    output_ = std::make_unique<ReportOutput>(*this, panel, ui_->SavedBar);
    sortBoxes_ = {{{ui_->Sort1, ui_->Descending1},
                   {ui_->Sort2, ui_->Descending2},
                   {ui_->Sort3, ui_->Descending3}}};
    ui_->Reports->setHeaderHidden(true);
    ui_->Reports->header()->setStretchLastSection(true);
    ui_->Reports->drawColumnBy("Report", new ReportPictures(offered_, this));
    on(&Timer1, &forms::Timer::tick, "Timer1_Timer", [panel] { panel.clear(); });
    on(ui_->Reports, &controls::MultiColumnList::rowClicked, "Reports_ClickItem",
       &ReportSelection::Reports_ClickItem);
    on(ui_->Reports, &controls::MultiColumnList::rowActivated, "Preview_Click",
       &ReportSelection::Preview_Click);
    on(ui_->Preview, &QPushButton::clicked, "Preview_Click", &ReportSelection::Preview_Click);
    on(ui_->PrintIt, &QPushButton::clicked, "PrintIt_Click", &ReportSelection::PrintIt_Click);
    on(ui_->ExportIt, &QPushButton::clicked, "ExportIt_Click", &ReportSelection::ExportIt_Click);
    on(ui_->Exit, &QPushButton::clicked, "Exit_Click", &ReportSelection::Exit_Click);
    key(QKeySequence::Print, ui_->PrintIt);
    key(QKeySequence::Save, ui_->ExportIt);
    wireOptions();
}

ReportSelection::~ReportSelection() = default;

ReportSelection::Message ReportSelection::lockedMessage() const {
    return {"Database in Use", LockedText};
}

void ReportSelection::wireOptions() {
    ui_->Paper->addItems({tr("Letter"), tr("A4")});
    ui_->Orientation->addItems({tr("Portrait"), tr("Landscape")});
    for (const reports::Format format : AllFormats) {
        ui_->FileFormat->addItem(toQt(nameOf(format)));
    }
    const auto changed = [this] { Options_Change(); };
    for (QComboBox* box :
         {ui_->Paper, ui_->Orientation, ui_->PageBreaks, ui_->Sort1, ui_->Sort2, ui_->Sort3}) {
        on(box, &QComboBox::currentIndexChanged, "Options_Change", changed);
    }
    for (QCheckBox* box : {ui_->StudentNames, ui_->Maps, ui_->OnlyChanged, ui_->Descending1,
                           ui_->Descending2, ui_->Descending3}) {
        on(box, &QCheckBox::toggled, "Options_Change", changed);
    }
    on(ui_->ChangedSince, &QLineEdit::textChanged, "Options_Change", changed);
}

void ReportSelection::caption(const std::string& text) {
    setWindowTitle(toQt(text));
    ui_->Heading->setText(toQt(text));
}

void ReportSelection::area(const std::string& name) { ui_->Area->setText(toQt(name)); }

void ReportSelection::reportGroup(const std::string& group) { group_ = group; }

void ReportSelection::copies(int count) { copies_ = count; }

void ReportSelection::sortField(int place, const std::string& field) {
    handed_.at(static_cast<std::size_t>(place - 1)).field = field;
}

void ReportSelection::sortDirection(int place, const std::string& direction) {
    handed_.at(static_cast<std::size_t>(place - 1)).descending =
        base::equalsNoCase(direction, "DESC");
}

void ReportSelection::present() { showForm(); }

void ReportSelection::Form_Load() {
    if (!startup::HasAuthority("RTG270", true)) {
        return unload();
    }
    ui_->FileFormat->setCurrentIndex(controls::LayoutMemory::instance().recall(FormatKey).toInt());
    fillReports();
    showRuns();
    ui_->Reports->setFocus();
}

void ReportSelection::Form_Activate() { showRuns(); }

void ReportSelection::fillReports() {
    const auto last = controls::LayoutMemory::instance().recall(chosenReportKey(group_)).toString();
    table::TextTable table;
    table.columns = {{"Report", 0, table::CellKind::Text, "Report"}};
    int chosen = 0;
    offered_.clear();
    for (const Report& each : reportsOf(group_)) {
        const auto row = table.addRow();
        table.setText(row, 0, each.title);
        chosen = toQt(each.id) == last ? static_cast<int>(row) : chosen;
        offered_.push_back(&each);
    }
    ui_->Reports->setTable(std::move(table));
    ui_->Reports->choose(chosen);
    showOptions();
}

const Report& ReportSelection::report() const {
    const int row = std::max(ui_->Reports->chosenRow(), 0);
    return *offered_.at(static_cast<std::size_t>(row));
}

void ReportSelection::Reports_ClickItem() {
    controls::LayoutMemory::instance().remember(chosenReportKey(group_), toQt(report().id));
    showOptions();
}

std::vector<SortField> ReportSelection::handedSort() const {
    std::vector<SortField> sort;
    for (const SortField& by : handed_) {
        const auto isSame = [&](const SortField& other) {
            return base::equalsNoCase(by.field, other.field);
        };
        if (!by.field.empty() && std::ranges::none_of(sort, isSame)) {
            sort.push_back(by);
        }
    }
    return sort;
}

void ReportSelection::showOptions() {
    const QScopedValueRollback filling(showing_, true);
    const Choices known = recallChoices(report(), handedSort());
    ui_->Paper->setCurrentIndex(known.options.paper == Paper::A4 ? 1 : 0);
    ui_->Orientation->setCurrentIndex(known.options.landscape ? 1 : 0);
    ui_->PageBreaks->clear();
    for (const PageBreak breaks : report().breaks) {
        ui_->PageBreaks->addItem(breakText(breaks));
    }
    const auto at = std::ranges::find(report().breaks, known.options.breaks);
    ui_->PageBreaks->setCurrentIndex(static_cast<int>(at - report().breaks.begin()));
    ui_->PageBreaks->setEnabled(report().breaks.size() > 1);
    ui_->Orientation->setEnabled(report().form != reports::Form::Sheet);
    ui_->StudentNames->setChecked(known.options.names);
    ui_->StudentNames->setEnabled(report().mayName);
    ui_->Maps->setEnabled(report().mayMap && streets::saysStreets(startup::gIniFile));
    ui_->Maps->setChecked(known.options.maps && ui_->Maps->isEnabled());
    ui_->ChangedSince->setText(known.changedSince);
    ui_->ChangedSince->setEnabled(ui_->OnlyChanged->isChecked());
    fillSorts(known);
    showConfidential();
}

void ReportSelection::fillSorts(const Choices& choices) {
    for (std::size_t place = 0; place < sortBoxes_.size(); ++place) {
        const auto& [box, descending] = sortBoxes_[place];
        box->clear();
        box->addItem(tr("(its own order)"));
        for (const auto& [words, field] : RunOrders) {
            box->addItem(tr(words), QString(field));
        }
        const bool isGiven = place < choices.sort.size();
        const int at = isGiven ? box->findData(toQt(choices.sort[place].field), Qt::UserRole,
                                               Qt::MatchFixedString)
                               : 0;
        box->setCurrentIndex(std::max(at, 0));
        descending->setChecked(isGiven && choices.sort[place].descending);
        descending->setEnabled(at > 0);
    }
}

Choices ReportSelection::choices() const {
    Choices chosen;
    chosen.options.paper = ui_->Paper->currentIndex() == 1 ? Paper::A4 : Paper::Letter;
    chosen.options.landscape = ui_->Orientation->currentIndex() == 1;
    const auto breaks = static_cast<std::size_t>(std::max(ui_->PageBreaks->currentIndex(), 0));
    chosen.options.breaks = report().breaks.at(breaks);
    chosen.options.names = report().mayName && ui_->StudentNames->isChecked();
    // Where there are no streets nobody has decided anew.
    chosen.options.maps =
        ui_->Maps->isEnabled() ? ui_->Maps->isChecked() : recallChoices(report(), {}).options.maps;
    chosen.changedSince = ui_->ChangedSince->text();
    for (const auto& [box, descending] : sortBoxes_) {
        if (box->currentIndex() > 0) {
            chosen.sort.push_back({fromQt(box->currentData().toString()), descending->isChecked()});
        }
    }
    return chosen;
}

void ReportSelection::Options_Change() {
    if (showing_ || offered_.empty()) {
        return;
    }
    rememberChoices(report(), choices());
    ui_->ChangedSince->setEnabled(ui_->OnlyChanged->isChecked());
    for (const auto& [box, descending] : sortBoxes_) {
        descending->setEnabled(box->currentIndex() > 0);
    }
    showConfidential();
}

void ReportSelection::showConfidential() {
    const auto when = report().confidential;
    ui_->ConfidentialNote->setVisible(
        when == Confidential::Always ||
        (when == Confidential::WithNames && ui_->StudentNames->isChecked()));
    ui_->ConfidentialNote->say(controls::Tone::Look, tr(ConfidentialNote), controls::Sign::Warning);
}

void ReportSelection::showRuns() {
    const RunsForReports runs = runs_();
    ui_->Selection->setText(runs.count == 1
                                ? tr("1 run: %1").arg(toQt(runs.words))
                                : tr("%1 runs: %2").arg(runs.count).arg(toQt(runs.words)));
}

bool ReportSelection::refuseBrokenDate() {
    const auto typed = fromQt(ui_->ChangedSince->text());
    if (!ui_->OnlyChanged->isChecked() || base::Date::parse(typed)) {
        return false;
    }
    base::MsgBox(fmt::format(NoDate, typed), NoDateTitle, base::MsgIcon::Information);
    ui_->ChangedSince->setFocus();
    ui_->ChangedSince->selectAll();
    return true;
}

std::shared_ptr<Prepared> ReportSelection::prepare(Request& request) {
    if (refuseBrokenDate()) {
        return nullptr;
    }
    const RunsForReports runs = runs_();
    const Choices chosen = choices();
    std::string words = runs.words;
    if (!words.empty()) {
        words.front() = base::uppered(words.front());
    }
    request = {.report = report().id,
               .runs = runs.question,
               .selection = words,
               .sort = chosen.sort,
               .options = chosen.options,
               .changedSince = {}};
    if (ui_->OnlyChanged->isChecked()) {
        request.changedSince = base::Date::parse(fromQt(chosen.changedSince));
    }
    return output_->prepare(request);
}

Format ReportSelection::format() const {
    return AllFormats[static_cast<std::size_t>(std::max(ui_->FileFormat->currentIndex(), 0))];
}

void ReportSelection::Preview_Click() {
    Request request;
    if (auto prepared = prepare(request)) {
        showPreview(*this, std::move(prepared), std::move(request), copies_);
    }
}

void ReportSelection::PrintIt_Click() {
    Request request;
    if (const auto prepared = prepare(request)) {
        output_->print(*prepared, request, copies_, 0);
    }
}

void ReportSelection::ExportIt_Click() {
    controls::LayoutMemory::instance().remember(FormatKey, ui_->FileFormat->currentIndex());
    Request request;
    if (const auto prepared = prepare(request)) {
        output_->exportFile(*prepared, format());
    }
}

void ReportSelection::Exit_Click() { closeForm(); }

}  // namespace reports
