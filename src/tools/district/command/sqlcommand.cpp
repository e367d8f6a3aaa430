#include "tools/district/command/sqlcommand.h"

#include <filesystem>
#include <istream>
#include <ostream>

#include <fmt/format.h>

#include "data/schema/schema.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "platform/base/text.h"
#include "platform/jet/translate.h"
#include "platform/store/base/location.h"
#include "tools/district/base/folders.h"
#include "tools/district/command/fittingfile.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

std::string escaped(std::string_view text) {
    constexpr std::string_view Special = "\t\n\r\\";
    constexpr std::string_view Letters = "tnr\\";
    std::string cell;
    for (const char c : text) {
        const auto which = Special.find(c);
        cell +=
            which == std::string_view::npos ? std::string(1, c) : std::string{'\\', Letters[which]};
    }
    return cell;
}

void open(ado::Connection& connection, const std::string& file) {
    openFitting(connection, file);
    if (store::isServer(file)) {
        if (store::serverPathOf(file).file == data::fileName(data::DatabaseFile::Routing)) {
            connection.link(store::pathBeside(file, data::fileName(data::DatabaseFile::Trip)));
        }
        return;
    }
    const fs::path path = fs::absolute(file);
    if (path.filename() == data::fileName(data::DatabaseFile::Routing)) {
        const Folders folders{path.parent_path().parent_path()};
        const fs::path trip = folders.database(data::DatabaseFile::Trip);
        if (fs::exists(trip)) {
            connection.link(trip.string());
        }
    }
}

void printRows(ado::Connection& connection, const std::string& statement, std::ostream& out) {
    ado::Recordset rows(statement, connection, ado::CursorType::ForwardOnly,
                        ado::LockType::ReadOnly);
    for (int i = 0; i < rows.fieldCount(); ++i) {
        out << (i == 0 ? "" : "\t") << escaped(rows.Fields(i).Name());
    }
    out << '\n';
    for (; !rows.Eof(); rows.MoveNext()) {
        for (int i = 0; i < rows.fieldCount(); ++i) {
            const base::Value value = rows.Fields(i).Value();
            out << (i == 0 ? "" : "\t") << (value.isNull() ? "" : escaped(value.asText()));
        }
        out << '\n';
    }
}

QJsonValue jsonOf(const base::Value& value) {
    return value.isNull()      ? QJsonValue()
           : value.isYesNo()   ? QJsonValue(value.asBoolean())
           : value.isInteger() ? QJsonValue(static_cast<qint64>(value.asInteger()))
           : value.isDouble()  ? QJsonValue(value.asNumber())
           : value.isDate()    ? QJsonValue(toJson(value.asDate().iso()))
                               : QJsonValue(toJson(value.heldText()));
}

QJsonObject rowsOf(ado::Connection& connection, const std::string& statement) {
    ado::Recordset rows(statement, connection, ado::CursorType::ForwardOnly,
                        ado::LockType::ReadOnly);
    QJsonArray columns;
    for (int i = 0; i < rows.fieldCount(); ++i) {
        columns.append(toJson(rows.Fields(i).Name()));
    }
    QJsonArray all;
    for (; !rows.Eof(); rows.MoveNext()) {
        QJsonArray row;
        for (int i = 0; i < rows.fieldCount(); ++i) {
            row.append(jsonOf(rows.Fields(i).Value()));
        }
        all.append(row);
    }
    return {{"columns", columns}, {"rows", all}};
}

/// Runs or checks one statement after the other, whatever they come from.
class StatementRunner {
public:
    StatementRunner(const SqlOptions& options, std::ostream& out, std::ostream& complaints)
        : onlyCheck_(options.onlyCheck),
          result_(options.result),
          out_(out),
          complaints_(complaints) {
        open(connection_, options.file);
    }

    /// `where` names the line in front of messages. Returns whether the statement was understood
    /// and went well.
    bool take(const std::string& statement, const std::string& where) {
        return onlyCheck_ ? check(statement, where) : run(statement, where);
    }

private:
    bool check(const std::string& statement, const std::string& where) {
        try {
            static_cast<void>(jet::translate(statement, connection_.catalog()));
            tell({{"understood", true}});
        } catch (const jet::SqlError& error) {
            out_ << where << "not understood"
                 << (error.position() > 0 ? fmt::format(" at position {}", error.position()) : "")
                 << ": " << error.what() << '\n';
            tell({{"understood", false}, {"position", static_cast<qint64>(error.position())}});
            return false;
        }
        out_ << where << "understood\n";
        return true;
    }

    bool run(const std::string& statement, const std::string& where) {
        try {
            const auto kind = jet::translate(statement, connection_.catalog()).kind;
            out_ << (first_ ? "" : "\n");
            first_ = false;
            if (kind == jet::StatementKind::Select) {
                select(statement);
            } else {
                const auto changed = connection_.Execute(statement);
                tell({{"changed", static_cast<qint64>(changed)}});
                out_ << fmt::format("{} {} changed\n", changed, changed == 1 ? "row" : "rows");
            }
        } catch (const base::RunTimeError& error) {
            out_.flush();
            complaints_ << where << error.what() << '\n';
            return false;
        }
        return true;
    }

    void select(const std::string& statement) {
        if (result_ == nullptr) {
            printRows(connection_, statement, out_);
        } else {
            tell(rowsOf(connection_, statement));
        }
    }

    void tell(const QJsonObject& outcome) {
        if (result_ != nullptr) {
            QJsonArray all = result_->value("statements").toArray();
            all.append(outcome);
            result_->insert("statements", all);
        }
    }

    ado::Connection connection_;
    bool onlyCheck_;
    Result result_;
    std::ostream& out_;
    std::ostream& complaints_;
    bool first_ = true;
};

}  // namespace

bool runSql(const SqlOptions& options, std::istream& in, std::ostream& out,
            std::ostream& complaints) {
    StatementRunner runner(options, out, complaints);
    if (options.statement) {
        return runner.take(*options.statement, "");
    }
    bool well = true;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        const std::string_view text = base::trim(line);
        if (text.empty() || text.starts_with("--")) {
            continue;
        }
        well = runner.take(line, fmt::format("line {}: ", number)) && well;
        if (!well && !options.onlyCheck) {
            return false;
        }
    }
    return well;
}

}  // namespace tools::district
