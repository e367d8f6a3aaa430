#include "platform/forms/form.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QStyle>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>

#include "platform/controls/layoutmemory.h"
#include "platform/controls/multicolumnlist.h"
#include "platform/forms/captions.h"
#include "platform/forms/formregistry.h"
#include "platform/forms/helpport.h"
#include "platform/forms/listexporter.h"
#include "platform/forms/screenfit.h"

namespace forms {

using controls::LayoutMemory;

namespace {

constexpr qreal HeadingShare = 1.3;
constexpr int DesignedHeading = 13;  // points in the .ui files

/// The control on a page that Tab comes to first; null without one.
QWidget* firstStopIn(const QWidget& page) {
    QWidget* stop = page.nextInFocusChain();
    while (stop != &page) {
        if (page.isAncestorOf(stop) && stop->isEnabled() && stop->isVisible() &&
            (stop->focusPolicy() & Qt::TabFocus) != 0) {
            return stop;
        }
        stop = stop->nextInFocusChain();
    }
    return nullptr;
}

void nameIt(QWidget& control, const QString& name) {
    if (control.accessibleName().isEmpty()) {
        control.setAccessibleName(name);
    }
}

/// The title of the group or the page that a control without a label stands on.
QString captionAround(const QWidget& control) {
    for (const QWidget* part = &control; part->parentWidget() != nullptr;
         part = part->parentWidget()) {
        if (const auto* group = qobject_cast<const QGroupBox*>(part)) {
            return group->title().remove('&');
        }
        const auto* pages = part->parentWidget()->parentWidget();
        if (const auto* tabs = qobject_cast<const QTabWidget*>(pages)) {
            return tabs->tabText(tabs->indexOf(part)).remove('&');
        }
    }
    return {};
}

/// A heading of the .ui file, which goes on being one in another font.
bool isHeading(QWidget& part) {
    constexpr auto Known = "isHeading";
    if (!part.property(Known).isValid()) {
        part.setProperty(Known, part.testAttribute(Qt::WA_SetFont) &&
                                    part.font().pointSize() == DesignedHeading);
    }
    return part.property(Known).toBool();
}

/// Lets a control have the width that it needs.
void raiseLimits(QWidget& part) {
    const int needed = part.minimumSizeHint().width();
    if (part.sizePolicy().horizontalPolicy() == QSizePolicy::Ignored) {
        return;
    }
    if (part.maximumWidth() < needed) {
        part.setMaximumWidth(needed);
    }
    if (part.minimumWidth() > 0 && part.minimumWidth() < needed) {
        part.setMinimumWidth(needed);
    }
}

bool holdsColumns(const QLayout& row) {
    for (int place = 0; place < row.count(); ++place) {
        if (row.itemAt(place)->layout() == nullptr) {
            return false;
        }
    }
    return row.count() > 1;
}

/// An area that a part of a form scrolls in; what gets the focus comes into sight.
QScrollArea* scrolled(QWidget& part) {
    auto* area = new QScrollArea(part.parentWidget());
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidget(&part);
    new CaptionBreaker(*area);
    QObject::connect(qApp, &QApplication::focusChanged, area, [area](QWidget*, QWidget* now) {
        if (now != nullptr && area->isAncestorOf(now)) {
            area->ensureWidgetVisible(now);
        }
    });
    return area;
}

void keepWidth(QScrollArea& column) {
    column.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    column.setFixedWidth(column.widget()->minimumSizeHint().width() +
                         column.style()->pixelMetric(QStyle::PM_ScrollBarExtent));
}

/// A column of buttons: its first group and its end stay in sight, what is between them scrolls.
void scrollBetweenEnds(QBoxLayout& column, QWidget& form) {
    std::vector<int> gaps;
    for (int place = 0; place < column.count(); ++place) {
        if (column.itemAt(place)->spacerItem() != nullptr) {
            gaps.push_back(place);
        }
    }
    const int last = gaps.empty() ? column.count() : gaps.back();
    const int first = gaps.size() < 2 ? 0 : gaps.front();
    auto* middle = new QWidget(&form);
    auto* rows = new QVBoxLayout(middle);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(column.spacing());
    for (int place = first; place < last; ++place) {
        std::unique_ptr<QLayoutItem> item(column.takeAt(first));
        if (item->widget() != nullptr) {
            rows->addWidget(item->widget());
        } else {
            rows->addItem(item.release());
        }
    }
    rows->addStretch();
    QScrollArea* area = scrolled(*middle);
    keepWidth(*area);
    column.insertWidget(first, area, 1);
}

/// Behind the button's tool tip, unless that names the key itself.
void tellKey(QAbstractButton& button, const QKeySequence& keys) {
    const QString text = keys.toString(QKeySequence::NativeText);
    const QString tip = button.toolTip();
    if (!tip.contains(text)) {
        button.setToolTip(tip.isEmpty() ? text : QStringLiteral("%1 (%2)").arg(tip, text));
    }
}

}  // namespace

Form::Form(const char* name, Form* owner) : QDialog(owner) {
    setObjectName(QString::fromLatin1(name));
    setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint);
}

