#include "tools/district/import/source/csv.h"

#include <algorithm>
#include <array>
#include <istream>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/text.h"

namespace tools::district {

namespace {

constexpr std::size_t BlockSize = 256UL * 1024;
constexpr std::size_t LongestToldLine = 1000;
constexpr std::string_view Mark = "\xEF\xBB\xBF";
constexpr std::string_view Separators = ",;\t|";

/// The separator that stands most often outside quotes.
char separatorIn(std::string_view line) {
    std::array<int, Separators.size()> counts{};
    bool isInside = false;
    for (const char c : line) {
        isInside = (c == '"') != isInside;
        const auto found = Separators.find(c);
        if (found != std::string_view::npos && !isInside) {
            ++counts.at(found);
        }
    }
    return Separators[static_cast<std::size_t>(std::ranges::max_element(counts) - counts.begin())];
}

/// Reads a file through, block by block.
class Survey {
public:
    Survey(std::istream& file, const CsvHints& hints) : file_(file), hints_(hints) {}

    CsvShape shape() {
        std::string block(BlockSize, '\0');
        while (file_.read(block.data(), static_cast<std::streamsize>(block.size())) ||
               file_.gcount() > 0) {
            take(std::string_view(block).substr(0, static_cast<std::size_t>(file_.gcount())));
        }
        file_.clear();
        file_.seekg(0);
        const bool isUtf8 = hasMark_ || (isValid_ && rest_.empty());
        return {.charset = hints_.charset.value_or(isUtf8 ? Charset::Utf8 : Charset::Windows1252),
                .separator = hints_.separator.value_or(separatorIn(first_)),
                .lines = lines_};
    }

private:
    void take(std::string_view block) {
        if (isFirst_) {
            lookAtBeginning(block);
        }
        lines_ += std::ranges::count(block, '\n');
        if (!isValid_) {
            return;
        }
        rest_ += block;
        const std::size_t valid = firstInvalid(rest_);
        rest_.erase(0, valid);
        isValid_ = rest_.size() < 4;  // a character may go on in the next block
    }

    void lookAtBeginning(std::string_view block) {
        isFirst_ = false;
        if (block.starts_with("\xFF\xFE") || block.starts_with("\xFE\xFF")) {
            throw base::RunTimeError(
                base::errors::PathFileAccess,
                "The file is in UTF-16. Save it as CSV in UTF-8 and try again.");
        }
        hasMark_ = block.starts_with(Mark);
        first_ = block.substr(0, block.find_first_of("\r\n"));
    }

