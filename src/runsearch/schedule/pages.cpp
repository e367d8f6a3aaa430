#include "runsearch/schedule/pages.h"

#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QSvgGenerator>
#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "platform/base/ports.h"
#include "platform/controls/qtext.h"
#include "runsearch/schedule/legend.h"

namespace schedule {

namespace {

constexpr double PixelsPerInch = 96;
constexpr double PixelsPerPoint = PixelsPerInch / 72;
constexpr double HeadHeight = 40;
constexpr double FootHeight = 40;
constexpr double AboveRows = 102;  ///< hours and curve
constexpr double LeastPrintedRow = 4;
constexpr double LargestPrintedRow = 26;
/// A picture higher than this is more than other programs open.
constexpr double HighestPicture = 16000;
constexpr double PictureWidth = 1600;
constexpr double PictureMargin = 16;
constexpr int PdfDotsPerInch = 600;
constexpr double PageMarginMillimetres = 12;

QFont fontOf(QFont font, double points, bool isBold) {
    font.setPixelSize(qRound(points * PixelsPerPoint));
    font.setBold(isBold);
    return font;
}

QPageLayout letterAcross() {
    const double margin = PageMarginMillimetres;
    return {QPageSize(QPageSize::Letter), QPageLayout::Landscape,
            QMarginsF(margin, margin, margin, margin), QPageLayout::Millimeter};
}

}  // namespace

Pages::Pages(const Frame& shown, QFont font, std::string counts)
    : frame_(shown), words_(font, 1), counts_(std::move(counts)), printed_(base::Now().text()) {
    frame_.unit = 1;
    frame_.words = &words_;
    frame_.colours = &coloursOfPaper();
    frame_.faded = nullptr;
    frame_.rowHeight = std::clamp(shown.rowHeight / shown.unit, LeastPrintedRow, LargestPrintedRow);
}

void Pages::breakFor(QSizeF page) {
    const int rows = static_cast<int>(frame_.chart->rows.size());
    const double around = HeadHeight + AboveRows + FootHeight;
    const double from = frame_.scale.origin;
    const double until = frame_.scale.timeAt(frame_.plot.width());
    page_ = page;
    if (page.height() <= 0) {
        frame_.rowHeight =
            std::min(frame_.rowHeight, (HighestPicture - around) / std::max(rows, 1));
        page_.setHeight(std::ceil(around + rows * frame_.rowHeight));
    }
    const int most = std::max(1, static_cast<int>((page_.height() - around) / frame_.rowHeight));
    firstRows_ = {0};
    for (int next = most; next < rows; next += most) {
        // A school's band never ends a page.
        const bool endsWithBand =
            most > 1 &&
            frame_.chart->rows[static_cast<std::size_t>(next - 1)].kind == RowKind::School;
        next -= endsWithBand ? 1 : 0;
        firstRows_.push_back(next);
    }
    divide(frame_, QRectF(0, HeadHeight, page_.width(), page_.height() - HeadHeight - FootHeight));
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

void Pages::paintHead(QPainter& painter) {
    painter.setPen(Qt::black);
    const QRectF head(0, 0, page_.width(), HeadHeight - 8);
    painter.setFont(fontOf(words_.font(Type::Normal), 18, true));
    QRectF taken;
    painter.drawText(head, Qt::AlignLeft | Qt::AlignVCenter, "Run Schedule", &taken);
    painter.setFont(fontOf(words_.font(Type::Normal), 9, false));
    const auto right = controls::toQt(frame_.plan->district + "   " + printed_);
    QRectF rightTaken;
    painter.drawText(head, Qt::AlignRight | Qt::AlignVCenter, right, &rightTaken);
    const QRectF middle(taken.right() + 14, 2, rightTaken.left() - taken.right() - 28,
                        head.height());
    painter.drawText(middle, Qt::AlignLeft | Qt::AlignVCenter, controls::toQt(counts_));
    painter.setPen(QPen(Qt::black, 1.4 * PixelsPerPoint));
    painter.drawLine(QPointF(0, HeadHeight - 6), QPointF(page_.width(), HeadHeight - 6));
}

void Pages::paintFoot(QPainter& painter, int page) {
    const QRectF foot(0, page_.height() - FootHeight + 6, page_.width(), 20);
    paintLegend(painter, frame_, foot.adjusted(0, 0, -110, 0));
    painter.setPen(Qt::black);
    painter.setFont(fontOf(words_.font(Type::Normal), 10, true));
    painter.drawText(foot, Qt::AlignRight | Qt::AlignVCenter,
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

bool savePages(Pages& pages, const QString& file, FileKind kind) {
    QSaveFile target(file);
    if (!target.open(QIODevice::WriteOnly)) {
        return false;
    }
    if (kind != FileKind::Pdf) {
        pages.breakFor({PictureWidth, 0});
    }
    const bool isPainted = kind == FileKind::Pdf   ? savePdf(pages, target)
                           : kind == FileKind::Svg ? saveSvg(pages, target)
                                                   : savePng(pages, target);
    return isPainted && target.commit();
}

}  // namespace schedule
