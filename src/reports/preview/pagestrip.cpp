#include "reports/preview/pagestrip.h"

#include <QAbstractListModel>
#include <QCache>
#include <QPainter>
#include <QPixmap>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTimer>

#include "reports/preview/pagepainter.h"

namespace reports {

namespace {

constexpr int Around = 8;
constexpr int LongSideInLines = 9;

}  // namespace

class PageStripModel : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    void showPages(const Pages* pages) {
        beginResetModel();
        pages_ = pages;
        count_ = laidOut();
        endResetModel();
    }
    void grow() {
        if (laidOut() > count_) {
            beginInsertRows({}, count_, laidOut() - 1);
            count_ = laidOut();
            endInsertRows();
        }
    }
    [[nodiscard]] int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : count_;
    }
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        const bool isRead = role == Qt::DisplayRole || role == Qt::AccessibleTextRole;
        return isRead ? tr("Page %1").arg(index.row() + 1) : QVariant();
    }
    [[nodiscard]] const Pages* pages() const { return pages_; }

private:
    [[nodiscard]] int laidOut() const {
        return pages_ == nullptr ? 0 : static_cast<int>(pages_->pages.size());
    }

    const Pages* pages_ = nullptr;
    int count_ = 0;
};

/// Pages as pictures, one made a turn of the event loop: all that a strip shows would hold the form
/// up.
class PagePictures {
public:
    explicit PagePictures(QWidget& shownOn) : shownOn_(shownOn) {
        nextTurn_.setSingleShot(true);
        QObject::connect(&nextTurn_, &QTimer::timeout, &shownOn_, [this] { shownOn_.update(); });
    }

    void forget() { made_.clear(); }
    /// Null where another turn makes it; the widget is painted again then.
    const QPixmap* of(const Pages& pages, int page, QSize size) {
        const QPixmap* known = made_.object(page);
        const double ratio = shownOn_.devicePixelRatioF();
        if (known != nullptr && known->size() == size * ratio) {
            return known;
        }
        if (nextTurn_.isActive()) {
            return nullptr;
        }
        nextTurn_.start();
        made_.insert(page, painted(pages, page, size, ratio));
        return made_.object(page);
    }

private:
    QPixmap* painted(const Pages& pages, int page, QSize size, double ratio) {
        auto picture = std::make_unique<QPixmap>(size * ratio);
        picture->setDevicePixelRatio(ratio);
        picture->fill(Qt::white);
        QPainter painter(picture.get());
        painter_.paint(painter, pages.pages[static_cast<std::size_t>(page)],
                       1.0 * size.width() / pages.size.width);
        return picture.release();
    }

    static constexpr int Most = 100;
    QWidget& shownOn_;
    PagePainter painter_;
    QCache<int, QPixmap> made_{Most};
    QTimer nextTurn_;
};

namespace {

/// A page with its number below it.
class PageDelegate : public QStyledItemDelegate {
public:
    PageDelegate(const PageStripModel& model, PagePictures& pictures, QObject* parent)
        : QStyledItemDelegate(parent), model_(model), pictures_(pictures) {}

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& /*index*/) const override {
        const QSize paper = paperIn(option.fontMetrics);
        return {paper.width() + 2 * Around,
                paper.height() + option.fontMetrics.height() + 2 * Around};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const QSize size = paperIn(option.fontMetrics);
        const QRect paper({option.rect.center().x() - size.width() / 2, option.rect.top() + Around},
                          size);
        const bool isCurrent = (option.state & QStyle::State_Selected) != 0;
        const QColor accent = option.palette.color(QPalette::Highlight);
        painter->save();
        painter->fillRect(paper, Qt::white);
        painter->setPen(
            QPen(isCurrent ? accent : option.palette.color(QPalette::Mid), isCurrent ? 3 : 1));
        painter->drawRect(paper.adjusted(-1, -1, 0, 0));
        painter->setPen(isCurrent ? accent : option.palette.color(QPalette::Text));
        painter->drawText(option.rect.adjusted(0, 0, 0, -Around / 2),
                          Qt::AlignHCenter | Qt::AlignBottom, QString::number(index.row() + 1));
        if (const auto* picture = pictures_.of(*model_.pages(), index.row(), size)) {
            painter->drawPixmap(paper.topLeft(), *picture);
        }
        painter->restore();
        if (option.state.testFlag(QStyle::State_HasFocus)) {
            QStyleOptionFocusRect focus;
            static_cast<QStyleOption&>(focus) = option;
            option.widget->style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter);
        }
    }

private:
    /// As large as some lines of text, so that it grows with the font.
    [[nodiscard]] QSize paperIn(const QFontMetrics& metrics) const {
        const double side = LongSideInLines * metrics.height();
        const auto size = model_.pages() == nullptr ? PageSize() : model_.pages()->size;
        return QSizeF(size.width, size.height).scaled(side, side, Qt::KeepAspectRatio).toSize();
    }

    const PageStripModel& model_;
    PagePictures& pictures_;
};

}  // namespace

PageStrip::PageStrip(QWidget* parent)
    : QListView(parent),
      model_(new PageStripModel(this)),
      pictures_(std::make_unique<PagePictures>(*viewport())) {
    setModel(model_);
    setItemDelegate(new PageDelegate(*model_, *pictures_, this));
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAccessibleName(tr("Pages in small"));
}

QSize PageStrip::sizeHint() const {
    return {LongSideInLines * fontMetrics().height() + 2 * Around +
                verticalScrollBar()->sizeHint().width() + 2 * frameWidth(),
            QListView::sizeHint().height()};
}

PageStrip::~PageStrip() = default;

void PageStrip::showPages(const Pages* pages) {
    pictures_->forget();
    model_->showPages(pages);
}

void PageStrip::grow() { model_->grow(); }

void PageStrip::complete() {
    pictures_->forget();
    viewport()->update();
}

void PageStrip::follow(int page) {
    const QScopedValueRollback rollback(following_, true);
    setCurrentIndex(model_->index(page));
}

void PageStrip::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QListView::currentChanged(current, previous);
    if (!following_ && current.isValid() && hasFocus()) {
        emit pageChosen(current.row());
    }
}

}  // namespace reports
