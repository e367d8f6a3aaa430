#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <utility>

#include <fmt/format.h>
#include <xlsxwriter.h>

#include "platform/base/error.h"
#include "platform/base/lookup.h"
#include "platform/base/text.h"
#include "reports/formats/flatrows.h"
#include "reports/formats/texts.h"
#include "reports/formats/wholeworkbook.h"

namespace reports {

namespace {

constexpr lxw_row_t HeadRow = 2;  ///< below the title and what is said of the whole
constexpr std::size_t LongestText = 32767;
constexpr std::size_t LongestHeader = 120;
constexpr std::size_t LongestSheetName = 31;
constexpr std::size_t WidestColumn = 60;
constexpr std::uint8_t LetterPaper = 1;
constexpr std::uint8_t A4Paper = 9;

/// The function of a partial sum that a filter leaves out of account, too.
enum class Partial { Greatest = 104, Least = 105, Sum = 109 };

const char* numberFormatOf(CellKind kind) {
    static constexpr std::pair<CellKind, const char*> Codes[] = {
        {CellKind::Whole, "#,##0"},
        {CellKind::Load, "#,##0"},
        {CellKind::Decimal, "#,##0.00"},
        {CellKind::Money, "#,##0.00"},
        {CellKind::Time, "hh:mm AM/PM"},
        {CellKind::Date, "m/d/yyyy"},
        {CellKind::DateTime, "m/d/yyyy h:mm AM/PM"}};
    return base::lookUp(Codes, kind, nullptr);
}

/// Times and dates are days in a workbook.
double numberOf(CellKind kind, const base::Value& value) {
    constexpr auto Day = static_cast<double>(base::Date::SecondsPerDay);
    switch (kind) {
        case CellKind::Time:
            return static_cast<double>(value.asDate().timeValue().seconds) / Day;
        case CellKind::Date:
            return static_cast<double>(value.asDate().dateValue().seconds) / Day;
        case CellKind::DateTime:
            return static_cast<double>(value.asDate().seconds) / Day;
        default:
            return value.asNumber();
    }
}

/// What the head and foot of a sheet's pages take as a text.
std::string headerText(std::string_view text) {
    std::string result;
    for (const char c : base::firstCharacters(text, LongestHeader)) {
        result += c == '&' ? "&&" : std::string(1, c == '\n' ? ' ' : c);
    }
    return result;
}

std::string sheetName(std::string_view title) {
    std::string name(base::firstCharacters(plain(title), LongestSheetName));
    std::ranges::replace_if(
        name,
        [](char c) { return std::string_view("[]:*?/\\\n'").find(c) != std::string_view::npos; },
        ' ');
    return base::trim(name).empty() ? "Report" : std::string(base::trim(name));
}

void check(lxw_error error, const std::string& path) {
    if (error != LXW_NO_ERROR) {
        throw base::RunTimeError(
            base::errors::PathFileAccess,
            fmt::format("Path/File access error: {}: {}", path, lxw_strerror(error)));
    }
}

/// A sheet that grows downwards.
class Sheet {
public:
    Sheet(lxw_worksheet* sheet, std::string file) : sheet_(sheet), file_(std::move(file)) {}

    [[nodiscard]] lxw_worksheet* get() const { return sheet_; }
    [[nodiscard]] lxw_row_t row() const { return row_; }
    void nextRow() { ++row_; }

    void text(std::size_t column, std::string_view text, lxw_format* format) const {
        const std::string whole(base::firstCharacters(text, LongestText));
        check(worksheet_write_string(sheet_, row_, at(column), whole.c_str(), format), file_);
    }
    void number(std::size_t column, double number, lxw_format* format) const {
        check(worksheet_write_number(sheet_, row_, at(column), number, format), file_);
    }
    void formula(std::size_t column, const std::string& formula, double result,
                 lxw_format* format) const {
        check(
            worksheet_write_formula_num(sheet_, row_, at(column), formula.c_str(), format, result),
            file_);
    }
    void cell(std::size_t column, CellKind kind, const base::Value& value,
              lxw_format* format) const {
        if (value.isNull()) {
            check(worksheet_write_blank(sheet_, row_, at(column), format), file_);
        } else if (numberFormatOf(kind) == nullptr) {
            text(column, plainCell(kind, value), format);
        } else {
            number(column, numberOf(kind, value), format);
        }
    }

private:
    static lxw_col_t at(std::size_t column) { return static_cast<lxw_col_t>(column); }

