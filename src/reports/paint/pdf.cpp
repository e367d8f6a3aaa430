#include "reports/paint/pdf.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>

#include <cairo-pdf.h>
#include <fmt/format.h>

#include "platform/base/notcopied.h"
#include "reports/paint/catalogentry.h"
#include "reports/paint/drawing.h"
#include "reports/paint/paintfile.h"

namespace reports {

namespace {

/// Where the writer's bytes go. After the stop it takes none, so that finishing costs nothing.
struct Output {
    std::FILE* file;
    int error = 0;
    bool isStopped = false;

    static cairo_status_t write(void* self, const unsigned char* data, unsigned length) {
        auto& output = *static_cast<Output*>(self);
        if (output.isStopped || output.error != 0) {
            return CAIRO_STATUS_WRITE_ERROR;
        }
        if (std::fwrite(data, 1, length, output.file) != length) {
            output.error = errno;
            return CAIRO_STATUS_WRITE_ERROR;
        }
        return CAIRO_STATUS_SUCCESS;
    }
};

class Document : private base::NotCopied {
public:
    Document(const Pages& pages, Output& output)
        : pages_(pages),
          surface_(cairo_pdf_surface_create_for_stream(&Output::write, &output, pages.size.width,
                                                       pages.size.height)),
          cairo_(cairo_create(surface_)),
          drawing_(cairo_, Drawing::Medium::Document) {
        describe(CAIRO_PDF_METADATA_TITLE, pages.heading.title);
        describe(CAIRO_PDF_METADATA_SUBJECT, pages.heading.selection);
        describe(CAIRO_PDF_METADATA_AUTHOR, pages.heading.district);
        cairo_tag_begin(cairo_, "Document", "");
    }
    ~Document() {
        cairo_destroy(cairo_);
        cairo_surface_destroy(surface_);
    }

    void page(std::size_t number);
    void finish() {
        cairo_tag_end(cairo_, "Document");
        cairo_surface_finish(surface_);
    }
    [[nodiscard]] bool isWell() const {
        return cairo_status(cairo_) == CAIRO_STATUS_SUCCESS &&
               cairo_surface_status(surface_) == CAIRO_STATUS_SUCCESS;
    }

private:
    void describe(cairo_pdf_metadata_t what, const std::string& text) {
        cairo_pdf_surface_set_metadata(surface_, what, text.c_str());
    }
    void texts(const Page& page);
    void bookmarks(const Page& page, std::size_t number);

    const Pages& pages_;
    cairo_surface_t* surface_;
    cairo_t* cairo_;
    Drawing drawing_;
    std::vector<int> parents_;  ///< the last bookmark of each level
};

bool isOneElement(const Box& a, const Box& b) { return a.role == b.role && a.row == b.row; }

void Document::texts(const Page& page) {
    const Box* tagged = nullptr;
    const auto end = [&] {
        if (tagged != nullptr) {
            cairo_tag_end(cairo_, tagged->role == Role::Head ? "H2" : "P");
            tagged = nullptr;
        }
    };
    for (const Box& box : page.boxes) {
        if (tagged != nullptr && !isOneElement(*tagged, box)) {
            end();
        }
        if (tagged == nullptr && box.role != Role::Artifact) {
            cairo_tag_begin(cairo_, box.role == Role::Head ? "H2" : "P", "");
            tagged = &box;
        }
        drawing_.box(page, box);
    }
    end();
}

void Document::bookmarks(const Page& page, std::size_t number) {
    for (const Mark& mark : page.marks) {
        const auto level = std::min<std::size_t>(mark.level, parents_.size());
        parents_.resize(level);
        const int parent = level == 0 ? CAIRO_PDF_OUTLINE_ROOT : parents_.back();
        parents_.push_back(cairo_pdf_surface_add_outline(
            surface_, parent, mark.title.c_str(),
            fmt::format("page={} pos=[0 {:.1f}]", number, mark.y).c_str(),
            CAIRO_PDF_OUTLINE_FLAG_OPEN));
    }
}

void Document::page(std::size_t number) {
    const Page& page = pages_.pages[number - 1];
    bookmarks(page, number);
    drawing_.shapes(page);
    texts(page);
    cairo_show_page(cairo_);
}

/// False where it was stopped.
bool paintAll(Document& document, const Pages& pages, const KeepGoing& keepGoing) {
    const std::size_t count = pages.pages.size();
    for (std::size_t number = 1; number <= count && document.isWell(); ++number) {
        document.page(number);
        if (keepGoing && !keepGoing(static_cast<double>(number) / static_cast<double>(count))) {
            return false;
        }
    }
    return true;
}

/// Writes all but the catalog's additions; false where it was stopped.
bool writePdf(const Pages& pages, const std::string& path, const KeepGoing& keepGoing) {
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(std::fopen(path.c_str(), "wbe"),
                                                                  &std::fclose);
    if (!file) {
        raiseFor(path, errno);
    }
    Output output{file.get()};
    {
        Document document(pages, output);
        output.isStopped = !paintAll(document, pages, keepGoing);
        document.finish();
        if (output.isStopped) {
            return false;
        }
        if (output.error != 0 || !document.isWell() || std::fflush(file.get()) != 0) {
            raiseFor(path, output.error != 0 ? output.error : errno);
        }
    }
    return true;
}

}  // namespace

bool paintPdf(const Pages& pages, const std::string& path, const KeepGoing& keepGoing) {
    PaintedFile painted(path);
    if (!writePdf(pages, path, keepGoing)) {
        return false;
    }
    completeCatalog(path);
    painted.keep();
    return true;
}

}  // namespace reports
