// A list of runs as large as a big district's: 20,000 rows of 19 columns.

#include <QApplication>
#include <numeric>

#include <benchmark/benchmark.h>

#include "platform/controls/multicolumnlist.h"

namespace {

using controls::MultiColumnList;
using table::CellKind;
using table::TextTable;

constexpr int Rows = 20000;
constexpr std::size_t Columns = 19;

CellKind kindOf(std::size_t column) {
    if (column >= 13) {
        return CellKind::Number;
    }
    return column >= 2 && column < 5 ? CellKind::Time : CellKind::Text;
}

TextTable runs() {
    TextTable table;
    for (std::size_t column = 0; column < Columns; ++column) {
        table.columns.push_back({"Column " + std::to_string(column), 1000, kindOf(column)});
    }
    for (int i = 0; i < Rows; ++i) {
        const std::size_t row = table.addRow();
        for (std::size_t column = 0; column < Columns; ++column) {
            if (kindOf(column) == CellKind::Number) {
                table.set(row, column, i * 0.25);
            } else if (kindOf(column) == CellKind::Time) {
                table.set(row, column, base::Date::timeOfDay(i % 24, i % 60));
            } else {
                table.setText(row, column, "Text " + std::to_string(i * 7 % Rows));
            }
        }
    }
    return table;
}

void fillTable(benchmark::State& state) {
    std::size_t bytes = 0;
    for (auto _ : state) {
        bytes = runs().bytes();
    }
    state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK(fillTable)->Unit(benchmark::kMillisecond);

class ShownList : public benchmark::Fixture {
public:
    void SetUp(const benchmark::State&) override {
        list = std::make_unique<MultiColumnList>();
        list->resize(1400, 800);
        list->setTable(runs());
        list->show();
        QCoreApplication::processEvents();
    }
    void TearDown(const benchmark::State&) override { list.reset(); }

    std::unique_ptr<MultiColumnList> list;
};

BENCHMARK_DEFINE_F(ShownList, show)(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        TextTable table = runs();
        state.ResumeTiming();
        list->setTable(std::move(table));
        QCoreApplication::processEvents();
    }
}
BENCHMARK_REGISTER_F(ShownList, show)->Unit(benchmark::kMillisecond);

BENCHMARK_DEFINE_F(ShownList, selectAll)(benchmark::State& state) {
    for (auto _ : state) {
        list->selectAllRows();
        QCoreApplication::processEvents();
    }
}
BENCHMARK_REGISTER_F(ShownList, selectAll)->Unit(benchmark::kMillisecond);

BENCHMARK_DEFINE_F(ShownList, sortWithHalfOfTheRowsSelected)(benchmark::State& state) {
    std::vector<int> everyOther(Rows / 2);
    std::iota(everyOther.begin(), everyOther.end(), 0);
    for (int& row : everyOther) {
        row *= 2;
    }
    list->selectRows(everyOther);
    int column = 0;
    for (auto _ : state) {
        list->toggleSort(column);
        QCoreApplication::processEvents();
        column = column == 0 ? 13 : 0;
    }
}
BENCHMARK_REGISTER_F(ShownList, sortWithHalfOfTheRowsSelected)->Unit(benchmark::kMillisecond);

/// What a planner waits for at each letter, once the line was entered.
BENCHMARK_DEFINE_F(ShownList, filterLetterByLetter)(benchmark::State& state) {
    while (list->readForFilter()) {
    }
    const QStringList typed{"t", "te", "text 1", "text 12", "text 123", ""};
    qsizetype key = 0;
    for (auto _ : state) {
        list->setFilter(typed[key++ % typed.size()]);
        QCoreApplication::processEvents();
    }
}
BENCHMARK_REGISTER_F(ShownList, filterLetterByLetter)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
