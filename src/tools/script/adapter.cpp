#include "tools/script/adapter.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QCompleter>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QScrollBar>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <type_traits>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "platform/controls/multicolumncombo.h"
#include "platform/controls/multicolumnlist.h"
#include "platform/controls/qtext.h"
#include "tools/script/gridadapter.h"
#include "tools/script/userinput.h"

namespace script {

using controls::fromQt;
using controls::MultiColumnCombo;
using controls::MultiColumnList;
using controls::toQt;

namespace {

/// Whether a form is that one or was opened from it, directly or through others.
bool isOrBelongsTo(const QWidget& form, const QWidget& other) {
    const QWidget* one = &form;
    while (one != nullptr && one != &other) {
        one = one->parentWidget();
    }
    return one != nullptr;
}

QString withoutAccessKey(QString caption) { return caption.remove('&'); }

/// Replaces all of a text control's content by keyboard.
void retype(QWidget& control, const std::string& text) {
    pressKey(control, Qt::Key_A, Qt::ControlModifier);
    if (text.empty()) {
        pressKey(control, Qt::Key_Delete);
    } else {
        typeText(control, toQt(text));
    }
}

QString contentOf(const QLineEdit& edit) { return edit.text(); }
QString contentOf(const QPlainTextEdit& edit) { return edit.toPlainText(); }

template <class Edit>
class TextAdapter : public Adapter {
public:
    explicit TextAdapter(Edit& edit) : edit_(edit) {}
    [[nodiscard]] std::string kind() const override { return "a text box"; }
    [[nodiscard]] std::string text() const override { return fromQt(contentOf(edit_)); }
    void set(const std::string& text) override {
        if (edit_.isReadOnly()) {
            cannot("is typed into, for it is read-only");
        }
        if (std::is_same_v<Edit, QLineEdit> && text.find('\n') != std::string::npos) {
            cannot("takes a line end");
        }
        focus(edit_);
        retype(edit_, text);
        leave(edit_);
    }

private:
    Edit& edit_;
};

class ComboAdapter : public Adapter {
public:
    explicit ComboAdapter(QComboBox& combo) : combo_(combo) {}
    [[nodiscard]] std::string kind() const override { return "a combo box"; }
    [[nodiscard]] std::string text() const override { return fromQt(combo_.currentText()); }
    void set(const std::string& text) override {
        focus(combo_);
        if (combo_.isEditable()) {
            retype(*combo_.lineEdit(), text);
            if (QCompleter* offers = combo_.lineEdit()->completer(); offers != nullptr) {
                offers->popup()->hide();
            }
        } else {
            choose(text);
        }
        leave(combo_);
    }
    [[nodiscard]] std::vector<std::string> lines() const override {
        std::vector<std::string> lines{text()};
        if (const auto* columns = qobject_cast<const MultiColumnCombo*>(&combo_)) {
            for (std::size_t column = 1; column < columns->table().columns.size(); ++column) {
                lines[0] += "\t" + columns->columnText(static_cast<int>(column));
            }
        }
        return lines;
    }

private:
    void choose(const std::string& text) {
        const int row = combo_.findText(toQt(text));
        if (row < 0) {
            cannot(fmt::format("offers \"{}\"", text));
        }
        combo_.setCurrentIndex(row);
        emit combo_.activated(row);
    }

