#include "support/access.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QTest>
#include <algorithm>
#include <map>
#include <optional>
#include <set>

#include "platform/controls/celldelegate.h"
#include "support/contrast.h"

namespace support {

namespace {

constexpr double LeastContrast = 4.5;

using Stops = std::vector<QWidget*>;

template <class T>
bool isA(const QWidget* part) {
    return qobject_cast<const T*>(part) != nullptr;
}

/// A part that a control is made of.
bool isInner(const QWidget& part) {
    const QWidget* whole = part.parentWidget();
    return part.focusProxy() != nullptr || isA<QComboBox>(whole) || isA<QAbstractSpinBox>(whole) ||
           part.objectName().startsWith("qt_scrollarea");
}

bool isStop(const QWidget& part) {
    return part.isVisible() && part.isEnabled() && (part.focusPolicy() & Qt::TabFocus) != 0 &&
           !isInner(part);
}

/// Whether a planner who reads downwards, and to the right, comes to the later one first.
bool isBehind(const QWidget& earlier, const QWidget& later) {
    const QWidget* window = earlier.window();
    const QRect a(earlier.mapTo(window, QPoint()), earlier.size());
    const QRect b(later.mapTo(window, QPoint()), later.size());
    const bool isAbove = b.bottom() <= a.top();
    const bool isBeside = !isAbove && a.bottom() > b.top();
    return (isAbove && b.left() < a.right()) || (isBeside && b.right() <= a.left());
}

using Pair = std::pair<QWidget*, QWidget*>;

/// The stops of a round that are out of order, wherever one begins it best.
std::vector<Pair> outOfOrder(Stops round) {
    std::optional<std::vector<Pair>> least;
    for (std::size_t turn = 0; turn < round.size(); ++turn) {
        std::vector<Pair> pairs;
        for (std::size_t i = 0; i < round.size(); ++i) {
            for (std::size_t j = i + 1; j < round.size(); ++j) {
                if (isBehind(*round[i], *round[j])) {
                    pairs.emplace_back(round[i], round[j]);
                }
            }
        }
        if (!least || pairs.size() < least->size()) {
            least = std::move(pairs);
        }
        std::rotate(round.begin(), round.begin() + 1, round.end());
    }
    return least.value_or(std::vector<Pair>());
}

/// The colour that most pixels have.
QRgb groundIn(const QImage& image) {
    std::map<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            ++counts[image.pixel(x, y)];
        }
    }
    return std::ranges::max_element(counts, {}, [](const auto& pair) { return pair.second; })
        ->first;
}

/// Of the ink that stands out most.
double contrastIn(const QImage& image) {
    const QColor ground(groundIn(image));
    std::set<QRgb> inks;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            inks.insert(image.pixel(x, y));
        }
    }
    double most = 1;
    for (const QRgb ink : inks) {
        most = std::max(most, contrastOf(ground, QColor(ink)));
    }
    return most;
}

int changedPixels(const QImage& one, const QImage& other) {
    if (one.size() != other.size()) {
        return one.width() * one.height();
    }
    int changed = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            changed += one.pixel(x, y) == other.pixel(x, y) ? 0 : 1;
        }
    }
    return changed;
}

class Findings {
public:
    explicit Findings(QWidget& window) : window_(window) {}

    std::vector<std::string> all() {
        QApplication::setActiveWindow(&window_);
        QCoreApplication::processEvents();
        for (QWidget* part : window_.findChildren<QWidget*>()) {
            if (part->isVisible() && part->window() == &window_ && !isInner(*part)) {
                lookAt(*part);
            }
        }
        goRound();
        return found_;
    }

private:
    static std::string nameOf(const QWidget& part) {
        return part.objectName().isEmpty() ? part.metaObject()->className() + std::string(" in ") +
                                                 part.parentWidget()->objectName().toStdString()
                                           : part.objectName().toStdString();
    }
    void find(const QWidget& part, const std::string& what) {
        found_.push_back(window_.objectName().toStdString() + "." + nameOf(part) + " " + what);
    }

