#pragma once

#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>

#include <sqlite3.h>
#include <stdlib.h>

/// A folder of a test's own, gone with it.
class Scratch {
public:
    Scratch() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vireo-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no scratch folder");
        }
        folder_ = pattern;
    }
    ~Scratch() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    [[nodiscard]] std::string path(const std::string& name) const { return folder_ / name; }
    std::string write(const std::string& name, const std::string& content) const {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }

private:
    std::filesystem::path folder_;
};

/// Another program at the same file: the engine's plain interface, nothing of ours registered.
class PlainFile {
public:
    explicit PlainFile(const std::string& path) {
        if (sqlite3_open_v2(path.c_str(), &handle_, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(handle_));
        }
    }
    ~PlainFile() { sqlite3_close(handle_); }
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;

    /// Runs statements; the first cell of the last row, "NULL" for Null, empty without a row.
    std::string run(const std::string& sql) const {
        std::string cell;
        char* message = nullptr;
        const auto keep = [](void* to, int, char** cells, char**) {
            *static_cast<std::string*>(to) = cells[0] == nullptr ? "NULL" : cells[0];
            return 0;
        };
        if (sqlite3_exec(handle_, sql.c_str(), keep, &cell, &message) != SQLITE_OK) {
            const std::unique_ptr<char, void (*)(void*)> owner(message, sqlite3_free);
            throw std::runtime_error(message);
        }
        return cell;
    }

private:
    sqlite3* handle_ = nullptr;
};
