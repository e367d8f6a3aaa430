#include "tools/district/import/apply/rowspool.h"

#include <algorithm>
#include <limits>

#include "tools/district/base/refuse.h"

namespace tools::district {

namespace {

constexpr std::int64_t FirstMadeUp = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t LastMadeUp = FirstMadeUp / 2;

enum class Held : std::uint8_t { Null, Yes, No, Integer, Double, Date, Text };

[[noreturn]] void refuseFolder() {
    refuse(
        "There is no room for the import's work file in the temporary folder. Make room there, "
        "or let TMPDIR name another folder; nothing was written.");
}

}  // namespace

RowSpool::RowSpool() : file_(std::tmpfile()) {
    if (file_ == nullptr) {
        refuseFolder();
    }
}

std::int64_t RowSpool::add(const StoredTable& table, std::span<const store::Column* const> columns,
                           std::span<const base::Value> values) {
    put(Kind::Add, table, 0, columns, values);
    return FirstMadeUp + added_++;
}

void RowSpool::change(const StoredTable& table, std::int64_t row,
                      std::span<const store::Column* const> columns,
                      std::span<const base::Value> values) {
    put(Kind::Change, table, row, columns, values);
}

void RowSpool::remove(const StoredTable& table, std::int64_t row) {
    put(Kind::Remove, table, row, {}, {});
}

void RowSpool::put(Kind kind, const StoredTable& table, std::int64_t row,
                   std::span<const store::Column* const> columns,
                   std::span<const base::Value> values) {
    writePlain(shapeNumber(kind, table, columns));
    if (kind != Kind::Add) {
        writePlain(row);
    }
    for (const base::Value& value : values) {
        writeValue(value);
    }
    ++size_;
}

std::uint32_t RowSpool::shapeNumber(Kind kind, const StoredTable& table,
                                    std::span<const store::Column* const> columns) {
    const auto found = std::ranges::find_if(shapes_, [&](const Shape& shape) {
        return shape.kind == kind && shape.table == &table &&
               std::ranges::equal(shape.columns, columns);
    });
    const auto number = static_cast<std::uint32_t>(found - shapes_.begin());
    if (found == shapes_.end()) {
        shapes_.push_back({kind, &table, {columns.begin(), columns.end()}});
    }
    return number;
}

void RowSpool::writeTo(RowSink& sink, Progress& progress) {
    std::rewind(file_.get());
    numbers_.clear();
    progress.begin("Writing", size_);
    std::vector<base::Value> values;
    for (std::int64_t i = 0; i < size_; ++i) {
        const Shape& shape = shapes_[readPlain<std::uint32_t>()];
        const auto row = shape.kind == Kind::Add ? 0 : readPlain<std::int64_t>();
        values.resize(shape.columns.size());
        for (base::Value& value : values) {
            readValue(value);
        }
        switch (shape.kind) {
            case Kind::Add:
                numbers_.push_back(sink.add(*shape.table, shape.columns, values));
                break;
            case Kind::Change:
                sink.change(*shape.table, row, shape.columns, values);
                break;
            case Kind::Remove:
                sink.remove(*shape.table, row);
                break;
        }
        progress.step();
    }
}

void RowSpool::write(const void* bytes, std::size_t count) {
    if (count > 0 && std::fwrite(bytes, count, 1, file_.get()) != 1) {
        refuseFolder();
    }
}

void RowSpool::read(void* bytes, std::size_t count) {
    if (count > 0 && std::fread(bytes, count, 1, file_.get()) != 1) {
        refuse("The import's work file cannot be read; nothing was written.");
    }
}

template <class Plain>
void RowSpool::writePlain(const Plain& plain) {
    write(&plain, sizeof(plain));
}

template <class Plain>
Plain RowSpool::readPlain() {
    Plain plain{};
    read(&plain, sizeof(plain));
    return plain;
}

void RowSpool::writeValue(const base::Value& value) {
    if (value.isNull()) {
        writePlain(Held::Null);
    } else if (value.isYesNo()) {
        writePlain(value.asBoolean() ? Held::Yes : Held::No);
    } else if (value.isInteger()) {
        writePlain(Held::Integer);
        writePlain(value.asInteger());
    } else if (value.isDouble()) {
        writePlain(Held::Double);
        writePlain(value.asNumber());
    } else if (value.isDate()) {
        writePlain(Held::Date);
        writePlain(value.asDate().seconds);
    } else {
        const std::string& text = value.heldText();
        writePlain(Held::Text);
        writePlain(static_cast<std::uint32_t>(text.size()));
        write(text.data(), text.size());
    }
}

void RowSpool::readValue(base::Value& value) {
    switch (readPlain<Held>()) {
        case Held::Null:
            value = {};
            break;
        case Held::Yes:
            value = true;
            break;
        case Held::No:
            value = false;
            break;
        case Held::Integer: {
            const auto number = readPlain<std::int64_t>();
            value = number > LastMadeUp
                        ? number
                        : numbers_.at(static_cast<std::size_t>(number - FirstMadeUp));
            break;
        }
        case Held::Double:
            value = readPlain<double>();
            break;
        case Held::Date:
            value = base::Date{readPlain<std::int64_t>()};
            break;
        case Held::Text:
            text_.resize(readPlain<std::uint32_t>());
            read(text_.data(), text_.size());
            value = text_;
            break;
    }
}

}  // namespace tools::district
