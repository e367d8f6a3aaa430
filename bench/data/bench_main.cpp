#include <exception>
#include <iostream>

#include <benchmark/benchmark.h>

#include "district.h"

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    try {
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
    }
    benchmark::Shutdown();
    bench::removeDistrict();
}
