#include "reports/catalog/sheetwords.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>
#include <utility>

#include "platform/base/text.h"

namespace reports {

namespace {

using Sign = SheetWay::Sign;

bool beginsWith(std::string_view text, std::string_view words) {
    return base::equalsNoCase(text.substr(0, words.size()), words);
}

Sign signOf(std::string_view text) {
    constexpr std::pair<std::string_view, Sign> Beginnings[]{
        {"Turn left", Sign::Left},    {"Bear left", Sign::Left},   {"Left", Sign::Left},
        {"Turn right", Sign::Right},  {"Bear right", Sign::Right}, {"Right", Sign::Right},
        {"Turn back", Sign::Back},    {"Turn around", Sign::Back}, {"Follow", Sign::Straight},
        {"Continue", Sign::Straight}, {"Go", Sign::Straight},      {"Stay", Sign::Straight},
        {"Straight", Sign::Straight}};
    for (const auto& [words, sign] : Beginnings) {
        if (beginsWith(text, words)) {
            return sign;
        }
    }
    return Sign::None;
}

/// Where the street's name begins: behind the first of these words.
std::size_t streetBegins(std::string_view text) {
    for (const std::string_view word : {" onto ", " on ", "Follow "}) {
        if (const auto at = text.find(word); at != std::string_view::npos) {
            return at + word.size();
        }
    }
    return text.size();
}

std::vector<SheetWay::Piece> pieces(const std::string& text) {
    const auto begin = streetBegins(text);
    const auto end = std::min(text.find(',', begin), text.size());
    std::vector<SheetWay::Piece> all;
    for (auto& piece : {SheetWay::Piece{text.substr(0, begin)},
                        SheetWay::Piece{text.substr(begin, end - begin), true},
                        SheetWay::Piece{text.substr(end)}}) {
        if (!piece.text.empty()) {
            all.push_back(piece);
        }
    }
    return all;
}

constexpr std::array<std::string_view, 5> DayNames{"Monday", "Tuesday", "Wednesday", "Thursday",
                                                   "Friday"};

}  // namespace

std::string calledName(const std::string& lastFirst) {
    const auto comma = lastFirst.find(", ");
    return comma == std::string::npos
               ? lastFirst
               : lastFirst.substr(comma + 2) + ' ' + lastFirst.substr(0, comma);
}

std::string weekdays(const std::string& days) {
    std::vector<std::size_t> served;
    for (std::size_t day = 0; day < std::min(days.size(), DayNames.size()); ++day) {
        if (days[day] != '.') {
            served.push_back(day);
        }
    }
    if (served.empty()) {
        return "no day";
    }
    const bool isRange = served.size() > 2 && served.back() - served.front() + 1 == served.size();
    if (isRange) {
        return std::string(DayNames[served.front()]) + " to " +
               std::string(DayNames[served.back()]);
    }
    std::string words;
    for (const auto day : served) {
        words += day == served.front() ? "" : day == served.back() ? " and " : ", ";
        words += DayNames[day];
    }
    return words;
}

std::string cornerOf(const std::string& description, const std::string& address) {
    if (base::equalsNoCase(description, address)) {
        return {};
    }
    const auto at = description.find(" at ");
    return at == std::string::npos ? description : description.substr(at + 1);
}

SheetWay wayOf(const std::string& type, const std::string& text, const std::string& secondText) {
    SheetWay way;
    const bool isWay =
        base::equalsNoCase(type, "Direction") || base::equalsNoCase(type, "Turn Back");
    way.sign = !isWay                                  ? Sign::Caution
               : base::equalsNoCase(type, "Turn Back") ? Sign::Back
                                                       : signOf(text);
    way.pieces = isWay ? pieces(text) : std::vector<SheetWay::Piece>{{text, true}};
    if (!secondText.empty() && std::isdigit(static_cast<unsigned char>(secondText.front())) != 0) {
        way.miles = base::leadingNumber(secondText);
    }
    return way;
}

}  // namespace reports
