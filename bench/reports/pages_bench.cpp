// Pages of the stop list of 2,000 runs with 20 stops each: laying out, what they take of memory,
// searching them, painting them, and the same boxes painted by the toolkit.

#include <QFont>
#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>
#include <filesystem>
#include <string>

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <malloc.h>

#include "reports/page/layout.h"
#include "reports/paint/pdf.h"
#include "reports/paint/tiff.h"

namespace {

using namespace reports;

constexpr int StopsOfRun = 20;

/// Makes its rows while it is read, so that memory counts the pages alone.
class StopList : public Content {
public:
    explicit StopList(int runs) : runs_(runs) {
        heading_ = {.title = "Run stop list",
                    .selection = "All runs",
                    .district = "Four Towns Unified School District",
                    .printed = "Nov 21, 2026 9:41 AM",
                    .user = "PLANNER"};
        report_.columns = {{.caption = "No.", .kind = CellKind::Whole, .width = 26},
                           {.caption = "Time", .kind = CellKind::Time, .width = 52},
                           {.caption = "Stop", .width = 50, .strong = true},
                           {.caption = "Address", .width = 130, .grows = true},
                           {.caption = "Description", .width = 130, .grows = true},
                           {.caption = "Miles", .kind = CellKind::Decimal, .width = 40},
                           {.caption = "Riders", .kind = CellKind::Whole, .width = 42},
                           {.caption = "On bus", .kind = CellKind::Whole, .width = 42}};
    }

    [[nodiscard]] const Report& report() const override { return report_; }
    [[nodiscard]] const Options& options() const override { return options_; }
    [[nodiscard]] const Heading& heading() const override { return heading_; }
    [[nodiscard]] std::size_t size() const override {
        return static_cast<std::size_t>(runs_) * StopsOfRun;
    }
    std::optional<Item> next() override {
        if (run_ == runs_) {
            return std::nullopt;
        }
        if (stop_ == 0) {
            ++stop_;
            return GroupHead{.title = fmt::format("{}-1, West Ridge High School", run_),
                             .note = "20 stops"};
        }
        Row row = rowOf(run_ * StopsOfRun + stop_);
        if (++stop_ > StopsOfRun) {
            stop_ = 0;
            ++run_;
        }
        return row;
    }

private:
    [[nodiscard]] Row rowOf(int number) const {
        static const std::string Places[] = {
            "at 23rd Avenue", "שדרות רוטשילד", "شارع المدرسة",
            "Łódź & <Annex>, on the far side of the O'Brien building at the end of the lane"};
        return {{stop_, base::Date::timeOfDay(5 + stop_ / 12, number % 60),
                 std::to_string(100000 + number), fmt::format("{} 65th Street", number % 9000),
                 Places[number % 11 == 0 ? number % 4 : 0], number % 37 / 10.0, number % 7,
                 number % 60}};
    }

    int runs_;
    int run_ = 0;
    int stop_ = 0;
    Report report_;
    Options options_;
    Heading heading_;
};

const Pages& laidOut() {
    static const Pages pages = [] {
        StopList list(2000);
        return layOut(list);
    }();
    return pages;
}

std::string scratch(const char* name) {
    return (std::filesystem::temp_directory_path() / name).string();
}

void firstPage(benchmark::State& state) {
    for (auto _ : state) {
        StopList list(2000);
        Layout layout(list);
        benchmark::DoNotOptimize(layout.layPage());
    }
}

void allPages(benchmark::State& state) {
    std::size_t pages = 0;
    double bytes = 0;
    for (auto _ : state) {
        StopList list(static_cast<int>(state.range(0)));
        const auto before = mallinfo2().uordblks;
        const Pages laid = layOut(list);
        bytes = static_cast<double>(mallinfo2().uordblks - before);
        pages = laid.pages.size();
    }
    const auto count = static_cast<double>(pages);
    state.counters["pages"] = count;
    state.counters["MB_per_1000_pages"] = bytes / count / 1000;
    state.counters["s_per_1000_pages"] = benchmark::Counter(
        count / 1000, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void search(benchmark::State& state) {
    laidOut();
    for (auto _ : state) {
        std::size_t found = 0;
        for (const Page& page : laidOut().pages) {
            for (auto at = page.text.find("רוטשילד"); at != std::string::npos;
                 at = page.text.find("רוטשילד", at + 1)) {
                ++found;
            }
        }
        benchmark::DoNotOptimize(found);
    }
}

void pdf(benchmark::State& state) {
    const std::string path = scratch("bench_reports.pdf");
    for (auto _ : state) {
        paintPdf(laidOut(), path);
    }
    state.counters["MB"] = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
    std::filesystem::remove(path);
}

QFont fontOf(const Box& box) {
    QFont font(box.face == Face::Condensed ? "Roboto Condensed" : "Roboto");
    font.setPointSizeF(box.size);
    font.setBold(box.face == Face::Bold);
    font.setItalic(box.face == Face::Italic);
    return font;
}

void toolkitPdf(benchmark::State& state) {
    const std::string path = scratch("bench_toolkit.pdf");
    for (auto _ : state) {
        QPdfWriter writer(QString::fromStdString(path));
        writer.setResolution(72);
        QPainter painter(&writer);
        for (const Page& page : laidOut().pages) {
            for (const Box& box : page.boxes) {
                const auto text = page.textOf(box);
                painter.setFont(fontOf(box));
                painter.drawText(QPointF(box.x, box.baseline),
                                 QString::fromUtf8(text.data(), static_cast<int>(text.size())));
            }
            writer.newPage();
        }
    }
    std::filesystem::remove(path);
}

void tiff(benchmark::State& state) {
    const std::string path = scratch("bench_reports.tiff");
    Pages some;
    some.size = laidOut().size;
    some.heading = laidOut().heading;
    some.pages.assign(laidOut().pages.begin(), laidOut().pages.begin() + 50);
    for (auto _ : state) {
        paintTiff(some, path);
    }
    state.counters["KB_a_page"] = static_cast<double>(std::filesystem::file_size(path)) / 50e3;
    std::filesystem::remove(path);
}

}  // namespace

BENCHMARK(firstPage)->Unit(benchmark::kMillisecond);
BENCHMARK(allPages)->Arg(500)->Arg(2000)->Arg(8000)->Unit(benchmark::kMillisecond);
BENCHMARK(search)->Unit(benchmark::kMillisecond);
BENCHMARK(pdf)->Unit(benchmark::kMillisecond);
BENCHMARK(toolkitPdf)->Unit(benchmark::kMillisecond);
BENCHMARK(tiff)->Unit(benchmark::kMillisecond);

int main(int count, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(count, arguments);
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