    lxw_worksheet* sheet_;
    std::string file_;
    lxw_row_t row_ = 0;
};

class Excel : public Writer {
public:
    Excel(const KnownContent& content, files::Draft& draft)
        : report_(content.report()),
          options_(content.options()),
          heading_(content.heading()),
          file_(draft.path()),
          rows_(content, [this](const auto& cells) { write(cells); }) {
        lxw_workbook_options options{};
        options.constant_memory = LXW_TRUE;
        // Where the disk is too full for its rows it is too full for the workbook, which is told.
        std::string folder = std::filesystem::absolute(file_).parent_path().string();
        options.tmpdir = folder.data();
        book_ = workbook_new_opt(file_.c_str(), &options);
        if (book_ == nullptr) {
            base::raise(base::errors::OutOfMemory);
        }
        describe();
        for (const Column& column : rows_.columns()) {
            formats_.push_back(formatOf(column, false));
            totalFormats_.push_back(formatOf(column, true));
        }
        widths_ = widthsOf(content);
        data_.emplace(newSheet(report_.title));
        data_->nextRow();
    }
    ~Excel() override {
        if (book_ == nullptr) {
            return;
        }
        // Without writing what was given up. The library leaves the files of its rows open then.
        std::vector<std::FILE*> open;
        for (const auto& sheet : {data_, totals_}) {
            if (sheet) {
                open.push_back(sheet->get()->optimize_tmpfile);
            }
        }
        lxw_workbook_free(book_);
        for (std::FILE* file : open) {
            std::fclose(file);
        }
    }

    void take(const Item& item) override {
        rows_.take(item);
        if (const auto* totals = std::get_if<Totals>(&item)) {
            totals->level ? writeGroupTotals(*totals) : writeTotals(*totals);
        }
    }

    void finish() override {
        rows_.finish();
        endRows();
        const lxw_row_t last = std::max(data_->row(), HeadRow + 1) - 1;
        worksheet_print_area(data_->get(), 0, 0, last, lastColumn());
    }

    void close() override {
        check(workbook_close(std::exchange(book_, nullptr)), file_);
        check(isWholeWorkbook(file_) ? LXW_NO_ERROR : LXW_ERROR_ZIP_CLOSE, file_);
    }

private:
    void describe() {
        std::string title = plain(heading_.title);
        std::string subject = plain(heading_.selection);
        std::string author = plain(heading_.user);
        std::string company = plain(heading_.district);
        std::string comments{heading_.confidential ? ConfidentialText : ""};
        lxw_doc_properties properties{};
        properties.title = title.data();
        properties.subject = subject.data();
        properties.author = author.data();
        properties.company = company.data();
        properties.comments = comments.data();
        workbook_set_properties(book_, &properties);
        bold_ = workbook_add_format(book_);
        format_set_bold(bold_);
        title_ = workbook_add_format(book_);
        format_set_bold(title_);
        format_set_font_size(title_, 16);
    }

    lxw_format* formatOf(const Column& column, bool isTotal) {
        lxw_format* format = workbook_add_format(book_);
        format_set_align(format, LXW_ALIGN_VERTICAL_TOP);
        if (const char* number = numberFormatOf(column.kind)) {
            format_set_num_format(format, number);
        } else if (column.kind == CellKind::Text) {
            format_set_text_wrap(format);
        }
        if (column.strong || isTotal) {
            format_set_bold(format);
        }
        if (isTotal) {
            format_set_top(format, LXW_BORDER_THIN);
        }
        return format;
    }

    /// By the longest cell that is known; the arrow of the filter stands beside the caption.
    [[nodiscard]] std::vector<double> widthsOf(const KnownContent& content) const {
        const auto longest = content.longestCells();
        std::vector<double> widths;
        for (std::size_t i = 0; i < rows_.columns().size(); ++i) {
            const Column& column = rows_.columns()[i];
            const bool isOwn = i >= rows_.first() && i - rows_.first() < longest.size();
            const auto cell =
                isOwn ? longest[i - rows_.first()] : static_cast<std::size_t>(column.width / 5);
            widths.push_back(static_cast<double>(
                std::min(WidestColumn, std::max(cell + 2, columnsOf(column.caption) + 4))));
        }
        return widths;
    }

    [[nodiscard]] lxw_col_t lastColumn() const {
        return static_cast<lxw_col_t>(rows_.columns().size() - 1);
    }

