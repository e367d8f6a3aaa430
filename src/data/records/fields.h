#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/value.h"

/// The fields of a form that edits one record: a table says which column each of them is, in which
/// control it stands and what may be entered there. Reading, saving, the controls and what others
/// change meanwhile follow from the table.
namespace data {

enum class FieldKind {
    Key,       ///< a code; blanks around it mean nothing
    Text,      ///< stored as typed
    Choice,    ///< one of the few texts that its control offers
    Time,      ///< a time of day; a day that is entered with it is dropped
    DateTime,  ///< with its day; a time of day that is entered stays on the day it was on
    Number,
    YesNo,
};

enum class FieldUse {
    Edited,   ///< saved where it was touched; what others change is told
    Fixed,    ///< saved once, with a new record
    Watched,  ///< never saved; what others change is told
    Shown,    ///< 0 or nothing in a new record, then not saved; what others change is not told
};

struct Field;
struct Entries;

/// Why a field cannot be saved as it was entered.
struct Fault {
    std::string title;
    std::string text;
    int code = 0;  ///< where callers tell faults apart
    std::string_view column = {};
};

/// What may be entered in a field.
struct Rule {
    std::function<std::optional<Fault>(const Field& field, const Entries& entries)> check;
    int code = 0;           ///< of its faults, but those that have one of their own
    bool ofStored = false;  ///< holds for a field that was not touched, too
};

struct Field {
    std::string_view column;
    std::string_view caption = {};  ///< what planners call it
    FieldKind kind = FieldKind::Text;
    std::string_view control = {};  ///< object name in the form; "" for a field that stands in none
    std::vector<Rule> rules = {};
    FieldUse use = FieldUse::Edited;
    base::Value blank = {};  ///< what Null and a blank text stand for
};

using FieldTable = std::vector<Field>;

/// A field that is Shown; a missing number is 0.
[[nodiscard]] Field shownField(std::string_view column, FieldKind kind,
                               std::string_view control = {});

/// The field of that column, spelled as in the table; throws std::out_of_range.
[[nodiscard]] const Field& fieldOf(const FieldTable& fields, std::string_view column);

/// One value for each field of a table, which must outlive it. What is not there is Null, No for a
/// yes/no field, and the field's own `blank` where it has one.
class Record {
public:
    /// All fields blank.
    explicit Record(const FieldTable& fields);

    [[nodiscard]] const FieldTable& fields() const { return *fields_; }
    /// By column, spelled as in the table; throws std::out_of_range.
    [[nodiscard]] const base::Value& operator[](std::string_view column) const;
    /// Null is "".
    [[nodiscard]] std::string text(std::string_view column) const;
    [[nodiscard]] bool isYes(std::string_view column) const { return (*this)[column].asBoolean(); }
    /// Takes a stored value over.
    void set(std::string_view column, const base::Value& stored);
    /// Takes over what was entered: what cannot be read as its field's kind stays as the text it
    /// is, for a rule to refuse.
    void enter(std::string_view column, const base::Value& typed);

    friend bool operator==(const Record& a, const Record& b) { return a.values_ == b.values_; }

private:
    [[nodiscard]] std::size_t placeOf(std::string_view column) const;

    const FieldTable* fields_;
    std::vector<base::Value> values_;
};

/// A record in a form.
struct Entries {
    Record known;    ///< what is stored, as far as the planner was told
    Record entered;  ///< what is to be stored
    bool isNew = false;

    [[nodiscard]] bool isTouched(std::string_view column) const {
        return entered[column] != known[column];
    }
};

/// The first field that cannot be saved. Rules are asked in the order of their codes, and those of
/// one code in the order of the table.
[[nodiscard]] std::optional<Fault> findFault(const Entries& entries);

/// At most so many characters.
[[nodiscard]] Rule atMost(std::size_t characters, int code = 0);
/// A number from 0 to `most`.
[[nodiscard]] Rule upTo(double most, const std::string& title, const std::string& text,
                        int code = 0);

/// What differs between what the planner knows and what is stored now, as a planner reads it, one
/// line a field; "" where nothing does.
[[nodiscard]] std::string changesByOthers(const Entries& entries, const Record& stored);

}  // namespace data
