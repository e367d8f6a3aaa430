#include "reports/preview/ReportPreview.h"

#include <QShortcut>
#include <algorithm>
#include <array>
#include <cmath>

#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/controls/focusall.h"
#include "platform/controls/layoutmemory.h"
#include "platform/controls/qtext.h"
#include "platform/controls/signs.h"
#include "platform/forms/formregistry.h"

#include "ui_ReportPreview.h"

namespace reports {

namespace {

using controls::fromQt;
using controls::toQt;

constexpr auto Form_ = "ReportPreview";
constexpr auto ZoomKey = "ReportPreview/Zoom";
constexpr auto SplitKey = "ReportPreview/Split";
constexpr auto FormatKey = "reports/Format";
constexpr int SliceMs = 20;
constexpr int StatusMs = 15'000;
constexpr double Percent = 100;

constexpr auto LockedText =
    "Oops, another program is writing to the report database just now.  Please wait a moment and "
    "try again.";

const std::array ZoomsOffered{50, 75, 100, 125, 150, 200, 300, 400};

}  // namespace

ReportPreview::ReportPreview(forms::Form* owner)
    : TrappedForm(Form_, owner),
      ui_(std::make_unique<Ui::ReportPreview>()),
      LayOut(this),
      Timer1(this) {
    ui_->setupUi(this);
    setTabOrder(ui_->FindNext, ui_->SideTab->tabBar());
    setTabOrder(ui_->SideTab->tabBar(), ui_->Strip);
    setCancelButton(ui_->Exit);
    forms::hideInPlace(*ui_->StatusMsg);
    ui_->ProgressBar1->hide();
    ui_->Stop->hide();
    const forms::OperationPanel panel{
        {ui_->ProgressBar1}, ui_->StatusMsg, ui_->Stop, &Timer1, StatusMs};
    output_ = std::make_unique<ReportOutput>(*this, panel, ui_->SavedBar);
    on(&Timer1, &forms::Timer::tick, "Timer1_Timer", [panel] { panel.clear(); });
    on(&LayOut, &forms::Timer::tick, "LayOut_Timer", &ReportPreview::LayOut_Timer);
    for (const reports::Format format : AllFormats) {
        ui_->FileFormat->addItem(toQt(nameOf(format)));
    }
    wireTools();
    wirePages();
    wireKeys();
}

ReportPreview::~ReportPreview() = default;

ReportPreview::Message ReportPreview::lockedMessage() const {
    return {"Database in Use", LockedText};
}

void ReportPreview::wireTools() {
    on(ui_->PrintIt, &QPushButton::clicked, "PrintIt_Click", &ReportPreview::PrintIt_Click);
    on(ui_->ExportIt, &QPushButton::clicked, "ExportIt_Click", &ReportPreview::ExportIt_Click);
    on(ui_->Exit, &QPushButton::clicked, "Exit_Click", &ReportPreview::Exit_Click);
    on(ui_->PageNumber, &QLineEdit::editingFinished, "PageNumber_Change",
       &ReportPreview::PageNumber_Change);
    ui_->Zoom->setCompleter(nullptr);
    ui_->Zoom->addItems({tr("Fit Width"), tr("Fit Page")});
    for (const int percent : ZoomsOffered) {
        ui_->Zoom->addItem(tr("%1 %").arg(percent));
    }
    on(ui_->Zoom, &QComboBox::activated, "Zoom_Change", &ReportPreview::Zoom_Change);
    on(ui_->Zoom->lineEdit(), &QLineEdit::editingFinished, "Zoom_Change",
       &ReportPreview::Zoom_Change);
    on(ui_->ZoomIn, &QToolButton::clicked, "ZoomIn_Click", [this] { ui_->Pages->stepZoom(1); });
    on(ui_->ZoomOut, &QToolButton::clicked, "ZoomOut_Click", [this] { ui_->Pages->stepZoom(-1); });
    on(ui_->Find, &QLineEdit::textChanged, "Find_Change", &ReportPreview::Find_Change);
    on(ui_->FindNext, &QToolButton::clicked, "FindNext_Click", &ReportPreview::FindNext_Click);
    on(ui_->FindPrevious, &QToolButton::clicked, "FindPrevious_Click",
       &ReportPreview::FindPrevious_Click);
    const int line = fontMetrics().height();
    for (auto* button : {ui_->FindPrevious, ui_->FindNext}) {
        button->setIconSize({line, line});
    }
    ui_->FindPrevious->setIcon(controls::signIcon(controls::Sign::Up, QPalette::ButtonText));
    ui_->FindNext->setIcon(controls::signIcon(controls::Sign::Down, QPalette::ButtonText));
}

void ReportPreview::wirePages() {
    on(ui_->Pages, &PageView::pageChanged, "showPage", &ReportPreview::showPage);
    on(ui_->Pages, &PageView::zoomChanged, "showZoom", &ReportPreview::showZoom);
    on(ui_->Strip, &PageStrip::pageChosen, "Strip_ClickItem",
       [this](int page) { ui_->Pages->goTo(page); });
    on(ui_->Contents, &controls::MultiColumnList::rowClicked, "Contents_ClickItem",
       &ReportPreview::Contents_ClickItem);
    ui_->Split->setStretchFactor(1, 1);
    ui_->Split->setCollapsible(1, false);
}

void ReportPreview::wireKeys() {
    const auto shortcut = [this](const QKeySequence& keys, const char* procedure, auto handler) {
        on(new QShortcut(keys, this), &QShortcut::activated, procedure, handler);
    };
    const auto enter = [](QLineEdit* box) { return [box] { controls::focusAll(*box); }; };
    key(QKeySequence::Print, ui_->PrintIt);
    key(QKeySequence::Save, ui_->ExportIt);
    key(Qt::Key_F3, ui_->FindNext);
    key(Qt::SHIFT | Qt::Key_F3, ui_->FindPrevious);
    key(Qt::Key_Return, ui_->FindNext, ui_->Find);
    key(Qt::SHIFT | Qt::Key_Return, ui_->FindPrevious, ui_->Find);
    key(QKeySequence::ZoomIn, ui_->ZoomIn);
    key(QKeySequence::ZoomOut, ui_->ZoomOut);
    shortcut(QKeySequence::Find, "Find_Focus", enter(ui_->Find));
    shortcut(Qt::CTRL | Qt::Key_G, "PageNumber_Focus", enter(ui_->PageNumber));
    shortcut(Qt::CTRL | Qt::Key_0, "Zoom_Key", [this] { ui_->Pages->setZoom(1); });
    shortcut(Qt::CTRL | Qt::Key_1, "Zoom_Key", [this] { ui_->Pages->setFit(PageView::Fit::Page); });
    shortcut(Qt::CTRL | Qt::Key_2, "Zoom_Key",
             [this] { ui_->Pages->setFit(PageView::Fit::Width); });
    on(new QShortcut(Qt::Key_Escape, ui_->Find, nullptr, nullptr, Qt::WidgetShortcut),
       &QShortcut::activated, "Find_Leave", [this] {
           ui_->Find->clear();
           ui_->Pages->setFocus();
       });
}

void ReportPreview::receive(std::shared_ptr<Prepared> prepared, Request request, int copies) {
    prepared_ = std::move(prepared);
    request_ = std::move(request);
    copies_ = copies;
    if (isLoaded()) {
        begin();
    }
}

void ReportPreview::Form_Load() {
    auto& memory = controls::LayoutMemory::instance();
    ui_->FileFormat->setCurrentIndex(memory.recall(FormatKey).toInt());
    if (!ui_->Split->restoreState(memory.recall(SplitKey).toByteArray())) {
        const int strip = ui_->Strip->sizeHint().width() + fontMetrics().height();
        ui_->Split->setSizes({strip, width() - strip});
    }
    const double zoom = memory.recall(ZoomKey).toDouble();
    if (zoom > 0) {
        ui_->Pages->setZoom(zoom);
    } else if (zoom < 0) {
        ui_->Pages->setFit(PageView::Fit::Page);
    }
    begin();
}

/// Positive is a zoom, -1 the whole page, 0 its width.
bool ReportPreview::Form_QueryUnload() {
    auto& memory = controls::LayoutMemory::instance();
    const auto fit = ui_->Pages->fit();
    memory.remember(ZoomKey, fit == PageView::Fit::None   ? ui_->Pages->zoom()
                             : fit == PageView::Fit::Page ? -1.0
                                                          : 0.0);
    memory.remember(SplitKey, ui_->Split->saveState());
    return true;
}

void ReportPreview::Form_Unload() {
    LayOut.setEnabled(false);
    ui_->Pages->showPages(nullptr);
    ui_->Strip->showPages(nullptr);
    layout_.reset();
    content_.reset();
    prepared_.reset();
}

void ReportPreview::begin() {
    LayOut.setEnabled(false);
    ui_->SavedBar->clear();
    ui_->Pages->showPages(nullptr);
    ui_->Strip->showPages(nullptr);
    layout_.reset();
    base::ports().repaint();  // a summary is added up by one statement
    content_ = prepared_->content();
    base::ports().repaint();
    layout_ = std::make_unique<Layout>(*content_);
    shown_ = 0;
    targets_.clear();
    ui_->Contents->setTable(table::TextTable{});
    isWhole_ = !layout_->layPage();
    showTitle();
    ui_->Pages->showPages(&layout_->pages());
    ui_->Strip->showPages(&layout_->pages());
    ui_->SideTab->setCurrentIndex(0);
    showGrown();
    showPage(0);
    ui_->Pages->setFocus();
    LayOut.setInterval(1);
    LayOut.setEnabled(!isWhole_);
}

/// While something else goes on in the form, the pages wait.
void ReportPreview::LayOut_Timer() {
    if (isBusy() || isWhole_ || !layout_) {
        return;
    }
    LayOut.setEnabled(false);
    const forms::WorkSlice slice(SliceMs);
    do {
        isWhole_ = !layout_->layPage();
    } while (!isWhole_ && !slice.isOver());
    showGrown();
    if (isWhole_) {
        ui_->Strip->complete();
    }
    LayOut.setEnabled(!isWhole_);
}

void ReportPreview::showTitle() {
    const Heading& heading = content_->heading();
    ui_->Title->setText(toQt(heading.title));
    ui_->Selection->setText(toQt(heading.selection));
    ui_->Confidential->setVisible(heading.confidential);
    setWindowTitle(tr("%1 - Preview").arg(toQt(heading.title)));
}

void ReportPreview::showGrown() {
    ui_->Pages->grow();
    ui_->Strip->grow();
    const auto count = ui_->Pages->pageCount();
    ui_->PageCount->setText(isWhole_ ? tr("of %1").arg(count) : tr("of %1 …").arg(count));
    const auto first = std::exchange(shown_, pages().size());
    addContents(first);
    const auto sought = fromQt(ui_->Find->text());
    if (!base::trim(sought).empty()) {
        ui_->Pages->addHits(findText(pages(), base::trim(sought), first));
        showHitCount();
    }
}

void ReportPreview::addContents(std::size_t firstPage) {
    constexpr int TitleTwips = 2400;
    constexpr int PageTwips = 700;
    table::TextTable more;
    more.columns = {{"Contents", TitleTwips}, {"Page", PageTwips, table::CellKind::Number}};
    for (std::size_t page = firstPage; page < pages().size(); ++page) {
        for (const Mark& mark : pages()[page].marks) {
            const auto row = more.addRow();
            more.setText(row, 0, std::string(mark.level * std::size_t{4}, ' ') + mark.title);
            more.set(row, 1, static_cast<std::int64_t>(page + 1));
            targets_.push_back({static_cast<int>(page), mark.y});
        }
    }
    if (firstPage == 0) {
        ui_->Contents->setTable(std::move(more));
    } else if (more.rowCount() > 0) {
        ui_->Contents->appendRows(more);
    }
    ui_->SideTab->setTabVisible(1, !targets_.empty());
}

void ReportPreview::Contents_ClickItem(int row) {
    const auto& [page, y] = targets_[ui_->Contents->tableRow(row)];
    ui_->Pages->goTo(page, y);
}

void ReportPreview::showPage(int page) {
    ui_->PageNumber->setText(QString::number(page + 1));
    ui_->Strip->follow(page);
    ui_->Pages->setAccessibleDescription(
        tr("Page %1 of %2").arg(page + 1).arg(ui_->Pages->pageCount()));
}

void ReportPreview::PageNumber_Change() {
    const int asked = ui_->PageNumber->text().toInt();
    if (asked != ui_->Pages->page() + 1 && asked > 0) {
        ui_->Pages->goTo(std::min(asked, ui_->Pages->pageCount()) - 1);
    }
    showPage(ui_->Pages->page());
}

void ReportPreview::showZoom() {
    const auto fit = ui_->Pages->fit();
    ui_->Zoom->setEditText(fit == PageView::Fit::Width ? ui_->Zoom->itemText(0)
                           : fit == PageView::Fit::Page
                               ? ui_->Zoom->itemText(1)
                               : tr("%1 %").arg(std::lround(ui_->Pages->zoom() * Percent)));
}

void ReportPreview::Zoom_Change() {
    const QString asked = ui_->Zoom->currentText();
    const double percent = asked.section('%', 0, 0).trimmed().toDouble();
    if (asked == ui_->Zoom->itemText(0)) {
        ui_->Pages->setFit(PageView::Fit::Width);
    } else if (asked == ui_->Zoom->itemText(1)) {
        ui_->Pages->setFit(PageView::Fit::Page);
    } else if (percent > 0 && std::lround(percent) != std::lround(ui_->Pages->zoom() * Percent)) {
        ui_->Pages->setZoom(percent / Percent);
    }
    showZoom();
}

void ReportPreview::Find_Change() {
    const auto sought = fromQt(ui_->Find->text());
    ui_->Pages->showHits(findText(pages(), base::trim(sought)));
    const auto& hits = ui_->Pages->hits();
    const auto here =
        std::ranges::lower_bound(hits, static_cast<std::size_t>(ui_->Pages->page()), {},
                                 [](const TextRange& hit) { return hit.from.page; });
    if (!hits.empty()) {
        ui_->Pages->goToHit(here == hits.end() ? 0 : static_cast<int>(here - hits.begin()));
    }
    showHitCount();
}

void ReportPreview::showHitCount() {
    const auto count = ui_->Pages->hits().size();
    const bool isAsked = !ui_->Find->text().trimmed().isEmpty();
    ui_->FindCount->setText(!isAsked ? QString()
                            : count == 0
                                ? tr("none")
                                : tr("%1 of %2").arg(ui_->Pages->currentHit() + 1).arg(count));
    ui_->FindNext->setEnabled(count > 0);
    ui_->FindPrevious->setEnabled(count > 0);
}

void ReportPreview::goToHit(int step) {
    const int count = static_cast<int>(ui_->Pages->hits().size());
    if (count > 0) {
        ui_->Pages->goToHit((ui_->Pages->currentHit() + step + count) % count);
        showHitCount();
    }
}

void ReportPreview::FindNext_Click() { goToHit(1); }

void ReportPreview::FindPrevious_Click() { goToHit(-1); }

Format ReportPreview::format() const {
    return AllFormats[static_cast<std::size_t>(std::max(ui_->FileFormat->currentIndex(), 0))];
}

void ReportPreview::ExportIt_Click() {
    controls::LayoutMemory::instance().remember(FormatKey, ui_->FileFormat->currentIndex());
    output_->exportFile(*prepared_, format());
}

void ReportPreview::PrintIt_Click() {
    output_->print(*prepared_, request_, copies_, isWhole_ ? ui_->Pages->pageCount() : 0);
}

void ReportPreview::Exit_Click() { closeForm(); }

void showPreview(forms::Form& over, std::shared_ptr<Prepared> prepared, Request request,
                 int copies) {
    auto& registry = forms::FormRegistry::instance();
    forms::Form* open = registry.find(Form_);
    if (open != nullptr && open->parentWidget() != &over) {
        open->unload();  // a form is reached only from the one that opened it
    }
    auto& preview = registry.make<ReportPreview>(&over);
    preview.receive(std::move(prepared), std::move(request), copies);
    preview.showForm();
}

}  // namespace reports
