#include <iostream>

#include "tools/district/commandline.h"

int main(int count, char** words) {
    std::ios::sync_with_stdio(false);
    const auto status =
        tools::district::runCommand({words + 1, words + count}, std::cin, std::cout, std::cerr);
    return static_cast<int>(status);
}
