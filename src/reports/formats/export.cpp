#include "reports/formats/export.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <future>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/files/draft.h"
#include "reports/formats/sheettable.h"
#include "reports/formats/writer.h"
#include "reports/page/layout.h"
#include "reports/paint/pdf.h"
#include "reports/paint/tiff.h"

namespace reports {

namespace {

constexpr std::size_t ItemsBetweenLooks = 200;

/// What is no file, as a folder or a device, is not put out of the way.
void requireFile(const std::string& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        throw base::RunTimeError(
            base::errors::PathFileAccess,
            fmt::format("Path/File access error: {}: There is something of that name that is not "
                        "a file",
                        path));
    }
}

bool isTable(Format format) {
    return format == Format::Csv || format == Format::Excel || format == Format::Text;
}

std::unique_ptr<Writer> writerOf(Format format, const KnownContent& content, files::Draft& draft) {
    switch (format) {
        case Format::Rtf:
            return rtfWriter(content, draft);
        case Format::Html:
            return htmlWriter(content, draft);
        case Format::Excel:
            return excelWriter(content, draft);
        case Format::Text:
            return textWriter(content, draft);
        default:
            return csvWriter(content, draft);
    }
}

bool isRow(const Item& item) {
    return std::holds_alternative<Row>(item) || std::holds_alternative<SheetStop>(item);
}

/// Beside the program, which goes on meanwhile; false where `keepGoing` said no.
bool closed(Writer& writer, const KeepGoing& keepGoing) {
    constexpr std::chrono::milliseconds Turn(20);
    auto closing = std::async(std::launch::async, [&writer] { writer.close(); });
    bool isWanted = true;
    while (closing.wait_for(Turn) != std::future_status::ready) {
        isWanted = isWanted && (!keepGoing || keepGoing(1));
    }
    closing.get();
    return isWanted;
}

bool writeItems(Content& content, Format format, files::Draft& draft, const KeepGoing& keepGoing) {
    KnownContent known(content);
    const auto writer = writerOf(format, known, draft);
    std::size_t items = 0;
    std::size_t rows = 0;
    while (const auto item = known.next()) {
        writer->take(*item);
        rows += static_cast<std::size_t>(isRow(*item));
        const double done =
            static_cast<double>(rows) / static_cast<double>(std::max<std::size_t>(known.size(), 1));
        if (++items % ItemsBetweenLooks == 0 && keepGoing && !keepGoing(std::min(done, 1.0))) {
            return false;
        }
    }
    writer->finish();
    return closed(*writer, keepGoing);
}

/// Laying out is a small part of making pages.
bool paint(Content& content, Format format, const std::string& path, const KeepGoing& keepGoing) {
    constexpr double Layout = 0.1;
    bool isAsked = true;
    const KeepGoing whileLayingOut = [&](double done) {
        isAsked = !keepGoing || keepGoing(done * Layout);
        return isAsked;
    };
    const KeepGoing whilePainting = [&](double done) {
        return !keepGoing || keepGoing(Layout + done * (1 - Layout));
    };
    const Pages pages = layOut(content, whileLayingOut);
    if (!isAsked) {
        return false;
    }
    return format == Format::Pdf ? paintPdf(pages, path, whilePainting)
                                 : paintTiff(pages, path, whilePainting);
}

bool make(Content& content, Format format, files::Draft& draft, const KeepGoing& keepGoing) {
    if (format == Format::Pdf || format == Format::Tiff) {
        return paint(content, format, draft.path(), keepGoing);
    }
    if (isTable(format) && content.report().form == Form::Sheet) {
        SheetTable table(content);
        return writeItems(table, format, draft, keepGoing);
    }
    return writeItems(content, format, draft, keepGoing);
}

/// The name that somebody asked for, where a fault names the draft.
std::string withName(std::string text, const std::string& draft, const std::string& path) {
    const auto at = text.find(draft);
    return at == std::string::npos ? text : text.replace(at, draft.size(), path);
}

}  // namespace

bool exportReport(Content& content, Format format, const std::string& path,
                  const KeepGoing& keepGoing) {
    requireFile(path);
    files::Draft draft(path);
    try {
        const bool isWhole = make(content, format, draft, keepGoing);
        if (isWhole) {
            draft.replace();
        }
        return isWhole;
    } catch (const base::RunTimeError& error) {
        throw base::RunTimeError(error.number(), withName(error.what(), draft.path(), path));
    }
}

}  // namespace reports