    QComboBox& combo_;
};

class CheckAdapter : public Adapter {
public:
    explicit CheckAdapter(QAbstractButton& button) : button_(button) {}
    [[nodiscard]] std::string kind() const override { return "a check box or option"; }
    [[nodiscard]] std::string text() const override { return button_.isChecked() ? "1" : "0"; }
    [[nodiscard]] std::string checkedState() const override {
        return button_.isChecked() ? "checked" : "unchecked";
    }
    void set(const std::string& text) override {
        if (text != "0" && text != "1") {
            cannot(fmt::format("takes \"{}\", only 0 and 1", text));
        }
        if (button_.isChecked() != (text == "1")) {
            click();
        }
    }
    void click() override { button_.click(); }

private:
    QAbstractButton& button_;
};

class ButtonAdapter : public Adapter {
public:
    explicit ButtonAdapter(QAbstractButton& button) : button_(button) {}
    [[nodiscard]] std::string kind() const override { return "a button"; }
    [[nodiscard]] std::string text() const override {
        return fromQt(withoutAccessKey(button_.text()));
    }
    void click() override { button_.click(); }

private:
    QAbstractButton& button_;
};

class TabAdapter : public Adapter {
public:
    explicit TabAdapter(QTabWidget& tabs) : tabs_(tabs) {}
    [[nodiscard]] std::string kind() const override { return "a tab control"; }
    [[nodiscard]] std::string text() const override { return caption(tabs_.currentIndex()); }
    void set(const std::string& text) override {
        for (int page = 0; page < tabs_.count(); ++page) {
            if (caption(page).starts_with(text)) {
                clickAt(*tabs_.tabBar(), tabs_.tabBar()->tabRect(page).center());
                return;
            }
        }
        cannot(fmt::format("has a page \"{}\"", text));
    }

private:
    [[nodiscard]] std::string caption(int page) const {
        return fromQt(withoutAccessKey(tabs_.tabText(page)));
    }

    QTabWidget& tabs_;
};

// What controls show that cannot be changed.
QString shownBy(const QLabel& label) {
    return label.buddy() == nullptr ? label.text() : withoutAccessKey(label.text());
}
QString shownBy(const QProgressBar& bar) { return QString::number(bar.value()); }
QString shownBy(const QStatusBar& status) { return status.currentMessage(); }
QString shownBy(const QGroupBox& group) { return withoutAccessKey(group.title()); }

template <class Control>
constexpr const char* KindName = "a label";
template <>
constexpr const char* KindName<QProgressBar> = "a progress bar";
template <>
constexpr const char* KindName<QStatusBar> = "a status bar";
template <>
constexpr const char* KindName<QGroupBox> = "a frame";

template <class Control>
class ShownAdapter : public Adapter {
public:
    explicit ShownAdapter(const Control& control) : control_(control) {}
    [[nodiscard]] std::string kind() const override { return KindName<Control>; }
    [[nodiscard]] std::string text() const override { return fromQt(shownBy(control_)); }

private:
    const Control& control_;
};

class ListAdapter : public Adapter {
public:
    explicit ListAdapter(MultiColumnList& list) : list_(list) {}
    [[nodiscard]] std::string kind() const override { return "a list"; }
    [[nodiscard]] std::string text() const override { return std::to_string(list_.rows()); }

    [[nodiscard]] std::vector<std::string> lines() const override {
        std::vector<std::string> lines{
            base::joined(list_.table().columns, "\t", &table::TableColumn::caption)};
        for (int row = 1; row <= list_.rows(); ++row) {
            lines.push_back(rowText(row));
        }
        return lines;
    }

    [[nodiscard]] std::string rowText(int row) const override {
        const int at = checked(row);
        std::string text;
        for (int column = 0; column < list_.model()->columnCount(); ++column) {
            text += column == 0 ? "" : "\t";
            text += list_.isRed(at, column) ? "!" : "";
            text += list_.cellText(at, column);
        }
        return text;
    }

    void doubleClick(int row) override { doubleClickAt(*list_.viewport(), place(row)); }

    void clickColumn(int column) override {
        QHeaderView& header = *list_.header();
        if (column < 1 || column > header.count()) {
            cannot(fmt::format("has a column {}, it has {}", column, header.count()));
        }
        const int middle = header.sectionPosition(column - 1) + header.sectionSize(column - 1) / 2;
        list_.horizontalScrollBar()->setValue(middle - header.viewport()->width() / 2);
        clickAt(*header.viewport(), {middle - header.offset(), header.height() / 2});
    }

