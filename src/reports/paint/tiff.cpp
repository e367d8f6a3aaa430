#include "reports/paint/tiff.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <memory>
#include <vector>

#include <cairo.h>
#include <tiffio.h>

#include "platform/base/notcopied.h"
#include "reports/paint/drawing.h"
#include "reports/paint/paintfile.h"

namespace reports {

namespace {

constexpr double DotsPerInch = 200;
constexpr double DotsPerPoint = DotsPerInch / 72;
constexpr unsigned char Dark = 128;

/// A page's dots, painted one page after the other.
class Canvas : private base::NotCopied {
public:
    explicit Canvas(const PageSize& size)
        : surface_(
              cairo_image_surface_create(CAIRO_FORMAT_A8, dots(size.width), dots(size.height))),
          cairo_(cairo_create(surface_)),
          drawing_(cairo_, Drawing::Medium::Fax),
          rowBytes_((static_cast<std::size_t>(width()) + 7) / 8),
          bits_(rowBytes_ * static_cast<std::size_t>(height())) {
        cairo_scale(cairo_, DotsPerPoint, DotsPerPoint);
    }
    ~Canvas() {
        cairo_destroy(cairo_);
        cairo_surface_destroy(surface_);
    }

    /// The page, eight dots a byte, black ones set.
    std::vector<unsigned char>& painted(const Page& page);
    [[nodiscard]] int width() const { return cairo_image_surface_get_width(surface_); }
    [[nodiscard]] int height() const { return cairo_image_surface_get_height(surface_); }

private:
    static int dots(float points) { return static_cast<int>(std::lround(points * DotsPerPoint)); }
    void pack();

    cairo_surface_t* surface_;
    cairo_t* cairo_;
    Drawing drawing_;
    std::size_t rowBytes_;
    std::vector<unsigned char> bits_;
};

std::vector<unsigned char>& Canvas::painted(const Page& page) {
    drawing_.clear();
    drawing_.shapes(page);
    for (const Box& box : page.boxes) {
        drawing_.box(page, box);
    }
    pack();
    return bits_;
}

void Canvas::pack() {
    cairo_surface_flush(surface_);
    const unsigned char* row = cairo_image_surface_get_data(surface_);
    const int stride = cairo_image_surface_get_stride(surface_);
    std::ranges::fill(bits_, 0);
    const auto columns = static_cast<std::size_t>(width());
    for (std::size_t y = 0; y < static_cast<std::size_t>(height()); ++y, row += stride) {
        unsigned char* packed = bits_.data() + y * rowBytes_;
        for (std::size_t x = 0; x < columns; ++x) {
            packed[x / 8] |= row[x] >= Dark ? static_cast<unsigned char>(0x80U >> (x % 8)) : 0;
        }
    }
}

void describe(TIFF* file, const Canvas& canvas, std::size_t number, std::size_t count,
              const std::string& title) {
    TIFFSetField(file, TIFFTAG_SUBFILETYPE, FILETYPE_PAGE);
    TIFFSetField(file, TIFFTAG_PAGENUMBER, static_cast<int>(number), static_cast<int>(count));
    TIFFSetField(file, TIFFTAG_IMAGEWIDTH, canvas.width());
    TIFFSetField(file, TIFFTAG_IMAGELENGTH, canvas.height());
    TIFFSetField(file, TIFFTAG_BITSPERSAMPLE, 1);
    TIFFSetField(file, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, canvas.height());
    TIFFSetField(file, TIFFTAG_COMPRESSION, COMPRESSION_CCITTFAX4);
    TIFFSetField(file, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
    TIFFSetField(file, TIFFTAG_XRESOLUTION, DotsPerInch);
    TIFFSetField(file, TIFFTAG_YRESOLUTION, DotsPerInch);
    TIFFSetField(file, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(file, TIFFTAG_DOCUMENTNAME, title.c_str());
}

/// False where it was stopped.
bool writeTiff(const Pages& pages, const std::string& path, const KeepGoing& keepGoing) {
    // What goes wrong is told by an error of our own, not on the terminal.
    TIFFSetErrorHandler(nullptr);
    errno = 0;
    const std::unique_ptr<TIFF, decltype(&TIFFClose)> file(TIFFOpen(path.c_str(), "w"), &TIFFClose);
    if (!file) {
        raiseFor(path, errno);
    }
    Canvas canvas(pages.size);
    const std::size_t count = pages.pages.size();
    for (std::size_t at = 0; at < count; ++at) {
        describe(file.get(), canvas, at, count, pages.heading.title);
        auto& bits = canvas.painted(pages.pages[at]);
        const auto bytes = static_cast<tmsize_t>(bits.size());
        if (TIFFWriteEncodedStrip(file.get(), 0, bits.data(), bytes) != bytes ||
            TIFFWriteDirectory(file.get()) == 0) {
            raiseFor(path, errno);
        }
        if (keepGoing && !keepGoing(static_cast<double>(at + 1) / static_cast<double>(count))) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool paintTiff(const Pages& pages, const std::string& path, const KeepGoing& keepGoing) {
    PaintedFile painted(path);
    if (!writeTiff(pages, path, keepGoing)) {
        return false;
    }
    painted.keep();
    return true;
}

}  // namespace reports
