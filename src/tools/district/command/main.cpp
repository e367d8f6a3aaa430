#include <iostream>

#include "tools/district/command/commandline.h"

int main(int count, char** words) {
    using tools::district::ExitStatus;
    std::ios::sync_with_stdio(false);
    auto status =
        tools::district::runCommand({words + 1, words + count}, std::cin, std::cout, std::cerr);
    if (!std::cout.flush()) {
        std::cerr << "The output cannot be written.\n";
        status = ExitStatus::Failed;
    }
    return static_cast<int>(status);
}
