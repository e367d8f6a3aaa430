#include "platform/ado/recordset.h"

#include <deque>
#include <optional>
#include <vector>

#include <fmt/format.h>

#include "platform/ado/cells.h"
#include "platform/ado/cursor.h"
#include "platform/ado/rowedit.h"
#include "platform/ado/session.h"
#include "platform/base/error.h"

namespace ado {

namespace {

[[noreturn]] void raiseNoRecord() {
    throw base::RunTimeError(errors::NoCurrentRecord, "There is no current record.");
}

BoundStatement prepareSelect(Session& session, std::string_view source) {
    BoundStatement bound = session.prepareRead(source);
    if (bound.plan->translation().kind != jet::StatementKind::Select) {
        throw base::RunTimeError(errors::SelectNotExecutable,
                                 "Only a SELECT statement can be opened as a recordset.");
    }
    return bound;
}

}  // namespace

/// An open recordset.
struct Recordset::State_ final : OpenRecordset {
    State_(Recordset& owner, std::shared_ptr<Session> openSession, std::string_view text,
           CursorType type, LockType locking)
        : recordset(owner),
          session(std::move(openSession)),
          source(text),
          cursorType(type),
          lock(locking) {
        start();
        const auto& columns = cursor->plan().translation().columns;
        fields.reserve(columns.size());
        kinds.reserve(columns.size());
        for (const jet::OutputColumn& column : columns) {
            fields.push_back(Field(&owner, static_cast<int>(fields.size())));
            kinds.push_back(column.kind);
        }
        session->add(this);
    }
    ~State_() override { session->remove(this); }

    void start() {
        BoundStatement bound = prepareSelect(*session, source);
        edit.reset();
        cursor.reset();
        cursor.emplace(std::move(bound), goesBack());
        edit.emplace(*session, *cursor, source);
    }

    void drain() override { cursor->drain(); }
    void connectionClosed() override { recordset.state_.reset(); }

    void requireRow() const {
        if (!edit->isAdding() && !cursor->isOnRow()) {
            raiseNoRecord();
        }
    }
    void requireWritable() const {
        if (lock == LockType::ReadOnly) {
            throw base::RunTimeError(errors::NotUpdatable, "The recordset was opened read-only.");
        }
    }
    /// A change that was not written yet is written before the record is left.
    void leaveRow() {
        if (edit->isEditing()) {
            edit->write();
        }
        converted.clear();
    }
    [[nodiscard]] bool goesBack() const { return cursorType != CursorType::ForwardOnly; }

    [[nodiscard]] store::ColumnKind kind(int index) const {
        return kinds[static_cast<std::size_t>(index)];
    }
    [[nodiscard]] store::Cell cell(int index) const {
        const store::Statement* row = untouchedRow();
        if (row != nullptr) {
            return row->cell(index);
        }
        requireRow();
        return edit->isActive() ? edit->cell(index) : cursor->cell(index);
    }

    /// The statement itself where nothing of the current row differs from it.
    [[nodiscard]] const store::Statement* untouchedRow() const {
        return edit->isActive() ? nullptr : cursor->liveRow();
    }

