#include "help/viewer/GuideWindow.h"

#include <QDesktopServices>
#include <QEvent>
#include <QScrollBar>
#include <QShortcut>
#include <QWindow>
#include <algorithm>

#include "help/guide/guidesearch.h"
#include "help/viewer/guidedesk.h"
#include "help/viewer/hitdelegate.h"
#include "help/viewer/pageprinting.h"
#include "platform/controls/focusall.h"
#include "platform/controls/layoutmemory.h"
#include "platform/controls/signs.h"

#include "ui_GuideWindow.h"

namespace help {

namespace {

constexpr auto Form_ = "GuideWindow";
constexpr auto ZoomKey = "GuideWindow/Zoom";
constexpr auto SplitKey = "GuideWindow/Split";
constexpr int UsualZoom = 100;
constexpr int PlaceRole = Qt::UserRole;
constexpr int SideCharacters = 34;
constexpr std::size_t MostVisits = 200;

constexpr auto NoGuide =
    "# The guide is not here\n\nIts pages should lie in the folder `%1`. Please ask whoever "
    "looks after the program to install it again.";

QString anchorRoleText(const Place& place) { return place.page + '#' + place.anchor; }

Place placeIn(const QTreeWidgetItem& item) {
    const QString text = item.data(0, PlaceRole).toString();
    return {text.section('#', 0, 0), text.section('#', 1)};
}

}  // namespace

GuideWindow::GuideWindow()
    : TrappedForm(Form_, nullptr, startup::AfterError::FormStays),
      ui_(std::make_unique<Ui::GuideWindow>()) {
    ui_->setupUi(this);
    setAttribute(Qt::WA_QuitOnClose, false);
    ui_->Hits->setItemDelegate(new HitDelegate(ui_->Hits));
    ui_->HitPage->setFocusProxy(ui_->Hits);
    wireTools();
    wirePage();
    wireKeys();
    followIcons();
}

GuideWindow::~GuideWindow() = default;

void GuideWindow::wireTools() {
    on(ui_->Back, &QPushButton::clicked, "Back_Click", &GuideWindow::Back_Click);
    on(ui_->Forward, &QPushButton::clicked, "Forward_Click", &GuideWindow::Forward_Click);
    on(ui_->Home, &QPushButton::clicked, "Home_Click", &GuideWindow::Home_Click);
    on(ui_->PrintIt, &QPushButton::clicked, "PrintIt_Click", &GuideWindow::PrintIt_Click);
    on(ui_->CloseIt, &QPushButton::clicked, "CloseIt_Click", [this] { closeForm(); });
    on(ui_->ZoomIn, &QToolButton::clicked, "ZoomIn_Click",
       [this] { ui_->PageText->setZoom(ui_->PageText->zoom() + GuidePage::ZoomStep); });
    on(ui_->ZoomOut, &QToolButton::clicked, "ZoomOut_Click",
       [this] { ui_->PageText->setZoom(ui_->PageText->zoom() - GuidePage::ZoomStep); });
    on(ui_->Find, &QLineEdit::textChanged, "Find_Change", &GuideWindow::Find_Change);
    on(ui_->FindNext, &QToolButton::clicked, "FindNext_Click", &GuideWindow::FindNext_Click);
    on(ui_->FindPrevious, &QToolButton::clicked, "FindPrevious_Click",
       &GuideWindow::FindPrevious_Click);
    on(ui_->Search, &QLineEdit::textChanged, "Search_Change", &GuideWindow::Search_Change);
}

void GuideWindow::wirePage() {
    const auto goToItem = [this] { Contents_Click(*ui_->Contents->currentItem()); };
    on(ui_->Contents, &QTreeWidget::itemClicked, "Contents_Click", goToItem);
    on(ui_->Contents, &QTreeWidget::itemActivated, "Contents_Click", goToItem);
    const auto goToHit = [this] { Hits_Click(ui_->Hits->currentRow()); };
    on(ui_->Hits, &QListWidget::itemClicked, "Hits_Click", goToHit);
    on(ui_->Hits, &QListWidget::itemActivated, "Hits_Click", goToHit);
    on(ui_->PageText, &GuidePage::anchorClicked, "PageText_FollowLink",
       &GuideWindow::PageText_FollowLink);
    on(ui_->PageText, &GuidePage::zoomChanged, "PageText_Zoom", [this] {
        controls::LayoutMemory::instance().remember(ZoomKey, ui_->PageText->zoom());
        status(tr("%1 %").arg(ui_->PageText->zoom()));
        Find_Change();
    });
    connect(ui_->PageText, &GuidePage::highlighted, this, [this](const QUrl& link) {
        status(link.isRelative() ? QString() : link.toDisplayString());
    });
    ui_->Split->setStretchFactor(1, 1);
}

void GuideWindow::wireKeys() {
    const auto shortcut = [this](const QKeySequence& keys, const char* procedure, auto handler) {
        on(new QShortcut(keys, this), &QShortcut::activated, procedure, handler);
    };
    const auto enter = [](QLineEdit* box) { return [box] { controls::focusAll(*box); }; };
    key(Qt::ALT | Qt::Key_Left, ui_->Back);
    key(Qt::ALT | Qt::Key_Right, ui_->Forward);
    key(Qt::ALT | Qt::Key_Home, ui_->Home);
    key(QKeySequence::Print, ui_->PrintIt);
    key(Qt::Key_F3, ui_->FindNext);
    key(Qt::SHIFT | Qt::Key_F3, ui_->FindPrevious);
    key(Qt::Key_Return, ui_->FindNext, ui_->Find);
    key(Qt::SHIFT | Qt::Key_Return, ui_->FindPrevious, ui_->Find);
    key(QKeySequence::ZoomIn, ui_->ZoomIn);
    key(QKeySequence::ZoomOut, ui_->ZoomOut);
    shortcut(Qt::CTRL | Qt::Key_0, "Zoom_Key", [this] { ui_->PageText->setZoom(UsualZoom); });
    shortcut(QKeySequence::Find, "Find_Focus", enter(ui_->Find));
    shortcut(Qt::CTRL | Qt::Key_K, "Search_Focus", enter(ui_->Search));
    shortcut(Qt::Key_F6, "Page_Focus", [this] {
        QWidget* side = ui_->Sides->currentWidget();
        (ui_->PageText->hasFocus() ? side : ui_->PageText)->setFocus(Qt::ShortcutFocusReason);
    });
    for (const Qt::Key enterKey : {Qt::Key_Down, Qt::Key_Return}) {
        on(new QShortcut(enterKey, ui_->Search, nullptr, nullptr, Qt::WidgetShortcut),
           &QShortcut::activated, "Search_KeyPress", &GuideWindow::enterFirstHit);
    }
}

void GuideWindow::Form_Load() {
    auto& memory = controls::LayoutMemory::instance();
    if (!ui_->Split->restoreState(memory.recall(SplitKey).toByteArray())) {
        const int side = fontMetrics().averageCharWidth() * SideCharacters;
        ui_->Split->setSizes({side, width() - side});
    }
    if (const int zoom = memory.recall(ZoomKey).toInt(); zoom > 0) {
        ui_->PageText->setZoom(zoom);
    }
    fillContents();
    ui_->PageText->setFocus();
}

bool GuideWindow::Form_QueryUnload() {
    controls::LayoutMemory::instance().remember(SplitKey, ui_->Split->saveState());
    return true;
}

void GuideWindow::fillContents() {
    const Guide& guide = theGuide();
    for (const Chapter& chapter : guide.chapters()) {
        auto* head = new QTreeWidgetItem(ui_->Contents, {chapter.title});
        QFont bold = ui_->Contents->font();
        bold.setBold(true);
        head->setFont(0, bold);
        for (const QString& name : chapter.pages) {
            const Page& page = *guide.page(name);
            auto* line = new QTreeWidgetItem(head, {page.title()});
            line->setData(0, PlaceRole, anchorRoleText({name, {}}));
            for (const Section& section : page.sections) {
                if (section.level == 2) {
                    auto* part = new QTreeWidgetItem(line, {section.title});
                    part->setData(0, PlaceRole, anchorRoleText({name, section.anchor}));
                }
            }
        }
        head->setExpanded(true);
    }
}

void GuideWindow::showBeside() {
    load();
    winId();
    // A box that takes all input for itself lets only those through that stand above it.
    const QWidget* modal = QApplication::activeModalWidget();
    const bool takesAll =
        modal != nullptr && modal != this && modal->windowModality() == Qt::ApplicationModal;
    QWindow* below = takesAll ? modal->windowHandle() : nullptr;
    if (windowHandle()->transientParent() != below) {
        hide();
        windowHandle()->setTransientParent(below);
    }
    showForm();
}

void GuideWindow::goTo(const Place& place) {
    visited_[at_].scrolled = ui_->PageText->verticalScrollBar()->value();
    if (!visited_[at_].place.page.isEmpty() && visited_[at_].place != place) {
        visited_.resize(++at_);
        visited_.emplace_back();
    }
    if (visited_.size() > MostVisits) {
        visited_.erase(visited_.begin());
        --at_;
    }
    visited_[at_] = {place, 0};
    show(place, -1);
}

/// Where `scrolled` is below 0, the place itself is at the top.
void GuideWindow::show(const Place& place, int scrolled) {
    const Guide& guide = theGuide();
    status({});
    ui_->PageText->showPage(
        guide.isEmpty() ? QString(NoGuide).arg(guide.folder()) : guide.markdown(place.page),
        guide.folder());
    const Page* page = guide.page(place.page);
    const bool isNamed = page != nullptr && page->name != Guide::Contents;
    setWindowTitle(isNamed ? tr("%1 - Guide").arg(page->title()) : tr("Guide"));
    if (scrolled < 0) {
        ui_->PageText->goTo(place.anchor);
    } else {
        ui_->PageText->verticalScrollBar()->setValue(scrolled);
    }
    ui_->Back->setEnabled(at_ > 0);
    ui_->Forward->setEnabled(at_ + 1 < visited_.size());
    followInContents(place);
    Find_Change();
}

void GuideWindow::visit(std::size_t at) {
    visited_[at_].scrolled = ui_->PageText->verticalScrollBar()->value();
    at_ = at;
    show(visited_[at_].place, visited_[at_].scrolled);
}

void GuideWindow::followInContents(const Place& place) {
    QTreeWidgetItem* best = nullptr;
    for (QTreeWidgetItemIterator item(ui_->Contents); *item != nullptr; ++item) {
        const Place there = placeIn(**item);
        if (there == place || (there == Place{place.page, {}} && best == nullptr)) {
            best = *item;
        }
    }
    const QSignalBlocker quiet(ui_->Contents);
    ui_->Contents->setCurrentItem(best);
    if (best != nullptr) {
        (best->childCount() > 0 ? best : best->parent())->setExpanded(true);
        ui_->Contents->scrollToItem(best);
    }
}

void GuideWindow::Back_Click() {
    if (at_ > 0) {
        visit(at_ - 1);
    }
}

void GuideWindow::Forward_Click() {
    if (at_ + 1 < visited_.size()) {
        visit(at_ + 1);
    }
}

void GuideWindow::Home_Click() {
    ui_->Search->clear();
    goTo({Guide::Contents, {}});
}

void GuideWindow::Contents_Click(QTreeWidgetItem& item) {
    if (const Place place = placeIn(item); !place.page.isEmpty()) {
        goTo(place);
    } else {
        item.setExpanded(!item.isExpanded());
    }
}

void GuideWindow::Search_Change() {
    const QString words = ui_->Search->text().trimmed();
    ui_->Sides->setCurrentWidget(words.isEmpty() ? static_cast<QWidget*>(ui_->Contents)
                                                 : ui_->HitPage);
    ui_->Hits->clear();
    hits_.clear();
    const Found found = searchGuide(theGuide(), words);
    for (const Hit& hit : found.hits) {
        auto* item = new QListWidgetItem(HitDelegate::textOf(hit), ui_->Hits);
        item->setData(HitDelegate::Markup, HitDelegate::markupOf(hit));
        hits_.push_back(hit.place);
    }
    const auto count = hits_.size();
    ui_->HitCount->setText(count == 0       ? tr("Nothing holds these words. Try another one for "
                                                       "the same thing.")
                           : !found.holdAll ? tr("Nothing holds all these words; these hold some.")
                           : count == 1     ? tr("1 place")
                                            : tr("%1 places").arg(count));
}

void GuideWindow::enterFirstHit() {
    if (!hits_.empty()) {
        ui_->Hits->setFocus(Qt::ShortcutFocusReason);
        ui_->Hits->setCurrentRow(0);
        Hits_Click(0);
    }
}

void GuideWindow::Hits_Click(int row) {
    goTo(hits_[static_cast<std::size_t>(row)]);
    ui_->PageText->markPlaces(placesOf(ui_->PageText->rawText(), ui_->Search->text()));
}

void GuideWindow::Find_Change() {
    const QString text = ui_->Find->text().trimmed();
    showMarkCount(ui_->PageText->mark(text));
    if (marks_ > 0 && ui_->Find->hasFocus()) {
        goToMark(1);
    }
}

void GuideWindow::showMarkCount(int count) {
    marks_ = count;
    const int current = ui_->PageText->currentMark();
    ui_->FindCount->setText(ui_->Find->text().trimmed().isEmpty() ? QString()
                            : count == 0                          ? tr("none")
                            : current < 0                         ? tr("%1 found").arg(count)
                                          : tr("%1 of %2").arg(current + 1).arg(count));
    ui_->FindNext->setEnabled(count > 0);
    ui_->FindPrevious->setEnabled(count > 0);
}

void GuideWindow::goToMark(int step) {
    if (marks_ > 0) {
        const int from = std::max(ui_->PageText->currentMark(), step > 0 ? -1 : 0);
        ui_->PageText->goToMark((from + step + marks_) % marks_);
        showMarkCount(marks_);
    }
}

void GuideWindow::FindNext_Click() { goToMark(1); }

void GuideWindow::FindPrevious_Click() { goToMark(-1); }

void GuideWindow::PageText_FollowLink(const QUrl& link) {
    const auto target = theGuide().resolve(link.toString(), place().page);
    if (const auto* there = std::get_if<Place>(&target)) {
        goTo(*there);
    } else if (const QUrl& url = std::get<QUrl>(target);
               url.isEmpty() || !QDesktopServices::openUrl(url)) {
        status(url.isEmpty()
                   ? tr("What this link leads to is not installed: %1").arg(link.toString())
                   : tr("Nothing on this desktop opens %1").arg(url.toDisplayString()));
    }
}

void GuideWindow::PrintIt_Click() {
    const Page* page = theGuide().page(place().page);
    if (page != nullptr) {
        status(
            printPage(*this, page->title(), theGuide().markdown(page->name), theGuide().folder()));
    }
}

void GuideWindow::status(const QString& text) {
    ui_->Status->setText(text);
    ui_->Status->setVisible(!text.isEmpty());
}

/// The signs have the colours of the moment.
void GuideWindow::followIcons() {
    const int line = fontMetrics().height();
    const auto show = [&](QAbstractButton* button, controls::Sign sign) {
        button->setIconSize({line, line});
        button->setIcon(controls::signIcon(sign, QPalette::ButtonText));
    };
    show(ui_->FindPrevious, controls::Sign::Up);
    show(ui_->FindNext, controls::Sign::Down);
    show(ui_->Back, controls::Sign::Left);
    show(ui_->Forward, controls::Sign::Right);
}

bool GuideWindow::event(QEvent* event) {
    const bool handled = TrappedForm::event(event);
    if (event->type() == QEvent::PaletteChange) {
        followIcons();
    }
    return handled;
}

/// Escape leaves a search first.
void GuideWindow::reject() {
    for (QLineEdit* box : {ui_->Find, ui_->Search}) {
        if (!box->text().isEmpty()) {
            box->clear();
            ui_->PageText->setFocus();
            return;
        }
    }
    closeForm();
}

}  // namespace help