Form::~Form() {
    // The registry owns them, not this form.
    for (Form* owned : ownedForms()) {
        owned->setParent(nullptr);
    }
}

QList<Form*> Form::ownedForms() const { return findChildren<Form*>(Qt::FindDirectChildrenOnly); }

Form* Form::owner() const { return qobject_cast<Form*>(parentWidget()); }

bool Form::isBusy() const {
    const auto busy = [](const Form* form) { return form->busy_; };
    for (const Form* form = owner(); form != nullptr; form = form->owner()) {
        if (form->busy_) {
            return true;
        }
    }
    const auto owned = findChildren<Form*>();
    return busy_ || std::any_of(owned.begin(), owned.end(), busy);
}

std::vector<Form*> Form::usableBeside() const {
    const auto owned = findChildren<Form*>();
    std::vector<Form*> forms(owned.begin(), owned.end());
    for (const Form* form = this; form->owner() != nullptr && !form->isModal();
         form = form->owner()) {
        forms.push_back(form->owner());
    }
    return forms;
}

void Form::load() {
    if (state_ != State::Made) {
        return;
    }
    state_ = State::Loading;
    nameControls();
    keepDefaultButton();
    resizeForFont();
    growWithFont();
    noteCaptions(*this);
    for (auto* area : findChildren<QScrollArea*>()) {
        new CaptionBreaker(*area);
    }
    offerExports();
    if (helpPort().describe) {
        helpPort().describe(*this);
    }
    try {
        formDress();
        formLoad();
    } catch (...) {
        state_ = State::Unloaded;
        FormRegistry::instance().giveUp(*this);
        throw;
    }
    if (state_ == State::Loading) {
        state_ = State::Loaded;
    }
}

void Form::offerExports() {
    using controls::MultiColumnList;
    for (auto* list : findChildren<MultiColumnList*>()) {
        if (listExporter()) {
            on(list, &MultiColumnList::exportAsked, [this, list] { listExporter()(*this, *list); });
        }
        if (listPrinter()) {
            on(list, &MultiColumnList::printAsked, [this, list] { listPrinter()(*this, *list); });
        }
    }
}

void Form::showForm() {
    load();
    if (state_ == State::Unloaded) {
        return;  // it had nothing to show
    }
    if (!placed_) {
        place();
        placed_ = true;
    }
    if (isMinimized()) {
        showNormal();
    }
    show();
    raise();
    activateWindow();
}

void Form::unload() {
    if (state_ == State::Unloaded) {
        return;
    }
    for (Form* owned : ownedForms()) {
        owned->unload();
    }
    if (placed_) {
        rememberPlace();
    }
    state_ = State::Unloaded;
    hide();
    formUnload();
    FormRegistry::instance().unloaded(*this);
}

bool Form::closeForm() {
    if (isBusy() || !formQueryUnload()) {
        QApplication::beep();
        return false;
    }
    unload();
    return true;
}

bool Form::event(QEvent* event) {
    const bool handled = QDialog::event(event);
    if (event->type() == QEvent::WindowActivate && isLoaded()) {
        Application::instance().guarded([this] { FormRegistry::instance().activated(*this); });
        fitAgain();  // only now its frame is known
    } else if (event->type() == QEvent::LayoutRequest && isLoaded() &&
               needsMoreThan(roomOnScreen(*this).size())) {
        fitAgain();  // what it was filled with wants more
    } else if (isLoaded()) {
        lookChanged(event->type());
    }
    return handled;
}

void Form::lookChanged(QEvent::Type what) {
    if (what == QEvent::FontChange) {
        growWithFont();
    }
    if (what == QEvent::FontChange || what == QEvent::PaletteChange) {
        Application::instance().guarded([this] { formDress(); });
    }
}

void Form::closeEvent(QCloseEvent* event) {
    event->ignore();
    Application::instance().guarded([this] { closeForm(); });
}

void Form::reject() {
    if (cancel_ != nullptr && cancel_->isEnabled()) {
        cancel_->click();
    }
}

void Form::key(const QKeySequence& keys, QAbstractButton* button) {
    tellKey(*button, keys);
    on(new QShortcut(keys, this), &QShortcut::activated, [button] { button->click(); });
}

