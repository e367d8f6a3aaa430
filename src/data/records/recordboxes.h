#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/records/fields.h"

class QWidget;

namespace data {

/// The controls of a record's fields in a form, found by the object names of the table, and what
/// the planner has entered in them.
class RecordBoxes {
public:
    /// Throws std::logic_error for a control that the form lacks, that stands for two fields, or
    /// that cannot hold what its field is.
    RecordBoxes(QWidget& form, const FieldTable& fields);

    /// Shows a record: no field is touched or refused. A stored text that is none of its control's
    /// choices is shown as it is, in red.
    void show(const Record& stored);
    /// Shows what is stored now in the fields that were not touched.
    void refresh(const Record& stored);
    /// The same once the planner was told: what others have changed is no conflict any more.
    void takeOver(const Record& stored);
    /// Puts a value in as if it had been typed.
    void type(std::string_view column, const base::Value& value);

    /// The text in a field's box, as it is typed.
    [[nodiscard]] std::string typed(std::string_view column) const;

    /// Whether the planner has entered anything.
    [[nodiscard]] bool areTouched() const;
    /// A field that was not touched stands for what is stored, which may have more decimals. A
    /// choice that is stored in another spelling is entered as its control has it.
    [[nodiscard]] Entries entries() const;

    /// A line for each stored text that is none of its control's choices; "" for none.
    [[nodiscard]] std::string unknownChoices() const;

    /// Refuses the first field that cannot be saved and answers with its fault; no other one is
    /// refused any more.
    std::optional<Fault> refuseFault(const Entries& entries);
    /// Paints the field red until it is changed, brings it in sight with the cursor in it, and
    /// tells why.
    void refuse(const Fault& fault);
    /// Refuses a key that was typed and is not in its list, without a box; answers with the field
    /// that it stands for, null where there is nothing to refuse.
    const Field* refuseUnknownKey(const QWidget& control);
    void clearRefusals();

    /// Tells what others have stored meanwhile and shows it as the planner chooses: with what was
    /// entered on top of it, or alone. False where they go back to what they see. `what` is being
    /// edited: "run". The table has the fields ChangedBy and changeddt.
    [[nodiscard]] bool settle(const Entries& entries, const Record& stored, const char* title,
                              std::string_view what);

private:
    struct Box {
        const Field* field = nullptr;
        QWidget* control = nullptr;
        base::Value shown = {};  ///< what it held before anything was entered

        [[nodiscard]] bool isTouched() const;
    };
    [[nodiscard]] const Box& boxOf(std::string_view column) const;
    void fill(Box& box, const Record& stored);

    std::vector<Box> boxes_;
    Record known_;
};

}  // namespace data
