#include "reports/formats/svg.h"

#include <iterator>

#include <fmt/format.h>

namespace reports {

namespace {

std::string stepsOf(const Picture::Path& path) {
    std::string steps;
    const float* at = path.places.data();
    const auto add = [&](char letter, int places) {
        steps += letter;
        for (int i = 0; i < places; ++i, at += 2) {
            fmt::format_to(std::back_inserter(steps), "{}{:.1f} {:.1f}", i == 0 ? "" : " ", at[0],
                           at[1]);
        }
    };
    for (const Picture::Step step : path.steps) {
        switch (step) {
            case Picture::Step::Move:
                add('M', 1);
                break;
            case Picture::Step::Line:
                add('L', 1);
                break;
            case Picture::Step::Curve:
                add('C', 3);
                break;
            case Picture::Step::Close:
                add('Z', 0);
                break;
        }
    }
    return steps;
}

std::string lookOf(const Picture::Look& look) {
    constexpr double Full = 255;
    const auto& [red, green, blue, alpha] = look.colour;
    const std::string colour = fmt::format("#{:02x}{:02x}{:02x}", red, green, blue);
    const std::string seen = alpha == 255 ? "" : fmt::format(" opacity=\"{:.2f}\"", alpha / Full);
    if (look.filled) {
        return fmt::format(" fill=\"{}\"{}{}", colour, look.evenOdd ? " fill-rule=\"evenodd\"" : "",
                           seen);
    }
    const std::string dash =
        look.dash > 0 ? fmt::format(" stroke-dasharray=\"{:.1f} {:.1f}\"", look.dash, look.gap)
                      : "";
    return fmt::format(
        " fill=\"none\" stroke=\"{}\" stroke-width=\"{:.2f}\" stroke-linejoin=\"round\"{}{}{}",
        colour, look.thick, look.roundEnds ? " stroke-linecap=\"round\"" : "", dash, seen);
}

}  // namespace

std::string svgOf(const Picture& picture, std::string_view told) {
    std::string svg = fmt::format(
        "<svg style=\"display:block;width:100%\" viewBox=\"0 0 {:.1f} {:.1f}\" role=\"img\" "
        "aria-label=\"{}\">\n",
        picture.width, picture.height, htmlText(told));
    for (const Picture::Path& path : picture.paths) {
        svg += fmt::format("<path{} d=\"{}\"/>\n", lookOf(path.look), stepsOf(path));
    }
    return svg + "</svg>";
}

std::string htmlText(std::string_view text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += c;
        }
    }
    return result;
}

}  // namespace reports
