#include "platform/controls/multicolumncombo.h"

#include <QCompleter>
#include <QHeaderView>
#include <QLineEdit>
#include <QScreen>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

#include "platform/controls/combopopup.h"
#include "platform/controls/qtext.h"
#include "platform/controls/tablemodel.h"

namespace controls {

namespace {

/// Offers the rows that contain what was typed, and writes the first column of the one taken.
class RowCompleter : public QCompleter {
public:
    RowCompleter(TableModel* model, QObject* parent) : QCompleter(model, parent) {
        setCompletionRole(TableModel::RowTextRole);
        setCaseSensitivity(Qt::CaseInsensitive);
        setFilterMode(Qt::MatchContains);
        setMaxVisibleItems(10);
    }

    [[nodiscard]] QString pathFromIndex(const QModelIndex& index) const override {
        return index.siblingAtColumn(0).data(Qt::EditRole).toString();
    }
};

}  // namespace

MultiColumnCombo::MultiColumnCombo(QWidget* parent)
    : QComboBox(parent), model_(new TableModel(this)) {
    setEditable(true);
    setInsertPolicy(NoInsert);
    setCompleter(nullptr);
    setModel(model_);
    setView(new ComboPopup(*model_, this));
    setMaxVisibleItems(14);
    setMinimumContentsLength(10);
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setFocusPolicy(Qt::StrongFocus);
    offerRowsWhileTyping();
    connect(this, &QComboBox::activated, this, &MultiColumnCombo::chosen);
    connect(lineEdit(), &QLineEdit::textEdited, this, &MultiColumnCombo::matchTyped);
    connect(lineEdit(), &QLineEdit::returnPressed, this, &MultiColumnCombo::takeOnlyFit);
}

void MultiColumnCombo::offerRowsWhileTyping() {
    auto* completer = new RowCompleter(model_, this);
    auto* popup = new ComboPopup(*model_);
    // The completer makes the list as high as its rows alone.
    popup->setHeaderHidden(true);
    completer->setPopup(popup);
    connect(lineEdit(), &QLineEdit::textEdited, popup,
            [popup, this] { popup->setMinimumWidth(std::max(popup->fitColumns(), width())); });
    lineEdit()->setCompleter(completer);
    connect(completer, qOverload<const QString&>(&QCompleter::activated), this,
            &MultiColumnCombo::matchTyped);
}

void MultiColumnCombo::setTable(table::TextTable table) {
    const bool captions =
        std::any_of(table.columns.begin(), table.columns.end(),
                    [](const table::TableColumn& one) { return !one.caption.empty(); });
    static_cast<ComboPopup*>(view())->setHeaderHidden(!captions);
    model_->setTable(std::move(table));
    clearChoice();
}

const table::TextTable& MultiColumnCombo::table() const { return model_->table(); }

std::string MultiColumnCombo::text() const { return fromQt(currentText()); }

void MultiColumnCombo::setText(const std::string& text) {
    typed_ = false;
    setEditText(toQt(text));
    setRowKeepingText(model_->find(currentText()));
}

std::string MultiColumnCombo::columnText(int column) const {
    return chosenRow() < 0
               ? std::string()
               : table().text(model_->tableRow(chosenRow()), static_cast<std::size_t>(column));
}

bool MultiColumnCombo::isUnknown() const {
    return chosenRow() < 0 && !currentText().trimmed().isEmpty();
}

void MultiColumnCombo::clearChoice() {
    setCurrentIndex(-1);
    clearEditText();
}

void MultiColumnCombo::matchTyped(const QString& typed) {
    typed_ = true;
    const int row = model_->find(typed);
    setRowKeepingText(row);
    if (row >= 0) {
        emit chosen(row);
    }
}

void MultiColumnCombo::takeOnlyFit() {
    if (!typed_ || !isUnknown() || model_->rowCount() == 0) {
        return;
    }
    constexpr int EnoughToTell = 2;
    const auto fits = model_->match(model_->index(0, 0), TableModel::RowTextRole,
                                    currentText().trimmed(), EnoughToTell, Qt::MatchContains);
    if (fits.size() == 1) {
        setCurrentIndex(fits.front().row());
        emit chosen(currentIndex());
    }
}

void MultiColumnCombo::setRowKeepingText(int row) {
    const QString text = lineEdit()->text();
    const int cursor = lineEdit()->cursorPosition();
    const QSignalBlocker quiet(lineEdit());
    setCurrentIndex(row);
    lineEdit()->setText(text);
    lineEdit()->setCursorPosition(cursor);
}

void MultiColumnCombo::showPopup() {
    auto* popup = static_cast<ComboPopup*>(view());
    const int widest = screen()->availableGeometry().width();
    popup->setMinimumWidth(std::min(std::max(popup->fitColumns(), width()), widest));
    QComboBox::showPopup();
    makeRoomForCaptions();
}

void MultiColumnCombo::makeRoomForCaptions() {
    const auto* popup = static_cast<ComboPopup*>(view());
    if (popup->isHeaderHidden() || count() == 0 || count() > maxVisibleItems()) {
        return;
    }
    QWidget* box = popup->parentWidget();
    const int rows = count() * popup->visualRect(model_->index(0, 0)).height();
    const int more = popup->header()->height() + rows + 2 * popup->frameWidth() - popup->height();
    const bool above = box->y() < mapToGlobal(QPoint()).y();
    box->setGeometry(box->x(), above ? box->y() - more : box->y(), box->width(),
                     box->height() + more);
}

void MultiColumnCombo::wheelEvent(QWheelEvent* event) { event->ignore(); }

void MultiColumnCombo::focusOutEvent(QFocusEvent* event) {
    QComboBox::focusOutEvent(event);
    const bool stays = view()->isVisible() || event->reason() == Qt::PopupFocusReason ||
                       event->reason() == Qt::ActiveWindowFocusReason;
    if (!stays) {
        takeOnlyFit();
        emit left();
    }
}

}  // namespace controls
