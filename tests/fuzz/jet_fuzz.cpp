// Arbitrary text as a statement: it is translated or refused with an SqlError, what is translated
// is taken by the store, and statements of one shape have one translation.

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <unordered_map>

#include "data/schema/schema.h"
#include "platform/jet/functions.h"
#include "platform/jet/translate.h"
#include "platform/store/base/database.h"
#include "platform/store/open/open.h"

namespace {

/// All tables in one file, which goes as soon as it is open.
std::unique_ptr<store::Database> emptyDistrict() {
    const std::string folder = std::filesystem::temp_directory_path() / "vireo-jet-fuzz-XXXXXX";
    std::string name = folder;
    if (mkdtemp(name.data()) == nullptr) {
        std::abort();
    }
    auto database = store::createFile(name + "/fuzz.mdb");
    for (const data::DatabaseFile file : data::AllDatabaseFiles) {
        for (const store::Table& table : data::tablesOf(file)) {
            if (database->catalog().find(table.name) == nullptr) {
                database->create(table);
            }
        }
    }
    for (const jet::StoreFunction& function : jet::storeFunctions()) {
        database->registerFunction(
            {function.name, function.arguments, function.deterministic, function.call});
    }
    std::filesystem::remove_all(name);
    return database;
}

[[noreturn]] void found(const std::string& what, const std::string& sql, const std::string& text) {
    std::cerr << what << "\nstatement: " << sql << "\ntranslation: " << text << "\n";
    std::abort();
}

/// The statement with the letters and digits of its text literals changed, and so of the same shape
/// unless a text stood twice.
std::string varied(std::string sql) {
    bool inside = false;
    for (char& c : sql) {
        if (c == '\'') {
            inside = !inside;
        } else if (inside && c >= 'a' && c < 'z') {
            ++c;
        }
    }
    return sql;
}

void checkShape(const std::string& sql, const jet::Translation& translation,
                const store::Catalog& catalog) {
    const std::string other = varied(sql);
    if (other == sql) {
        return;
    }
    try {
        if (jet::shapeOf(other).key == jet::shapeOf(sql).key &&
            jet::translate(other, catalog).text != translation.text) {
            found("one shape, two translations", sql, translation.text);
        }
    } catch (const jet::SqlError&) {
        found("one of a shape is refused", other, translation.text);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto database = emptyDistrict();
    const std::string sql(reinterpret_cast<const char*>(data), size);
    jet::Translation translation;
    jet::Shape shape;
    try {
        shape = jet::shapeOf(sql);
        translation = jet::translate(sql, database->catalog());
    } catch (const jet::SqlError& error) {
        if (error.position() > size + 1) {
            found("an error beyond the statement", sql, error.what());
        }
        return 0;
    }
    checkShape(sql, translation, database->catalog());
    try {
        const auto statement = database->prepare(translation.text);
        for (std::size_t i = 0; i < translation.parameters.size(); ++i) {
            statement->bind(static_cast<int>(i),
                            jet::boundValue(translation.parameters[i], shape.literals));
        }
    } catch (const store::StoreError& error) {
        found(error.what(), sql, translation.text);
    } catch (const base::RunTimeError&) {
        // a literal that cannot become what its column holds
    }
    return 0;
}
