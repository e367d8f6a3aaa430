#pragma once

#include <initializer_list>
#include <map>
#include <string>

#include <sqlite3.h>

namespace bench {

/// The statements of a validation of the measured run with all seven checks, through SQLite's own C
/// interface: each prepared once, every cell of every row read, as many warnings written, all in
/// one transaction.
class RawValidation {
public:
    RawValidation(const std::string& routing, const std::string& trip);
    ~RawValidation();
    RawValidation(const RawValidation&) = delete;
    RawValidation& operator=(const RawValidation&) = delete;

    void validate();

private:
    /// Runs a statement with these parameters and reads what it returns.
    void run(const char* sql, std::initializer_list<const char*> parameters = {});
    void write(const char* type, int warnings);
    void readNeeds();

    sqlite3* database_ = nullptr;
    std::map<const char*, sqlite3_stmt*> statements_;
};

}  // namespace bench
