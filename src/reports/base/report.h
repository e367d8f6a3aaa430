#pragma once

#include <string>
#include <vector>

/// What a report is, as plain data. Preparation fills its work table, a Content reads the rows from
/// there, pages and files are made from them.
namespace reports {

/// How a column's values are written, aligned and added up, and what a workbook takes them for.
/// Null is nothing in each of them.
enum class CellKind {
    Text,   ///< as it is, from the start of the line in its own direction; wrapped where it is long
    Whole,  ///< a whole number, thousands apart: "3,409"
    Decimal,   ///< one decimal: "118.1"
    Money,     ///< two decimals: "1,204.50"
    Time,      ///< a time of day to the minute: "5:31 AM"
    Date,      ///< "11/21/2026"
    DateTime,  ///< "11/21/2026 5:31 AM"
    Days,      ///< five letters, a dot for a day without service: "MT.TF"
    Load       ///< riders over seats in percent: a bar with a tick at 100, bold beyond it
};

/// What stands below a column at the end of a group and of the report.
enum class Total { None, Sum, Least, Greatest, Ratio };

struct Column {
    std::string field = {};    ///< of the work table
    std::string caption = {};  ///< "At School"
    CellKind kind = CellKind::Text;
    double width = 0;     ///< points on a page; what is left over goes to the columns that may grow
    bool grows = false;   ///< takes a share of what is left over, and gives where it is short
    bool strong = false;  ///< what people call out: bold
    bool condensed = false;     ///< short of room: names
    std::string unbroken = {};  ///< a word that stays on one line while the type can get smaller
    Total total = Total::None;
    std::string ratioOf = {},
                ratioTo = {};  ///< the columns, by field, whose sums a Ratio divides, in percent
};

/// Rows that belong together: under a head of their own, with their totals behind them.
struct Group {
    std::string field = {};  ///< a new value begins a new group
    std::string title = {};  ///< the field that stands in the head
    std::string note = {};   ///< what the head counts: "run" gives "9 runs"; empty counts nothing
    bool totals = true;
};

/// Whether the pages of a report show children.
enum class Confidential { Never, WithNames, Always };

enum class Form {
    List,  ///< columns, groups and totals
    Sheet  ///< one sheet a run, for its driver
};

/// Where a new page may be asked for.
enum class PageBreak { None, Run, Route, School };

struct Report {
    std::string id = {};     ///< what scripts and settings call it: "run-list"
    std::string title = {};  ///< "Run list"
    /// One line for who chooses: "Compare the runs of a school: times, load, …".
    std::string purpose = {};
    Form form = Form::List;
    std::vector<Column> columns = {};
    std::vector<Group> groups = {};  ///< outermost first
    std::vector<PageBreak> breaks = {PageBreak::None};
    bool landscape = false;
    Confidential confidential = Confidential::Never;
    bool mayName = false;   ///< can be had with students' names
    bool mayMap = false;    ///< can be had with a small map of each run
    std::string foot = {};  ///< what holds for every row, said once on each page
};

enum class Paper { Letter, A4 };

/// What the planner chose for one making of a report.
struct Options {
    Paper paper = Paper::Letter;
    bool landscape = false;
    PageBreak breaks = PageBreak::None;
    bool names = false;
    bool maps = false;
};

/// What stands at the head and foot of every page, made when the report is.
struct Heading {
    std::string title = {};      ///< "Run list"
    std::string selection = {};  ///< in words: "Active morning runs, by school and start time"
    std::string district = {};   ///< "Four Towns Unified School District"
    std::string printed = {};    ///< "Nov 21, 2026 9:41 AM"
    std::string user = {};       ///< "PLANNER"
    std::string foot = {};
    bool confidential = false;
};

}  // namespace reports