    void selectRows(std::span<const int> rows) override {
        Qt::KeyboardModifiers held = Qt::NoModifier;
        for (const int row : rows) {
            clickAt(*list_.viewport(), place(row), held);
            held = Qt::ControlModifier;
        }
    }
    void selectAll() override {
        focus(list_);
        pressKey(list_, Qt::Key_A, Qt::ControlModifier);
    }
    void selectNone() override { list_.selectNone(); }

private:
    [[nodiscard]] int checked(int row) const {
        if (row < 1 || row > list_.rows()) {
            cannot(fmt::format("has a row {}, it has {}", row, list_.rows()));
        }
        return row - 1;
    }
    [[nodiscard]] QPoint place(int row) {
        const QModelIndex index = list_.model()->index(checked(row), 0);
        list_.scrollTo(index);
        return list_.visualRect(index).center();
    }

    MultiColumnList& list_;
};

template <class ItsAdapter, class Control>
std::unique_ptr<Adapter> tryKind(QWidget& control) {
    auto* typed = qobject_cast<Control*>(&control);
    return typed == nullptr ? nullptr : std::make_unique<ItsAdapter>(*typed);
}
template <template <class> class ItsAdapter, class Control>
std::unique_ptr<Adapter> tryKind(QWidget& control) {
    return tryKind<ItsAdapter<Control>, Control>(control);
}

}  // namespace

std::string Adapter::rowText(int) const { cannot("has rows"); }
void Adapter::set(const std::string&) { cannot("takes a text"); }
void Adapter::click() { cannot("is clicked as a whole"); }
void Adapter::doubleClick(int) { cannot("has rows"); }
void Adapter::clickColumn(int) { cannot("has columns"); }
void Adapter::selectRows(std::span<const int>) { cannot("has rows"); }
void Adapter::selectAll() { cannot("has rows"); }
void Adapter::selectNone() { cannot("has rows"); }
void Adapter::setCell(int, int, const std::string&) { cannot("has cells to type into"); }

void Adapter::cannot(const std::string& what) const {
    throw ControlError(fmt::format("is {}, none that {}", kind(), what));
}

std::unique_ptr<Adapter> adapterFor(QWidget& control) {
    using Maker = std::unique_ptr<Adapter> (*)(QWidget&);
    constexpr Maker Kinds[] = {
        tryKind<ListAdapter, MultiColumnList>, tryKind<GridAdapter, controls::Grid>,
        tryKind<ComboAdapter, QComboBox>,      tryKind<TextAdapter, QLineEdit>,
        tryKind<TextAdapter, QPlainTextEdit>,  tryKind<CheckAdapter, QCheckBox>,
        tryKind<CheckAdapter, QRadioButton>,   tryKind<ButtonAdapter, QAbstractButton>,
        tryKind<ShownAdapter, QLabel>,         tryKind<TabAdapter, QTabWidget>,
        tryKind<ShownAdapter, QProgressBar>,   tryKind<ShownAdapter, QStatusBar>,
        tryKind<ShownAdapter, QGroupBox>,
    };
    for (const Maker make : Kinds) {
        if (auto adapter = make(control)) {
            return adapter;
        }
    }
    throw ControlError("is of a kind that scripts do not know");
}

void bringWithinReach(QWidget& control) {
    for (QWidget* inner = &control; inner->parentWidget() != nullptr;
         inner = inner->parentWidget()) {
        auto* pages = qobject_cast<QStackedWidget*>(inner->parentWidget());
        auto* tabs = pages == nullptr ? nullptr : qobject_cast<QTabWidget*>(pages->parentWidget());
        if (tabs != nullptr) {
            tabs->setCurrentWidget(inner);
        }
    }
    const QWidget* modal = QApplication::activeModalWidget();
    if (modal != nullptr && !isOrBelongsTo(*control.window(), *modal)) {
        throw ControlError(fmt::format("is out of reach behind {}", fromQt(modal->objectName())));
    }
    if (!control.isVisible()) {
        throw ControlError("is hidden");
    }
    if (!control.isEnabled()) {
        throw ControlError("is disabled");
    }
}

}  // namespace script
