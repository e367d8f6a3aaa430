#include "support/temporaryfolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <unistd.h>

namespace support {

namespace fs = std::filesystem;

namespace {

fs::path parentIn(TemporaryFolder::Place place) {
    const fs::path memory = "/dev/shm";
    return place == TemporaryFolder::Place::Memory && euidaccess(memory.c_str(), W_OK | X_OK) == 0
               ? memory
               : fs::temp_directory_path();
}

}  // namespace

TemporaryFolder::TemporaryFolder(Place place) {
    std::string pattern = (parentIn(place) / "vireo-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no temporary folder can be made: " + pattern);
    }
    path_ = pattern + "/";
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(const std::string& name, std::string_view contents) const {
    const fs::path file = path_ + name;
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << contents;
    return file.string();
}

std::string contentsOf(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace support