    Sheet newSheet(const std::string& name) {
        lxw_worksheet* sheet = workbook_add_worksheet(book_, sheetName(name).c_str());
        if (sheet == nullptr) {
            base::raise(base::errors::OutOfMemory);
        }
        setUpPage(sheet);
        for (std::size_t i = 0; i < widths_.size(); ++i) {
            const auto column = static_cast<lxw_col_t>(i);
            worksheet_set_column(sheet, column, column, widths_[i], nullptr);
        }
        Sheet growing(sheet, file_);
        writeHead(growing);
        return growing;
    }

    void setUpPage(lxw_worksheet* sheet) const {
        worksheet_set_paper(sheet, options_.paper == Paper::A4 ? A4Paper : LetterPaper);
        if (options_.landscape) {
            worksheet_set_landscape(sheet);
        }
        worksheet_fit_to_pages(sheet, 1, 0);
        worksheet_repeat_rows(sheet, HeadRow, HeadRow);
        worksheet_freeze_panes(sheet, HeadRow + 1, 0);
        const std::string head =
            "&L&B" + headerText(plain(heading_.title)) +
            (heading_.confidential ? "&R&B" + std::string(ConfidentialText) : std::string());
        const std::string foot =
            "&L" +
            headerText(joined({plain(heading_.district), plain(printedLine(heading_))}, ", ")) +
            "&RPage &P of &N";
        check(worksheet_set_header(sheet, head.c_str()), file_);
        check(worksheet_set_footer(sheet, foot.c_str()), file_);
    }

    void writeHead(Sheet& sheet) {
        sheet.text(0, plain(heading_.title), title_);
        sheet.nextRow();
        sheet.text(0,
                   joined({heading_.confidential ? std::string(ConfidentialText) : "",
                           plain(heading_.selection), plain(heading_.district),
                           plain(printedLine(heading_)), plain(heading_.foot)},
                          " · "),
                   nullptr);
        sheet.nextRow();
        for (std::size_t i = 0; i < rows_.columns().size(); ++i) {
            sheet.text(i, plain(rows_.columns()[i].caption), headFormat(rows_.columns()[i]));
        }
    }

    lxw_format* headFormat(const Column& column) {
        lxw_format*& format = headFormats_[isNumber(column.kind) ? 1 : 0];
        if (format == nullptr) {
            format = workbook_add_format(book_);
            format_set_bold(format);
            format_set_bottom(format, LXW_BORDER_MEDIUM);
            format_set_align(format, isNumber(column.kind) ? LXW_ALIGN_RIGHT : LXW_ALIGN_LEFT);
        }
        return format;
    }

    void write(const std::vector<base::Value>& cells) {
        const std::vector<Column>& columns = rows_.columns();
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const bool isKnown = i < columns.size();
            data_->cell(i, isKnown ? columns[i].kind : CellKind::Text, cells[i],
                        isKnown ? formats_[i] : nullptr);
        }
        data_->nextRow();
        ++count_;
    }

    /// Subtotals have a sheet of their own, so that they are not sorted in among the rows.
    void writeGroupTotals(const Totals& totals) {
        if (!totals_) {
            totals_.emplace(newSheet("Totals"));
            totals_->nextRow();
        }
        writeTotalsRow(*totals_, totals,
                       [&](std::size_t, std::size_t at, const base::Value& value) {
                           totals_->cell(at, rows_.columns()[at].kind, value, formats_[at]);
                       });
    }

    /// What concerns all rows is said before anything is written below them.
    void endRows() {
        if (!std::exchange(isEnded_, true) && count_ > 0) {
            check(worksheet_autofilter(data_->get(), HeadRow, 0, endOfRows(), lastColumn()), file_);
            signLoads();
        }
    }

    void writeTotals(const Totals& totals) {
        endRows();
        writeTotalsRow(
            *data_, totals, [&](std::size_t own, std::size_t at, const base::Value& value) {
                const std::string formula = formulaOf(report_.columns[own], at);
                if (value.isNull() || formula.empty()) {
                    data_->cell(at, rows_.columns()[at].kind, value, totalFormats_[at]);
                } else {
                    data_->formula(at, formula, numberOf(rows_.columns()[at].kind, value),
                                   totalFormats_[at]);
                }
            });
    }

