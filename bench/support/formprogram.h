#pragma once

#include <QCoreApplication>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include "platform/base/error.h"
#include "platform/forms/application.h"
#include "platform/forms/formregistry.h"
#include "platform/forms/look.h"
#include "startup/base/COSInfo.h"

/// What benchmark programs share that measure the real forms on a district.
namespace bench {

[[nodiscard]] inline double residentMiB() {
    constexpr double MiB = 1024.0 * 1024.0;
    std::ifstream statm("/proc/self/statm");
    double total = 0;
    double resident = 0;
    statm >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / MiB;
}

/// Lets the forms do and paint what waits.
inline void paint() {
    for (int turn = 0; turn < 5; ++turn) {
        QCoreApplication::processEvents();
    }
}

/// The main function: `registerAll(folder)` registers the benchmarks on the district that the last
/// argument or the environment variable VIREO_DISTRICT names.
template <class RegisterAll>
int measureForms(int argc, char** argv, RegisterAll registerAll) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    benchmark::Initialize(&argc, argv);
    const char* named = std::getenv("VIREO_DISTRICT");
    std::string folder = named != nullptr ? named : "";
    if (argc > 1 && argv[argc - 1][0] != '-') {
        folder = argv[--argc];
    }
    if (folder.empty()) {
        std::cerr << "Name a district's folder as the last argument or in VIREO_DISTRICT.\n";
        return 1;
    }
    forms::Application application(argc, argv);
    forms::applyLook(application, forms::Scheme::Light);
    try {
        startup::COSInfo::useFolder(folder + "/vireo");
        registerAll(folder);
        benchmark::RunSpecifiedBenchmarks();
        forms::FormRegistry::instance().destroyAll();
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    } catch (const base::EndProgram&) {
        std::cerr << "The program ended itself.\n";
    }
    return 1;
}

}  // namespace bench