void Form::key(const QKeySequence& keys, QAbstractButton* button, QWidget* part) {
    on(new QShortcut(keys, part, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
       &QShortcut::activated, [button] { button->click(); });
}

void Form::pageKeys(QTabWidget& tabs) {
    for (int page = 0; page < tabs.count(); ++page) {
        tabs.setTabToolTip(page, tr("Alt+%1").arg(page + 1));
        on(new QShortcut(Qt::ALT | static_cast<Qt::Key>(Qt::Key_1 + page), this),
           &QShortcut::activated, [&tabs, page] {
               tabs.setCurrentIndex(page);
               if (QWidget* first = firstStopIn(*tabs.widget(page)); first != nullptr) {
                   first->setFocus(Qt::ShortcutFocusReason);
               }
           });
    }
}

void Form::bringIntoSight(QWidget& part) {
    QTimer::singleShot(0, &part, [&part] {
        for (QWidget* around = part.parentWidget(); around != nullptr;
             around = around->parentWidget()) {
            if (auto* area = qobject_cast<QScrollArea*>(around); area != nullptr) {
                area->ensureWidgetVisible(&part, 0, 0);
            }
        }
    });
}

void Form::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    auto* button = qobject_cast<QPushButton*>(focusWidget());
    if (isEnter && button != nullptr && button->isEnabled()) {
        button->click();
    } else {
        QDialog::keyPressEvent(event);
    }
}

void Form::keepDefaultButton() {
    for (QPushButton* button : findChildren<QPushButton*>()) {
        button->setAutoDefault(button->isDefault());
    }
}

void Form::place() {
    const bool restored = restorePlace();
    const QSize room = roomOnScreen(*this).size();
    scrollBeyond(room);
    if (restored) {
        fitToScreen(*this);
    } else {
        resize(size().expandedTo(minimumSizeHint()).boundedTo(room));
    }
}

bool Form::restorePlace() {
    const QByteArray place = LayoutMemory::instance().recall("forms/" + objectName()).toByteArray();
    return !place.isEmpty() && restoreGeometry(place);
}

void Form::rememberPlace() const {
    LayoutMemory::instance().remember("forms/" + objectName(), saveGeometry());
}

void Form::resizeForFont() {
    constexpr int DesignedHeight = 17;  // of a line at 10 points
    resize(size() * std::max(1.0, 1.0 * fontMetrics().height() / DesignedHeight));
}

void Form::growWithFont() {
    const auto parts = findChildren<QWidget*>();
    std::for_each(parts.rbegin(), parts.rend(), [this](QWidget* part) {  // what is inside first
        if (isHeading(*part)) {
            QFont heading = part->font();
            heading.setPointSizeF(font().pointSizeF() * HeadingShare);
            part->setFont(heading);
        }
        raiseLimits(*part);
    });
}

bool Form::needsMoreThan(const QSize& room) const {
    const QSize needed = layout() == nullptr ? QSize() : layout()->totalMinimumSize();
    return needed.boundedTo(room) != needed;
}

void Form::fitAgain() {
    if (isLoaded() && !isMaximized() && !isFullScreen()) {
        scrollBeyond(roomOnScreen(*this).size());
        if (layout() != nullptr) {
            layout()->activate();  // gives up the least size that it had
        }
        fitToScreen(*this);
    }
}

void Form::scrollBeyond(const QSize& room) {
    if (!needsMoreThan(room)) {
        return;
    }
    auto* row = qobject_cast<QHBoxLayout*>(layout());
    if (row == nullptr || !holdsColumns(*row)) {
        auto* all = new QWidget(this);
        all->setLayout(layout());
        row = new QHBoxLayout(this);
        row->setContentsMargins(0, 0, 0, 0);
        row->addWidget(scrolled(*all));
        return;
    }
    if (row->totalMinimumSize().width() > room.width()) {
        breakCaptions(*row);
    }
    for (int place = 0; place < row->count(); ++place) {
        const int stretch = row->stretch(place);
        if (auto* buttons = qobject_cast<QBoxLayout*>(row->itemAt(place)->layout());
            buttons != nullptr && stretch == 0) {
            scrollBetweenEnds(*buttons, *this);
            continue;
        }
        auto* column = new QWidget(this);
        column->setLayout(row->takeAt(place)->layout());
        column->layout()->setContentsMargins(0, 0, 0, 0);
        row->insertWidget(place, scrolled(*column), stretch);
    }
}

void Form::nameControls() {
    for (const QLabel* label : findChildren<QLabel*>()) {
        if (label->buddy() != nullptr) {
            nameIt(*label->buddy(), label->text().remove('&'));
        }
    }
    for (QWidget* control : findChildren<QWidget*>()) {
        if (control->focusProxy() != nullptr) {
            nameIt(*control->focusProxy(), control->accessibleName());
        } else if (qobject_cast<QAbstractScrollArea*>(control) != nullptr &&
                   control->focusPolicy() != Qt::NoFocus) {
            nameIt(*control, captionAround(*control));
        }
    }
    for (const QLineEdit* box : findChildren<QLineEdit*>()) {
        if (auto* clears = box->findChild<QAction*>("_q_qlineeditclearaction")) {
            clears->setText(tr("Clear"));
        }
    }
}

}  // namespace forms