    template <class OnCell>
    void writeTotalsRow(Sheet& sheet, const Totals& totals, OnCell onCell) {
        const bool hasGroups = rows_.first() > 0;
        const bool isTitleFree = hasGroups || totals.cells.empty() || totals.cells.front().isNull();
        for (std::size_t i = 0; i < totals.cells.size() && i < report_.columns.size(); ++i) {
            onCell(i, rows_.first() + i, totals.cells[i]);
        }
        if (isTitleFree) {
            sheet.text(0, plain(totals.title), totals.level ? bold_ : totalFormats_[0]);
        }
        sheet.nextRow();
    }

    /// The last row of the data, which a total below them does not move.
    [[nodiscard]] lxw_row_t endOfRows() const { return HeadRow + count_; }

    [[nodiscard]] std::string partial(Partial which, std::size_t at) const {
        std::array<char, LXW_MAX_CELL_RANGE_LENGTH> range{};
        const auto column = static_cast<lxw_col_t>(at);
        lxw_rowcol_to_range(range.data(), HeadRow + 1, column, endOfRows(), column);
        return fmt::format("SUBTOTAL({},{})", static_cast<int>(which), range.data());
    }

    [[nodiscard]] std::optional<std::size_t> columnNamed(const std::string& field) const {
        const auto& all = rows_.columns();
        const auto found = std::ranges::find(all, field, &Column::field);
        return found == all.end() ? std::nullopt
                                  : std::optional(static_cast<std::size_t>(found - all.begin()));
    }

    /// What keeps a total right while rows are filtered; empty where only its value is known.
    [[nodiscard]] std::string formulaOf(const Column& column, std::size_t at) const {
        if (count_ == 0) {
            return {};
        }
        switch (column.total) {
            case Total::Sum:
                return '=' + partial(Partial::Sum, at);
            case Total::Least:
                return '=' + partial(Partial::Least, at);
            case Total::Greatest:
                return '=' + partial(Partial::Greatest, at);
            case Total::Ratio:
                return ratioFormula(column);
            case Total::None:
                break;
        }
        return {};
    }

    [[nodiscard]] std::string ratioFormula(const Column& column) const {
        const auto of = columnNamed(column.ratioOf);
        const auto to = columnNamed(column.ratioTo);
        if (!of || !to) {
            return {};
        }
        const std::string whole = partial(Partial::Sum, *to);
        return fmt::format("=IF({}=0,0,100*{}/{})", whole, partial(Partial::Sum, *of), whole);
    }

    /// A bar in the cell, bold where there are more riders than seats.
    void signLoads() {
        for (std::size_t i = 0; i < rows_.columns().size(); ++i) {
            if (rows_.columns()[i].kind == CellKind::Load) {
                const auto column = static_cast<lxw_col_t>(i);
                lxw_conditional_format bar{};
                bar.type = LXW_CONDITIONAL_DATA_BAR;
                bar.bar_color = 0xBFBFBF;
                bar.bar_solid = LXW_TRUE;
                bar.data_bar_2010 = LXW_TRUE;
                bar.min_rule_type = LXW_CONDITIONAL_RULE_TYPE_NUMBER;
                bar.max_rule_type = LXW_CONDITIONAL_RULE_TYPE_NUMBER;
                bar.min_value = 0;
                bar.max_value = 150;
                worksheet_conditional_format_range(data_->get(), HeadRow + 1, column, endOfRows(),
                                                   column, &bar);
                lxw_conditional_format over{};
                over.type = LXW_CONDITIONAL_TYPE_CELL;
                over.criteria = LXW_CONDITIONAL_CRITERIA_GREATER_THAN;
                over.value = 100;
                over.format = bold_;
                worksheet_conditional_format_range(data_->get(), HeadRow + 1, column, endOfRows(),
                                                   column, &over);
            }
        }
    }

    const Report& report_;
    const Options& options_;
    const Heading& heading_;
    std::string file_;
    FlatRows rows_;
    lxw_workbook* book_ = nullptr;
    lxw_format* bold_ = nullptr;
    lxw_format* title_ = nullptr;
    std::array<lxw_format*, 2> headFormats_{};
    std::vector<lxw_format*> formats_, totalFormats_;
    std::vector<double> widths_;
    std::optional<Sheet> data_, totals_;
    lxw_row_t count_ = 0;
    bool isEnded_ = false;
};

}  // namespace

std::unique_ptr<Writer> excelWriter(const KnownContent& content, files::Draft& draft) {
    return std::make_unique<Excel>(content, draft);
}

}  // namespace reports
