#pragma once

#include <QFont>
#include <QPagedPaintDevice>
#include <QString>
#include <vector>

#include "reports/base/report.h"
#include "runsearch/schedule/frame.h"

namespace schedule {

/// A chart on paper: the stretch of the day and the height of the rows that are looked at, all
/// rows, broken between two of them, with hours, curve, legend and the head of a report on every
/// page. Lengths are in pixels of the measures, of which an inch has 96.
class Pages {
public:
    /// `shown` is what the planner looks at; `font` has what the reports' font lacks.
    Pages(const Frame& shown, const QFont& font, reports::Heading heading);

    /// Breaks the rows for pages of that size; a height of 0 puts them all on one.
    void breakFor(QSizeF page);
    [[nodiscard]] int count() const { return static_cast<int>(firstRows_.size()); }
    [[nodiscard]] QSizeF size() const { return page_; }
    /// The rows of a page, the second one not included.
    [[nodiscard]] std::pair<int, int> rowsOf(int page) const;

    void paint(QPainter& painter, int page);

private:
    [[nodiscard]] QFont fontOf(double points, bool isBold) const;
    [[nodiscard]] double around() const;
    void measureHead();
    void paintHead(QPainter& painter) const;
    void paintRule(QPainter& painter, double y, double points) const;
    void paintFoot(QPainter& painter, int page);

    Frame frame_;
    Words words_;
    reports::Heading heading_;
    QSizeF page_;
    double head_ = 0;  ///< its height
    bool isSelectionBelow_ = false;
    std::vector<int> firstRows_;
};

/// What a file of such a name holds.
enum class FileKind { Pdf, Svg, Png };
[[nodiscard]] std::optional<FileKind> fileKindOf(const QString& file);

/// Prints all pages; false where the device took none.
bool printPages(Pages& pages, QPagedPaintDevice& device);
/// Writes them to a file: a PDF by pages, the others as one picture. Returns the system's reason
/// where it could not be written, "" where it was; a file that cannot be written whole changes
/// nothing.
[[nodiscard]] QString savePages(Pages& pages, const QString& file, FileKind kind);

}  // namespace schedule
