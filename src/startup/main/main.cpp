#include "platform/forms/application.h"
#include "startup/desktop/desktopprogram.h"
#include "startup/desktop/selfdescription.h"
#include "startup/main/RunStartup.h"

constexpr std::string_view Help = R"(Usage: tarn [USER]

Finds, edits, times, checks and prints the runs of a district. USER is the identifier of the one
who works; without it, or with one that the district does not know, the logon program asks.
The district is the one that VIREO_DISTRICT names, else the one of the configuration folder.

  --help     this text
  --version  the program's version

Example: VIREO_DISTRICT=~/sample tarn PLANNER)";

int main(int argc, char** argv) {
    if (startup::isAnsweredAtOnce(argc, argv, Help)) {
        return 0;
    }
    const std::string commandLine = startup::commandLineOf(argc, argv);
    return startup::runOnDesktop(argc, argv, "tarn", [&] {
        startup::Main(commandLine);
        auto& application = forms::Application::instance();
        application.whenIdle([&] { application.guarded(startup::rememberDistrict); });
    });
}