    Recordset& recordset;
    std::shared_ptr<Session> session;
    std::string source;
    CursorType cursorType;
    LockType lock;
    std::optional<Cursor> cursor;
    std::optional<RowEdit> edit;
    std::vector<Field> fields;
    std::vector<store::ColumnKind> kinds;
    std::deque<std::string> converted;  ///< texts of the current row that were not stored as text
};

Recordset::Recordset() = default;

Recordset::Recordset(std::string_view source, Connection& connection, CursorType cursor,
                     LockType lock) {
    Open(source, connection, cursor, lock);
}

Recordset::~Recordset() = default;

Recordset::State_& Recordset::open() const {
    if (state_ == nullptr) {
        throw base::RunTimeError(errors::ObjectClosed, "The recordset is closed.");
    }
    return *state_;
}

void Recordset::Open(std::string_view source, Connection& connection, CursorType cursor,
                     LockType lock) {
    if (state_ != nullptr) {
        throw base::RunTimeError(errors::ObjectOpen, "The recordset is open already.");
    }
    if (connection.session() == nullptr) {
        throw base::RunTimeError(errors::ObjectClosed, "The connection is closed.");
    }
    state_ = raisedBy(source, [&] {
        return std::make_unique<State_>(*this, connection.session(), source, cursor, lock);
    });
}

void Recordset::Close() {
    static_cast<void>(open());
    state_.reset();
}

ObjectState Recordset::State() const {
    return state_ == nullptr ? ObjectState::Closed : ObjectState::Open;
}

bool Recordset::Eof() const {
    const State_& state = open();
    return !state.edit->isAdding() && state.cursor->isEof();
}

bool Recordset::Bof() const {
    const State_& state = open();
    return !state.edit->isAdding() && state.cursor->isBof();
}

void Recordset::MoveNext() {
    State_& state = open();
    raisedBy(state.source, [&] {
        state.leaveRow();
        if (state.cursor->isEof()) {
            raiseNoRecord();
        }
        state.cursor->moveNext();
    });
}

void Recordset::MovePrevious() {
    State_& state = open();
    if (!state.goesBack()) {
        throw base::RunTimeError(errors::NotInThisContext,
                                 "A forward-only recordset cannot go back.");
    }
    state.leaveRow();
    if (state.cursor->isBof()) {
        raiseNoRecord();
    }
    state.cursor->movePrevious();
}

void Recordset::MoveFirst() {
    State_& state = open();
    state.leaveRow();
    if (state.cursor->isEmpty()) {
        raiseNoRecord();
    }
    if (state.goesBack()) {
        state.cursor->moveFirst();
    } else if (!state.cursor->isAtStart()) {
        try {
            state.start();
        } catch (...) {
            state_.reset();
            throw;
        }
    }
}

void Recordset::MoveLast() {
    State_& state = open();
    if (!state.goesBack()) {
        throw base::RunTimeError(errors::NotInThisContext,
                                 "A forward-only recordset cannot go to its last record.");
    }
    state.leaveRow();
    if (state.cursor->isEmpty()) {
        raiseNoRecord();
    }
    state.cursor->moveLast();
}

std::int64_t Recordset::RecordCount() {
    State_& state = open();
    return state.goesBack() ? state.cursor->count() : -1;
}

int Recordset::fieldCount() const { return static_cast<int>(open().fields.size()); }

Field& Recordset::Fields(int index) {
    State_& state = open();
    if (index < 0 || index >= static_cast<int>(state.fields.size())) {
        throw base::RunTimeError(errors::ItemNotFound,
                                 fmt::format("The recordset has no column number {}.", index));
    }
    return state.fields[static_cast<std::size_t>(index)];
}

Field& Recordset::Fields(std::string_view name) {
    State_& state = open();
    const int index = state.cursor->plan().find(name);
    if (index == Plan::Ambiguous) {
        throw base::RunTimeError(
            errors::ItemNotFound,
            fmt::format("The recordset has more than one column {}; name its table, too.", name));
    }
    if (index == Plan::Unknown) {
        throw base::RunTimeError(errors::ItemNotFound,
                                 fmt::format("The recordset has no column {}.", name));
    }
    return state.fields[static_cast<std::size_t>(index)];
}

void Recordset::AddNew() {
    State_& state = open();
    state.requireWritable();
    state.leaveRow();
    state.edit->beginAdding();
}

void Recordset::Update() {
    State_& state = open();
    if (!state.edit->isEditing()) {
        return;
    }
    raisedBy(state.source, [&] { state.edit->write(); });
    state.converted.clear();
}

void Recordset::CancelUpdate() {
    State_& state = open();
    state.edit->cancel();
    state.converted.clear();
}

void Recordset::Delete() {
    State_& state = open();
    state.requireWritable();
    if (state.edit->isAdding() || !state.cursor->isOnRow()) {
        raiseNoRecord();
    }
    state.edit->cancel();
    raisedBy(state.source, [&] { state.edit->remove(); });
}

void Recordset::Resync() {
    State_& state = open();
    if (!state.cursor->isOnRow()) {
        raiseNoRecord();
    }
    CancelUpdate();
    state.edit->readAgain();
}

const std::string& Field::Name() const { return owner_->open().cursor->plan().nameOf(index_); }

base::Value Field::Value() const {
    const Recordset::State_& state = owner_->open();
    return valueOf(state.kind(index_), state.cell(index_));
}

void Field::Value(const base::Value& value) {
    Recordset::State_& state = owner_->open();
    state.requireWritable();
    state.requireRow();
    state.edit->set(index_, value);
}

bool Field::isNull() const { return owner_->open().cell(index_).type == store::CellType::Null; }

std::string_view Field::textView() const {
    Recordset::State_& state = owner_->open();
    const store::ColumnKind kind = state.kind(index_);
    const store::Statement* row = state.untouchedRow();
    if (row != nullptr && store::isText(kind)) {
        return row->text(index_);
    }
    const store::Cell cell = state.cell(index_);
    if (cell.type == store::CellType::Null || cell.type == store::CellType::Text) {
        return cell.text;
    }
    return state.converted.emplace_back(valueOf(kind, cell).asText());
}

}  // namespace ado
