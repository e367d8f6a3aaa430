#include "reports/selection/choices.h"

#include <QStringList>
#include <algorithm>
#include <clocale>
#include <string_view>

#include <langinfo.h>

#include "platform/controls/layoutmemory.h"
#include "platform/controls/qtext.h"

namespace reports {

namespace {

using controls::fromQt;
using controls::LayoutMemory;
using controls::toQt;

QString keyOf(const Report& report, const char* choice) {
    return QString("reports/%1/%2").arg(toQt(report.id), choice);
}

/// "Run" or "-Run".
QStringList textsOf(const std::vector<SortField>& sort) {
    QStringList texts;
    for (const SortField& by : sort) {
        texts << (by.descending ? "-" : "") + toQt(by.field);
    }
    return texts;
}

std::vector<SortField> sortOf(const QStringList& texts) {
    std::vector<SortField> sort;
    for (const QString& text : texts) {
        const bool descending = text.startsWith('-');
        sort.push_back({fromQt(descending ? text.mid(1) : text), descending});
    }
    return sort;
}

}  // namespace

Paper usualPaper() {
    const std::string_view locale = std::setlocale(LC_PAPER, nullptr);
    const bool isNowhere = locale == "C" || locale == "POSIX" || locale.starts_with("C.");
    constexpr int LetterHeight = 279;
    union {
        char* text;
        unsigned int millimetres;
    } height{nl_langinfo(_NL_PAPER_HEIGHT)};
    return isNowhere || height.millimetres == LetterHeight ? Paper::Letter : Paper::A4;
}

Choices recallChoices(const Report& report, const std::vector<SortField>& sort) {
    const auto recalled = [&](const char* choice, const QVariant& otherwise) {
        const QVariant known = LayoutMemory::instance().recall(keyOf(report, choice));
        return known.isValid() ? known : otherwise;
    };
    Choices choices;
    choices.options.paper =
        recalled("A4", usualPaper() == Paper::A4).toBool() ? Paper::A4 : Paper::Letter;
    choices.options.landscape = recalled("Landscape", report.landscape).toBool();
    choices.options.names = report.mayName && recalled("Names", false).toBool();
    choices.options.maps = report.mayMap && recalled("Maps", true).toBool();
    const auto breaks =
        static_cast<PageBreak>(recalled("Break", static_cast<int>(report.breaks.front())).toInt());
    choices.options.breaks =
        std::ranges::count(report.breaks, breaks) > 0 ? breaks : report.breaks.front();
    choices.sort = sortOf(recalled("Sort", textsOf(sort)).toStringList());
    choices.changedSince = recalled("ChangedSince", QString()).toString();
    return choices;
}

void rememberChoices(const Report& report, const Choices& choices) {
    auto& memory = LayoutMemory::instance();
    const auto& options = choices.options;
    memory.remember(keyOf(report, "A4"), options.paper == Paper::A4);
    memory.remember(keyOf(report, "Landscape"), options.landscape);
    memory.remember(keyOf(report, "Names"), options.names);
    memory.remember(keyOf(report, "Maps"), options.maps);
    memory.remember(keyOf(report, "Break"), static_cast<int>(options.breaks));
    memory.remember(keyOf(report, "Sort"), textsOf(choices.sort));
    memory.remember(keyOf(report, "ChangedSince"), choices.changedSince);
}

}  // namespace reports
