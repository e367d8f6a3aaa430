#include "startup/desktop/desktopprogram.h"
#include "startup/main/RunStartup.h"

int main(int argc, char** argv) {
    const std::string commandLine = startup::commandLineOf(argc, argv);
    return startup::runOnDesktop(argc, argv, "tarn", [&] { startup::Main(commandLine); });
}
