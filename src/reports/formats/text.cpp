#include <algorithm>

#include <fmt/format.h>

#include "reports/formats/texts.h"
#include "reports/formats/writer.h"

namespace reports {

namespace {

constexpr std::size_t Gap = 2;  ///< between columns
constexpr std::size_t WidestText = 40;
constexpr std::size_t WidestRemark = 100;

std::string padded(const std::string& text, std::size_t columns, bool toTheRight) {
    const std::size_t taken = columnsOf(text);
    const std::string blanks(columns > taken ? columns - taken : 0, ' ');
    return toTheRight ? blanks + text : text + blanks;
}

std::string withoutBlanksAtTheEnd(std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

class Text : public Writer {
public:
    Text(const KnownContent& content, files::Draft& draft)
        : draft_(draft), columns_(content.report().columns), heading_(content.heading()) {
        const auto longest = content.longestCells();
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            widths_.push_back(std::max(columnsOf(plain(columns_[i].caption)),
                                       std::min(std::max<std::size_t>(longest[i], 1), WidestText)));
        }
        writeHeading();
        writeCaptions();
    }

    void take(const Item& item) override {
        std::visit([this](const auto& known) { put(known); }, item);
    }
    void finish() override {
        if (!heading_.foot.empty()) {
            line("");
            block(plain(heading_.foot), 0);
        }
        confidential();
    }

private:
    void put(const GroupHead& head) {
        if (head.newPage && hasRows_) {
            draft_.write("\f");
            writeHeading();
            writeCaptions();
        }
        line("");
        const std::string indent(2 * head.level, ' ');
        const std::string note = head.note.empty() ? "" : "  (" + plain(head.note) + ")";
        block(indent + plain(head.title) + note, indent.size());
    }

    void put(const Row& row) {
        cells(row.cells);
        hasRows_ = true;
    }

    void put(const Remark& remark) { block("    " + plain(remark.text), 4); }

    void put(const Totals& totals) {
        line(rule(totals.cells));
        const std::vector<std::string> texts = textsOf(totals.cells);
        const std::string title = plain(totals.title);
        std::string whole;
        std::size_t at = 0;
        for (; at < texts.size() && texts[at].empty(); ++at) {
            whole.append(widths_[at] + Gap, ' ');
        }
        if (columnsOf(title) + Gap <= whole.size()) {
            whole = padded(title, whole.size(), false);
        } else {
            block(title, 0);
        }
        for (; at < texts.size(); ++at) {
            whole +=
                padded(texts[at], widths_[at], isNumber(columns_[at].kind)) + std::string(Gap, ' ');
        }
        line(whole);
    }

    template <class Other>
    void put(const Other& /*other*/) {}

    void line(const std::string& text) { draft_.write(withoutBlanksAtTheEnd(text) + '\n'); }

    /// A text over the whole width, its further lines as far in as asked.
    void block(const std::string& text, std::size_t indent) {
        bool isFirst = true;
        for (const std::string& part : wrapped(text, WidestRemark)) {
            line(isFirst ? part : std::string(indent, ' ') + part);
            isFirst = false;
        }
    }

    void confidential() {
        if (heading_.confidential) {
            line("*** " + std::string(ConfidentialText) + " ***");
        }
    }

    void writeHeading() {
        confidential();
        line(plain(heading_.district));
        line(joined({plain(heading_.title), plain(heading_.selection)}, ": "));
        line(plain(printedLine(heading_)));
        line("");
    }

    void writeCaptions() {
        std::vector<std::string> captions;
        std::string below;
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            captions.push_back(plain(columns_[i].caption));
            below += (i > 0 ? std::string(Gap, ' ') : "") + std::string(widths_[i], '-');
        }
        write(captions);
        line(below);
    }

    /// Dashes over the columns that have a total.
    [[nodiscard]] std::string rule(const std::vector<base::Value>& cells) const {
        std::string dashes;
        for (std::size_t i = 0; i < widths_.size(); ++i) {
            const bool has = i < cells.size() && !cells[i].isNull();
            dashes +=
                (i > 0 ? std::string(Gap, ' ') : "") + std::string(widths_[i], has ? '-' : ' ');
        }
        return dashes;
    }

    [[nodiscard]] std::vector<std::string> textsOf(const std::vector<base::Value>& cells) const {
        std::vector<std::string> texts;
        for (std::size_t i = 0; i < std::min(cells.size(), columns_.size()); ++i) {
            texts.push_back(plainCell(columns_[i].kind, cells[i]));
        }
        return texts;
    }

    void cells(const std::vector<base::Value>& cells) { write(textsOf(cells)); }

    /// A row of as many lines as its longest cell needs.
    void write(const std::vector<std::string>& texts) {
        std::vector<std::vector<std::string>> parts;
        std::size_t lines = 1;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            parts.push_back(wrapped(texts[i], widths_[i]));
            lines = std::max(lines, parts.back().size());
        }
        for (std::size_t at = 0; at < lines; ++at) {
            std::string whole;
            for (std::size_t i = 0; i < parts.size(); ++i) {
                whole += (i > 0 ? std::string(Gap, ' ') : "") +
                         padded(at < parts[i].size() ? parts[i][at] : "", widths_[i],
                                isNumber(columns_[i].kind));
            }
            line(whole);
        }
    }

    files::Draft& draft_;
    const std::vector<Column>& columns_;
    const Heading& heading_;
    std::vector<std::size_t> widths_;
    bool hasRows_ = false;
};

}  // namespace

std::unique_ptr<Writer> textWriter(const KnownContent& content, files::Draft& draft) {
    return std::make_unique<Text>(content, draft);
}

}  // namespace reports