    std::istream& file_;
    const CsvHints& hints_;
    std::string first_;
    std::string rest_;
    std::int64_t lines_ = 0;
    bool isFirst_ = true;
    bool hasMark_ = false;
    bool isValid_ = true;
};

}  // namespace

CsvShape shapeOf(std::istream& file, const CsvHints& hints) { return Survey(file, hints).shape(); }

CsvReader::CsvReader(std::istream& file, const CsvShape& shape) : file_(file), shape_(shape) {
    fill();
    if (buffer_.starts_with(Mark)) {
        start_ = Mark.size();
    }
}

/// The byte at an offset from the record's beginning, -1 behind the end of the file.
int CsvReader::at(std::size_t offset) {
    while (start_ + offset >= buffer_.size()) {
        if (!fill()) {
            return -1;
        }
    }
    return static_cast<unsigned char>(buffer_[start_ + offset]);
}

bool CsvReader::fill() {
    buffer_.erase(0, start_);
    start_ = 0;
    const std::size_t before = buffer_.size();
    buffer_.resize(before + BlockSize);
    file_.read(buffer_.data() + before, static_cast<std::streamsize>(BlockSize));
    buffer_.resize(before + static_cast<std::size_t>(file_.gcount()));
    return buffer_.size() > before;
}

CsvReader::Item CsvReader::next() {
    skipEmptyLines();
    if (at(0) < 0) {
        return Item::End;
    }
    record_.line = line_;
    if (readFields() && isReadable()) {
        takeFields();
        leave(size_);
        return Item::Record;
    }
    if (++faults_ > MostFaults) {
        throw base::RunTimeError(
            base::errors::PathFileAccess,
            fmt::format("More than {} lines cannot be read; the last is line {}, character {}: {}.",
                        MostFaults, fault_.line, fault_.column, fault_.reason));
    }
    return Item::Fault;
}

// Views of the record point into the buffer: what was read goes when the next one begins.
void CsvReader::skipEmptyLines() {
    leave(size_);
    while (at(0) == '\n' || at(0) == '\r') {
        const std::size_t end = at(0) == '\r' && at(1) == '\n' ? 2 : 1;
        start_ += end;
        ++line_;
    }
}

/// Moves the beginning behind so many bytes.
void CsvReader::leave(std::size_t size) {
    const std::string_view gone = std::string_view(buffer_).substr(start_, size);
    for (std::size_t i = 0; i < gone.size(); ++i) {
        const bool isPair = gone[i] == '\r' && i + 1 < gone.size() && gone[i + 1] == '\n';
        line_ += (gone[i] == '\n' || (gone[i] == '\r' && !isPair)) ? 1 : 0;
    }
    start_ += size;
    size_ = 0;
}

bool CsvReader::readFields() {
    spans_.clear();
    size_ = 0;
    while (true) {
        Span span{.begin = size_, .end = size_};
        if (!(at(size_) == '"' ? readQuoted(span) : readBare(span))) {
            return false;
        }
        spans_.push_back(span);
        if (isLineEnd(at(size_))) {
            return true;
        }
        if (spans_.size() == MostFields) {
            return refuse(size_, fmt::format("there are more than {} fields", MostFields));
        }
        ++size_;
    }
}

bool CsvReader::readBare(Span& span) {
    for (int c = at(size_); c != shape_.separator && !isLineEnd(c); c = at(++size_)) {
        if (size_ - span.begin == LongestField) {
            return refuse(span.begin, "the field is too long");
        }
    }
    span.end = size_;
    return true;
}

bool CsvReader::readQuoted(Span& span) {
    const std::size_t opening = size_;
    span.quoted = true;
    span.begin = ++size_;
    for (;; ++size_) {
        const int c = at(size_);
        if (c < 0 || size_ - opening > LongestField) {
            return refuse(opening, "this quote is never closed");
        }
        if (c == '"') {
            if (at(size_ + 1) != '"') {
                break;
            }
            span.doubled = true;
            ++size_;
        }
    }
    span.end = size_++;
    const int behind = at(size_);
    return behind == shape_.separator || isLineEnd(behind) ||
           refuse(size_, "text follows the closing quote");
}

/// Notes the fault at an offset from the record's beginning and goes on with the line behind it.
bool CsvReader::refuse(std::size_t offset, std::string_view reason) {
    const std::size_t lineStart = note(offset, reason);
    leave(lineStart);
    fault_.line = line_;
    start_ += offset - lineStart;
    while (!isLineEnd(at(0))) {
        ++start_;
    }
    return false;
}

/// Returns where the line begins that has the fault, from the record's beginning.
std::size_t CsvReader::note(std::size_t offset, std::string_view reason) {
    static_cast<void>(at(offset));  // all up to it is in the buffer
    const std::string_view record = std::string_view(buffer_).substr(start_);
    const std::string_view before = record.substr(0, offset);
    const std::size_t lineEnd = before.find_last_of("\r\n");
    const std::size_t lineStart = lineEnd == std::string_view::npos ? 0 : lineEnd + 1;
    fault_.reason = reason;
    fault_.column = 1 + std::ranges::count_if(before.substr(lineStart), [&](char c) {
                        return shape_.charset != Charset::Utf8 || !base::continuesCharacter(c);
                    });
    const std::string_view line =
        record.substr(0, std::min(record.find_first_of("\r\n"), LongestToldLine));
    fault_.text.clear();
    if (firstInvalid(line) == line.size()) {
        fault_.text = line;
    } else {
        appendFromWindows1252(line, fault_.text);
    }
    return lineStart;
}

/// Whether every byte of the record is a character. One that is not ends this record only.
bool CsvReader::isReadable() {
    const std::string_view bytes = std::string_view(buffer_).substr(start_, size_);
    const bool isUtf8 = shape_.charset == Charset::Utf8;
    const std::size_t wrong = std::min(
        {bytes.find('\0'), bytes.size(), isUtf8 ? firstInvalid(bytes) : firstUndefined(bytes)});
    if (wrong == bytes.size()) {
        return true;
    }
    const std::size_t whole = size_;
    const std::size_t lineStart =
        note(wrong, bytes[wrong] == '\0' ? "this is a zero byte; the file is no text"
                                         : fmt::format("the byte {:#04x} is no character of {}",
                                                       static_cast<unsigned char>(bytes[wrong]),
                                                       isUtf8 ? "UTF-8" : "Windows-1252"));
    leave(lineStart);
    fault_.line = line_;
    leave(whole - lineStart);
    return false;
}

void CsvReader::takeFields() {
    decoded_.clear();
    decoded_.reserve(3 * size_);  // views into it must stay
    record_.fields.clear();
    for (const Span& span : spans_) {
        record_.fields.push_back({decoded(span), span.quoted});
    }
}

std::string_view CsvReader::decoded(const Span& span) {
    std::string_view raw =
        std::string_view(buffer_).substr(start_ + span.begin, span.end - span.begin);
    const bool isForeign = shape_.charset != Charset::Utf8 && std::ranges::any_of(raw, [](char c) {
                               return static_cast<unsigned char>(c) >= 0x80;
                           });
    if (!span.doubled && !isForeign) {
        return raw;
    }
    const std::size_t begin = decoded_.size();
    while (!raw.empty()) {
        const std::size_t quote = span.doubled ? raw.find("\"\"") : std::string_view::npos;
        const std::string_view part = raw.substr(0, quote == raw.npos ? quote : quote + 1);
        isForeign ? appendFromWindows1252(part, decoded_) : void(decoded_ += part);
        raw.remove_prefix(std::min(raw.size(), part.size() + (quote == raw.npos ? 0 : 1)));
    }
    return std::string_view(decoded_).substr(begin);
}

}  // namespace tools::district
