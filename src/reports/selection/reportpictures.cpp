#include "reports/selection/reportpictures.h"

#include <QPainter>
#include <algorithm>

#include "platform/controls/qtext.h"
#include "reports/page/layout.h"
#include "reports/selection/example.h"

namespace reports {

namespace {

using controls::toQt;

constexpr int Around = 8;
constexpr double PictureInLines = 5;

int sideOf(const QFontMetrics& metrics) {
    return static_cast<int>(PictureInLines * metrics.height());
}

}  // namespace

ReportPictures::ReportPictures(const std::vector<const Report*>& reports, QObject* parent)
    : QStyledItemDelegate(parent), reports_(reports) {}

QSize ReportPictures::sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& /*index*/) const {
    const int side = sideOf(option.fontMetrics);
    constexpr int TextInPictures = 3;
    constexpr int TextLines = 6;
    return {side * TextInPictures,
            std::max(side, TextLines * option.fontMetrics.height()) + 2 * Around};
}

const QPixmap& ReportPictures::pictureOf(const Report& report, int side, qreal ratio) const {
    QPixmap& picture = pictures_[report.id];
    if (!picture.isNull()) {
        return picture;
    }
    const auto content = exampleOf(report, {.landscape = report.landscape});
    Layout layout(*content);
    layout.layPage();
    const PageSize paper = layout.pages().size;
    const QSizeF size = QSizeF(paper.width, paper.height).scaled(side, side, Qt::KeepAspectRatio);
    picture = QPixmap((size * ratio).toSize());
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    pages_.paint(painter, layout.pages().pages.front(), size.width() / paper.width);
    return picture;
}

void ReportPictures::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
    const Report& report = *reports_[static_cast<std::size_t>(index.row())];
    const bool isChosen = (option.state & QStyle::State_Selected) != 0;
    const int side = sideOf(option.fontMetrics);
    painter->save();
    painter->fillRect(option.rect, isChosen ? option.palette.color(QPalette::Highlight)
                                            : option.palette.color(QPalette::Base));
    const QPixmap& picture = pictureOf(report, side, painter->device()->devicePixelRatioF());
    const QSize shown = picture.size() / picture.devicePixelRatio();
    const QRect frame(option.rect.left() + Around + (side - shown.width()) / 2,
                      option.rect.center().y() - shown.height() / 2, shown.width(), shown.height());
    painter->drawPixmap(frame.topLeft(), picture);
    painter->setPen(option.palette.color(QPalette::Mid));
    painter->drawRect(frame.adjusted(-1, -1, 0, 0));
    QRect words = option.rect.adjusted(side + 3 * Around, Around, -Around, -Around);
    painter->setPen(option.palette.color(isChosen ? QPalette::HighlightedText : QPalette::Text));
    QFont bold = option.font;
    bold.setBold(true);
    painter->setFont(bold);
    QRect taken;
    painter->drawText(words, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, toQt(report.title),
                      &taken);
    painter->setFont(option.font);
    if (!isChosen) {
        painter->setPen(option.palette.color(QPalette::PlaceholderText));
    }
    words.setTop(taken.bottom() + Around / 2);
    painter->drawText(words, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, toQt(report.purpose));
    painter->restore();
}

}  // namespace reports
