#include "runsearch/schedule/access.h"

#include "platform/controls/qtext.h"
#include "runsearch/schedule/telling.h"

namespace schedule {

namespace {

class BarAccess : public QAccessibleInterface {
public:
    BarAccess(ScheduleView& view, std::size_t bar) : view_(view), bar_(bar) {}

    [[nodiscard]] std::size_t place() const { return bar_; }
    [[nodiscard]] bool isValid() const override {
        return view_.chart() != nullptr && bar_ < view_.chart()->bars.size();
    }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&view_);
    }
    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return isValid() && kind == QAccessible::Name
                   ? controls::toQt(spokenText(cardOf(*view_.plan(), *view_.chart(), run())))
                   : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    [[nodiscard]] QRect rect() const override {
        const auto local = isValid() ? view_.barRect(run()) : QRect();
        return {view_.viewport()->mapToGlobal(local.topLeft()), local.size()};
    }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.selectable = state.focusable = true;
        state.selected = isValid() && view_.selected() == run();
        state.focused = state.selected && view_.hasFocus();
        return state;
    }

private:
    [[nodiscard]] int run() const { return view_.chart()->bars[bar_].run; }

    ScheduleView& view_;
    std::size_t bar_;
};

}  // namespace

ScheduleAccess::ScheduleAccess(ScheduleView& view) : QAccessibleWidget(&view, QAccessible::List) {}

ScheduleAccess::~ScheduleAccess() {
    for (const auto bar : bars_) {
        if (bar != 0) {
            QAccessible::deleteAccessibleInterface(bar);
        }
    }
}

const ScheduleView& ScheduleAccess::view() const { return static_cast<ScheduleView&>(*widget()); }

int ScheduleAccess::childCount() const {
    return view().chart() == nullptr ? 0 : static_cast<int>(view().chart()->bars.size());
}

QAccessibleInterface* ScheduleAccess::child(int index) const {
    if (index < 0 || index >= childCount()) {
        return nullptr;
    }
    const auto place = static_cast<std::size_t>(index);
    if (bars_.size() <= place) {
        bars_.resize(place + 1, 0);
    }
    if (bars_[place] == 0) {
        bars_[place] = QAccessible::registerAccessibleInterface(
            new BarAccess(static_cast<ScheduleView&>(*widget()), place));
    }
    return QAccessible::accessibleInterface(bars_[place]);
}

QAccessibleInterface* ScheduleAccess::focusChild() const {
    const auto* chart = view().chart();
    const int run = view().selected();
    return chart == nullptr || run == None ? nullptr
                                           : child(chart->barOf[static_cast<std::size_t>(run)]);
}

int ScheduleAccess::indexOfChild(const QAccessibleInterface* child) const {
    const auto* bar = dynamic_cast<const BarAccess*>(child);
    return bar == nullptr ? -1 : static_cast<int>(bar->place());
}

}  // namespace schedule
