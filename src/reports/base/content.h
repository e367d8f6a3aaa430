#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/base/notcopied.h"
#include "platform/base/value.h"
#include "reports/base/picture.h"
#include "reports/base/report.h"

namespace reports {

// ---- What a list consists of, in the order in which it is read.

struct GroupHead {
    std::size_t level = 0;   ///< of Report::groups, 0 is the outermost
    std::string title = {};  ///< "West Ridge High School"
    std::string note = {};   ///< "9 runs"
    bool newPage = false;    ///< the planner asked for a page of its own
};

/// As many cells as the report has columns.
struct Row {
    std::vector<base::Value> cells = {};
};

/// Text below the last row, over the whole width: what a warning says, a comment.
struct Remark {
    std::string text = {};
};

struct Totals {
    std::optional<std::size_t> level = {};  ///< of the group that ends; none: of the whole report
    std::string title = {};  ///< "West Ridge High School, total", "All schools, 59 runs"
    std::vector<base::Value> cells = {};  ///< Null where a column has no total
};

// ---- What a sheet for a driver consists of.

/// A label above a value: "BELL", "6:40 AM".
struct Fact {
    std::string label = {};
    std::string value = {};
};

/// Begins a sheet, always on a new page.
struct SheetHead {
    std::string plate = {};     ///< "107-1"
    std::string title = {};     ///< the school
    std::string subtitle = {};  ///< "Morning to school · Monday to Friday"
    std::string right = {};     ///< "Bus 107"
    std::string rightSub = {};  ///< "Route 107"
    std::vector<Fact> facts = {};
};

/// A stop, the school where the way ends, or an end of an empty leg.
struct SheetStop {
    enum class Kind { Stop, School, Empty };
    Kind kind = Kind::Stop;
    int number = 0;                    ///< 1-based on the way line; 0 for what has none
    base::Value time = {};             ///< of day, or Null
    std::string place = {};            ///< "2380 65th Street"; of an empty leg the whole sentence
    std::string corner = {};           ///< "at 23rd Avenue", a school's address
    bool leftSide = false;             ///< the exception that is marked
    std::optional<int> students = {};  ///< that get on (+) or off (-)
    std::optional<int> onBus = {};     ///< afterwards
    base::Value miles = {};            ///< of an empty leg
    std::string id = {};               ///< "100170", for the radio
    std::vector<std::string> names = {};  ///< "Garza, Ann", where the planner wanted them
    std::string note = {};                ///< of the stop
};

/// A line of the directions to the next stop.
struct SheetWay {
    enum class Sign { None, Straight, Left, Right, Back, Caution };
    struct Piece {
        std::string text = {};
        bool strong = false;  ///< the street's name
    };
    Sign sign = Sign::None;
    std::vector<Piece> pieces = {};
    base::Value miles = {};
};

/// A line below the last stop: what comes next, what holds for the sheet.
struct SheetRemark {
    std::vector<SheetWay::Piece> pieces = {};
    bool quiet = false;
};

/// A small map of the sheet's run, behind its last line.
struct SheetMap {
    /// Null where there is nothing to draw. Looks for it when it is called, which is not done for a
    /// file without pictures; raises what the district's connection raises.
    std::function<std::shared_ptr<const Drawable>()> find = {};
};

using Item = std::variant<GroupHead, Row, Remark, Totals, SheetHead, SheetStop, SheetWay,
                          SheetRemark, SheetMap>;

/// A prepared report, read once from its beginning to its end. It holds no more than the item that
/// is read, and reads nothing but the work tables.
class Content : private base::NotCopied {
public:
    virtual ~Content() = default;

    [[nodiscard]] virtual const Report& report() const = 0;
    [[nodiscard]] virtual const Options& options() const = 0;
    [[nodiscard]] virtual const Heading& heading() const = 0;
    /// The rows in all, for progress.
    [[nodiscard]] virtual std::size_t size() const = 0;
    /// The next item; none at the end.
    virtual std::optional<Item> next() = 0;
};

/// Asked after each page or some hundred rows: how much of the whole is done, from 0 to 1. False
/// stops the work, which then leaves nothing behind.
using KeepGoing = std::function<bool(double done)>;

/// A value as a reader sees it, the same on pages and in every file.
[[nodiscard]] std::string cellText(CellKind kind, const base::Value& value);

}  // namespace reports