    void lookAt(QWidget& part) {
        auto* access = QAccessible::queryAccessibleInterface(&part);
        if (access == nullptr) {
            return find(part, "is unknown to screen readers");
        }
        const auto role = access->role();
        const auto name = access->text(QAccessible::Name);
        const auto* button = qobject_cast<QAbstractButton*>(&part);
        const bool isUsed =
            (part.focusPolicy() != Qt::NoFocus && !isA<QLabel>(&part)) || button != nullptr;
        const bool isPaintedByUs = !QByteArray(part.metaObject()->className()).startsWith('Q') &&
                                   !isA<QLabel>(&part) && part.findChildren<QWidget*>().empty();
        if (name.isEmpty() && role != QAccessible::PageTabList &&
            (isUsed || isPaintedByUs || isA<QProgressBar>(&part))) {
            find(part, "has no name");
        }
        if ((isUsed || isPaintedByUs) &&
            (role == QAccessible::NoRole || role == QAccessible::Client ||
             role == QAccessible::Window)) {
            find(part, "has no role");
        }
        const auto state = access->state();
        if (isUsed && (state.disabled == part.isEnabled() ||
                       (button != nullptr && button->isCheckable() &&
                        (!state.checkable || state.checked != button->isChecked())))) {
            find(part, "does not tell its state");
        }
        if (auto* view = qobject_cast<QAbstractItemView*>(&part)) {
            lookAtCells(*view, *access);
        } else if (part.isEnabled() && (isA<QLabel>(&part) || button != nullptr) &&
                   !isA<QLineEdit>(part.parentWidget())) {
            lookAtText(part, part.property("text").toString());
        }
    }
    void lookAtText(QWidget& part, const QString& text) {
        if (!text.trimmed().isEmpty() && !part.visibleRegion().isEmpty() &&
            contrastIn(part.grab().toImage()) < LeastContrast) {
            find(part, "is hard to read");
        }
    }
    void lookAtCells(QAbstractItemView& view, QAccessibleInterface& access) {
        constexpr int Rows = 6;
        if (isA<QHeaderView>(&view) || view.model() == nullptr ||
            view.model()->hasChildren(view.model()->index(0, 0))) {
            return;
        }
        auto* table = access.tableInterface();
        const auto image = view.viewport()->grab().toImage();
        for (int row = 0; row < std::min(Rows, view.model()->rowCount()); ++row) {
            for (int column = 0; column < view.model()->columnCount(); ++column) {
                const auto index = view.model()->index(row, column);
                auto* cell = table == nullptr ? access.child(row) : table->cellAt(row, column);
                lookAtCell(view, index, cell == nullptr ? "" : cell->text(QAccessible::Name));
                lookAtPixels(view, index, image);
            }
        }
    }
    void lookAtCell(const QAbstractItemView& view, const QModelIndex& index, const QString& said) {
        const auto shown = index.data().toString();
        const bool isHidden = view.visualRect(index).isEmpty();
        const bool isRed = index.data(controls::RedRole).toBool();
        const bool isMarked = !index.data(Qt::DecorationRole).isNull();
        const bool isFirstRed =
            isRed &&
            (index.column() == 0 || !index.siblingAtColumn(0).data(controls::RedRole).toBool());
        if (!isHidden && !said.contains(shown.simplified().isEmpty() ? "" : shown)) {
            find(view, "does not read out \"" + shown.toStdString() + "\"");
        } else if (!isHidden && (isMarked || isFirstRed) && said == shown) {
            find(view, "has no word for the mark of \"" + shown.toStdString() + "\"");
        }
    }
    void lookAtPixels(const QAbstractItemView& view, const QModelIndex& index,
                      const QImage& image) {
        const QRect place = view.visualRect(index) & view.viewport()->rect();
        if (view.isEnabled() && place.width() > 20 && place.height() > 8 &&
            place == view.visualRect(index) && !index.data().toString().trimmed().isEmpty() &&
            contrastIn(image.copy(place)) < LeastContrast) {
            find(view, "is hard to read at \"" + index.data().toString().toStdString() + "\"");
        }
    }

    /// Once round by Tab, and back.
    void goRound() {
        const Stops reached = pressed(Qt::Key_Tab, true);
        Stops back = pressed(Qt::Key_Backtab, false);
        if (reached.empty()) {
            return;
        }
        for (const QWidget* part : window_.findChildren<QWidget*>()) {
            if (isStop(*part) && part->window() == &window_ && !isReached(*part, reached)) {
                find(*part, "is not reached by Tab");
            }
        }
        std::ranges::reverse(back);
        for (const Stops& round : {reached, back}) {
            for (const auto& [earlier, later] : outOfOrder(round)) {
                find(*earlier, "is reached before " + nameOf(*later));
            }
        }
    }
    static bool isReached(const QWidget& part, const Stops& reached) {
        return std::ranges::any_of(reached, [&](const QWidget* stop) {
            const auto* option = qobject_cast<const QRadioButton*>(&part);
            return stop == &part || (option != nullptr && isA<QRadioButton>(stop) &&
                                     stop->parentWidget() == part.parentWidget());
        });
    }
    Stops pressed(Qt::Key key, bool looks) {
        constexpr std::size_t Most = 300;
        Stops stops;
        std::optional<QImage> focused;
        window_.setFocus();
        for (std::size_t presses = 0; presses < Most; ++presses) {
            QWidget* before = window_.focusWidget();
            QTest::keyClick(before == nullptr ? &window_ : before, key);
            if (looks && !stops.empty()) {
                compareFocus(*stops.back(), *focused);
            }
            QWidget* now = window_.focusWidget();
            if (now != nullptr && now == before) {
                continue;  // from link to link within it
            }
            if (now == nullptr || std::ranges::find(stops, now) != stops.end()) {
                break;
            }
            stops.push_back(now);
            focused = looks ? now->grab().toImage() : QImage();
        }
        return stops;
    }
    void compareFocus(const QWidget& stop, const QImage& focused) {
        auto& shown = const_cast<QWidget&>(stop);
        const int caret = stop.fontMetrics().height() * 2;
        if (!stop.hasFocus() && changedPixels(focused, shown.grab().toImage()) <= caret) {
            find(stop, "does not show its focus");
        }
    }

    QWidget& window_;
    std::vector<std::string> found_;
};

void speak(QAccessibleInterface* thing, std::string& text) {
    if (thing == nullptr || thing->state().invisible) {
        return;
    }
    const auto said = thing->text(QAccessible::Name) + " " + thing->text(QAccessible::Value);
    text += std::to_string(thing->role()) + ": " + said.simplified().toStdString() + "\n";
    for (int i = 0; i < thing->childCount(); ++i) {
        speak(thing->child(i), text);
    }
}

}  // namespace

std::vector<std::string> accessFindings(QWidget& window) { return Findings(window).all(); }

std::string spoken(QWidget& part) {
    std::string text;
    speak(QAccessible::queryAccessibleInterface(&part), text);
    return text;
}

}  // namespace support
