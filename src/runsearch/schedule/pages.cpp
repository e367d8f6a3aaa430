#include "runsearch/schedule/pages.h"

#include <QBuffer>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QSvgGenerator>
#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "platform/controls/qtext.h"
#include "reports/page/pagehead.h"
#include "runsearch/schedule/legend.h"

namespace schedule {

namespace {

constexpr double PixelsPerInch = 96;
constexpr double PixelsPerPoint = PixelsPerInch / 72;
// Of the head, in points as a report has them.
constexpr double TitleSize = 24;
constexpr double SelectionSize = 12;
constexpr double DistrictSize = 10;
constexpr double PrintedSize = 8.5;
constexpr double TitleBaseline = 22;
constexpr double DistrictBaseline = 10;
constexpr double PrintedBaseline = 22.2;
constexpr double SelectionBelow = 18;
constexpr double BelowBaseline = 13.5;
constexpr double Apart = 24;
constexpr QRgb Quiet = 0xff4d4d4d;
constexpr double FootHeight = 54;
constexpr double AboveRows = 102;  ///< hours and curve
constexpr double LeastPrintedRow = 4;
constexpr double LargestPrintedRow = 26;
/// A picture higher than this is more than other programs open.
constexpr double HighestPicture = 16000;
constexpr double PictureWidth = 1600;
constexpr double PictureMargin = 16;
constexpr int PdfDotsPerInch = 600;
constexpr double PageMarginMillimetres = 12;

QFont onPaper(QFont font) {
    font.setFamilies({"Roboto", font.family()});
    return font;
}

double pixelsOf(double points) { return points * PixelsPerPoint; }

double widthOf(const QFont& font, const std::string& text) {
    return QFontMetricsF(font).horizontalAdvance(controls::toQt(text));
}

QPageLayout letterAcross() {
    const double margin = PageMarginMillimetres;
    return {QPageSize(QPageSize::Letter), QPageLayout::Landscape,
            QMarginsF(margin, margin, margin, margin), QPageLayout::Millimeter};
}

}  // namespace

Pages::Pages(const Frame& shown, const QFont& font, reports::Heading heading)
    : frame_(shown), words_(onPaper(font), 1), heading_(std::move(heading)) {
    frame_.unit = 1;
    frame_.words = &words_;
    frame_.colours = &coloursOfPaper();
    frame_.faded = nullptr;
    frame_.rowHeight = std::clamp(shown.rowHeight / shown.unit, LeastPrintedRow, LargestPrintedRow);
}

QFont Pages::fontOf(double points, bool isBold) const {
    auto font = words_.font(Type::Normal);
    font.setPixelSize(qRound(pixelsOf(points)));
    font.setBold(isBold);
    return font;
}

double Pages::around() const { return head_ + AboveRows + FootHeight; }

/// What the planner chose stands beside the title where there is room, else below it.
void Pages::measureHead() {
    const double right =
        std::max(widthOf(fontOf(DistrictSize, true), heading_.district),
                 widthOf(fontOf(PrintedSize, false), reports::printedBy(heading_)));
    const double needed = widthOf(fontOf(TitleSize, true), heading_.title) +
                          widthOf(fontOf(SelectionSize, false), heading_.selection) + right +
                          2 * pixelsOf(Apart);
    isSelectionBelow_ = needed > page_.width();
    head_ = pixelsOf(TitleBaseline + (isSelectionBelow_ ? SelectionBelow : 0) + BelowBaseline) + 6;
}

void Pages::breakFor(QSizeF page) {
    const int rows = static_cast<int>(frame_.chart->rows.size());
    const double from = frame_.scale.origin;
    const double until = frame_.scale.timeAt(frame_.plot.width());
    page_ = page;
    measureHead();
    if (page.height() <= 0) {
        frame_.rowHeight =
            std::min(frame_.rowHeight, (HighestPicture - around()) / std::max(rows, 1));
        page_.setHeight(std::ceil(around() + rows * frame_.rowHeight));
    }
    const int most = std::max(1, static_cast<int>((page_.height() - around()) / frame_.rowHeight));
    firstRows_ = {0};
    for (int next = most; next < rows; next += most) {
        // A school's band never ends a page.
        const bool endsWithBand =
            most > 1 &&
            frame_.chart->rows[static_cast<std::size_t>(next - 1)].kind == RowKind::School;
        next -= endsWithBand ? 1 : 0;
        firstRows_.push_back(next);
    }
    divide(frame_, QRectF(0, head_, page_.width(), page_.height() - head_ - FootHeight));
    frame_.scale = {from, (until - from) / frame_.plot.width()};
}

std::pair<int, int> Pages::rowsOf(int page) const {
    const auto next = static_cast<std::size_t>(page) + 1;
    return {firstRows_[next - 1], next < firstRows_.size()
                                      ? firstRows_[next]
                                      : static_cast<int>(frame_.chart->rows.size())};
}

void Pages::paint(QPainter& painter, int page) {
    const auto [first, last] = rowsOf(page);
    auto frame = frame_;
    frame.top = first * frame.rowHeight;
    frame.plot.setHeight((last - first) * frame.rowHeight);
    frame.heads.setHeight(frame.plot.bottom() - frame.heads.top());
    painter.setFont(words_.font(Type::Normal));
    paintFrame(painter, frame);
    painter.setPen(frame.colours->frame);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(frame.heads.united(frame.plot).adjusted(0.5, 0.5, -0.5, -0.5));
    paintHead(painter);
    paintFoot(painter, page);
}

void Pages::paintRule(QPainter& painter, double y, double points) const {
    painter.fillRect(QRectF(0, y, page_.width(), pixelsOf(points)), Qt::black);
}

void Pages::paintHead(QPainter& painter) const {
    const auto draw = [&](double x, double baseline, const std::string& text) {
        painter.drawText(QPointF(x, pixelsOf(baseline)), controls::toQt(text));
    };
    const auto drawRight = [&](double baseline, const std::string& text) {
        draw(page_.width() - widthOf(painter.font(), text), baseline, text);
    };
    painter.setPen(Qt::black);
    painter.setFont(fontOf(TitleSize, true));
    draw(0, TitleBaseline, heading_.title);
    const double beside = widthOf(painter.font(), heading_.title) + pixelsOf(Apart);
    painter.setFont(fontOf(DistrictSize, true));
    drawRight(DistrictBaseline, heading_.district);
    painter.setFont(fontOf(SelectionSize, false));
    draw(isSelectionBelow_ ? 0 : beside, TitleBaseline + (isSelectionBelow_ ? SelectionBelow : 0),
         heading_.selection);
    painter.setFont(fontOf(PrintedSize, false));
    painter.setPen(QColor(Quiet));
    drawRight(PrintedBaseline, reports::printedBy(heading_));
    paintRule(painter, head_ - 6, 1.4);
}

void Pages::paintFoot(QPainter& painter, int page) {
    paintRule(painter, page_.height() - FootHeight + 10, 0.5);
    const QRectF foot(0, page_.height() - FootHeight + 15, page_.width(), 37);
    paintLegend(painter, frame_, foot.adjusted(0, 0, -110, 0));
    painter.setPen(Qt::black);
    painter.setFont(fontOf(DistrictSize, true));
    painter.drawText(foot, Qt::AlignRight | Qt::AlignTop,
                     controls::toQt(fmt::format("Page {} of {}", page + 1, count())));
}

std::optional<FileKind> fileKindOf(const QString& file) {
    const auto suffix = QFileInfo(file).suffix().toLower();
    return suffix == "pdf"   ? std::optional(FileKind::Pdf)
           : suffix == "svg" ? std::optional(FileKind::Svg)
           : suffix == "png" ? std::optional(FileKind::Png)
                             : std::nullopt;
}

bool printPages(Pages& pages, QPagedPaintDevice& device) {
    QPainter painter;
    if (!painter.begin(&device)) {
        return false;
    }
    const double dots = device.logicalDpiX() / PixelsPerInch;
    const auto area = device.pageLayout().paintRect(QPageLayout::Inch);
    pages.breakFor({area.width() * PixelsPerInch, area.height() * PixelsPerInch});
    for (int page = 0; page < pages.count(); ++page) {
        if (page > 0 && !device.newPage()) {
            return false;
        }
        painter.save();
        painter.scale(dots, dots);
        pages.paint(painter, page);
        painter.restore();
    }
    return painter.end();
}

namespace {

bool savePdf(Pages& pages, QIODevice& file) {
    QPdfWriter writer(&file);
    writer.setResolution(PdfDotsPerInch);
    writer.setPageLayout(letterAcross());
    writer.setTitle("Run Schedule");
    return printPages(pages, writer);
}

QSizeF pictureSize(const Pages& pages) {
    return pages.size() + QSizeF(2 * PictureMargin, 2 * PictureMargin);
}

void paintPicture(Pages& pages, QPaintDevice& device) {
    QPainter painter(&device);
    painter.fillRect(QRectF(QPointF(), pictureSize(pages)), Qt::white);
    painter.translate(PictureMargin, PictureMargin);
    pages.paint(painter, 0);
}

bool saveSvg(Pages& pages, QIODevice& file) {
    QSvgGenerator generator;
    generator.setOutputDevice(&file);
    generator.setTitle("Run Schedule");
    generator.setSize(pictureSize(pages).toSize());
    generator.setViewBox(QRectF(QPointF(), pictureSize(pages)));
    paintPicture(pages, generator);
    return true;
}

bool savePng(Pages& pages, QIODevice& file) {
    QImage image(pictureSize(pages).toSize(), QImage::Format_RGB32);
    paintPicture(pages, image);
    return image.save(&file, "PNG");
}

}  // namespace

QString savePages(Pages& pages, const QString& file, FileKind kind) {
    QSaveFile target(file);
    if (!target.open(QIODevice::WriteOnly)) {
        return target.errorString();
    }
    if (kind != FileKind::Pdf) {
        pages.breakFor({PictureWidth, 0});
    }
    // Painters do not tell what became of their writing.
    QBuffer painted;
    painted.open(QIODevice::WriteOnly);
    const bool isPainted = kind == FileKind::Pdf   ? savePdf(pages, painted)
                           : kind == FileKind::Svg ? saveSvg(pages, painted)
                                                   : savePng(pages, painted);
    if (!isPainted) {
        return "it is too large to be painted";
    }
    const auto& bytes = painted.data();
    const auto written = target.write(bytes);
    if (written >= 0 && written < bytes.size()) {
        return "the disk is full";
    }
    return target.commit() ? QString() : target.errorString();
}

}  // namespace schedule
