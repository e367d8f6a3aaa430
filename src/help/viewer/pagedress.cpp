#include "help/viewer/pagedress.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QUrl>
#include <algorithm>
#include <array>
#include <cmath>

namespace help {

namespace {

constexpr double LongestLine = 88;  // characters
constexpr double LeastMargin = 2;   // characters
constexpr double LineShare = 1.28;  // of the font's own
constexpr double Whole = 100;       // percent
constexpr double CodeShare = 0.92;
constexpr double CaptionShare = 0.92;
constexpr std::array HeadingShares{1.65, 1.3, 1.1, 1.0};

double luminance(const QColor& colour) {
    const auto part = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) +
           0.0722 * part(colour.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const auto [less, more] = std::minmax({luminance(one), luminance(other)});
    return (more + 0.05) / (less + 0.05);
}

bool isEmpty(const QTextTable& table, int row) {
    for (int column = 0; column < table.columns(); ++column) {
        const auto cell = table.cellAt(row, column);
        if (cell.firstCursorPosition() != cell.lastCursorPosition()) {
            return false;
        }
    }
    return true;
}

/// One page that is being set.
class Setting {
public:
    Setting(QTextDocument& document, const PageDress& look)
        : document_(document), look_(look), metrics_(look.font), em_(metrics_.height()) {}

    void set() {
        document_.setDefaultFont(look_.font);
        document_.setIndentWidth(em_ * 1.4);
        setMargins();
        const auto frames = document_.rootFrame()->childFrames();
        for (QTextFrame* frame : frames) {
            if (auto* table = qobject_cast<QTextTable*>(frame)) {
                setTable(*table);
            }
        }
        for (QTextBlock block = document_.begin(); block.isValid(); block = block.next()) {
            setBlock(block);
            setPieces(block);
        }
        addCaptions();
    }

private:
    void setMargins() {
        const double character = metrics_.averageCharWidth();
        const double least = look_.onPaper ? 0 : LeastMargin * character;
        room_ = look_.width - 2 * least;
        column_ = look_.onPaper ? room_ : std::min(room_, LongestLine * character);
        QTextFrameFormat format = document_.rootFrame()->frameFormat();
        document_.setDocumentMargin(0);
        format.setLeftMargin(least);
        format.setRightMargin(least);
        format.setTopMargin(look_.onPaper ? 0 : em_ * 0.4);
        format.setBottomMargin(look_.onPaper ? 0 : em_ * 2);
        document_.rootFrame()->setFrameFormat(format);
    }

    void setTable(QTextTable& table) {
        QTextTableFormat format = table.format();
        if (table.rows() > 1 && isEmpty(table, 0)) {
            table.removeRows(0, 1);
            format.setHeaderRowCount(0);
        }
        format.setBorder(0);
        format.setCellPadding(em_ * 0.35);
        format.setCellSpacing(0);
        format.setBorderCollapse(true);
        format.setWidth(
            QTextLength(QTextLength::FixedLength, holdsPicture(table) ? room_ : column_));
        format.setTopMargin(em_ * 0.4);
        format.setBottomMargin(em_ * 0.4);
        table.setFormat(format);
        for (int row = 0; row < table.rows(); ++row) {
            for (int column = 0; column < table.columns(); ++column) {
                setCell(table.cellAt(row, column), row < format.headerRowCount(), row == 0);
            }
        }
    }

    void setCell(QTextTableCell cell, bool isHead, bool isFirst) const {
        QTextTableCellFormat format = cell.format().toTableCellFormat();
        const QBrush line = look_.palette.color(isHead ? QPalette::PlaceholderText : QPalette::Mid);
        format.setBottomBorder(1);
        format.setBottomBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        format.setBottomBorderBrush(line);
        if (isFirst && !isHead) {
            format.setTopBorder(1);
            format.setTopBorderStyle(QTextFrameFormat::BorderStyle_Solid);
            format.setTopBorderBrush(line);
        }
        format.setVerticalAlignment(QTextCharFormat::AlignTop);
        if (isHead) {
            format.setFontWeight(QFont::DemiBold);
        }
        cell.setFormat(format);
    }

    void setBlock(const QTextBlock& block) const {
        QTextBlockFormat format = block.blockFormat();
        const bool inTable = QTextCursor(block).currentTable() != nullptr;
        const bool isCode = format.hasProperty(QTextFormat::BlockCodeFence);
        // Lines stand at one distance, whichever faces are in them.
        const bool isText = !isCode && !holdsPicture(block) && format.headingLevel() == 0;
        format.setLineHeight(
            isText ? em_ * LineShare : Whole,
            isText ? QTextBlockFormat::FixedHeight : QTextBlockFormat::ProportionalHeight);
        format.setTopMargin(0);
        format.setBottomMargin(inTable ? 0 : em_ * 0.6);
        format.setRightMargin(inTable || holdsPicture(block) ? 0 : room_ - column_);
        if (const int level = format.headingLevel(); level > 0) {
            format.setTopMargin(level == 1 ? em_ * 0.4 : em_ * 1.2);
            format.setBottomMargin(em_ * 0.45);
            format.setPageBreakPolicy(QTextFormat::PageBreak_Auto);
        } else if (isCode) {
            setCodeBlock(block, format);
        } else if (block.textList() != nullptr) {
            const bool isLast = block.next().textList() == nullptr;
            format.setBottomMargin(isLast ? em_ * 0.8 : em_ * 0.25);
        }
        QTextCursor(block).setBlockFormat(format);
    }

    /// Lines of one block of code stand on one ground.
    void setCodeBlock(const QTextBlock& block, QTextBlockFormat& format) const {
        const auto isCode = [](const QTextBlock& other) {
            return other.isValid() && other.blockFormat().hasProperty(QTextFormat::BlockCodeFence);
        };
        format.setBackground(look_.palette.color(QPalette::AlternateBase));
        format.setNonBreakableLines(false);
        format.setLeftMargin(em_ * 0.5);
        format.setTopMargin(isCode(block.previous()) ? 0 : em_ * 0.2);
        format.setBottomMargin(isCode(block.next()) ? 0 : em_ * 0.9);
    }

    static bool holdsPicture(const QTextBlock& block) {
        return block.text().contains(QChar::ObjectReplacementCharacter);
    }
    static bool holdsPicture(const QTextTable& table) {
        const auto end = table.lastCursorPosition().block().next();
        for (auto block = table.firstCursorPosition().block(); block != end; block = block.next()) {
            if (holdsPicture(block)) {
                return true;
            }
        }
        return false;
    }

    void setPieces(const QTextBlock& block) {
        std::vector<QTextFragment> pieces;
        for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
            pieces.push_back(piece.fragment());
        }
        for (const QTextFragment& piece : pieces) {
            QTextCursor cursor(&document_);
            cursor.setPosition(piece.position());
            cursor.setPosition(piece.position() + piece.length(), QTextCursor::KeepAnchor);
            if (piece.charFormat().isImageFormat()) {
                setPicture(cursor, piece.charFormat().toImageFormat());
            } else {
                cursor.setCharFormat(formatOf(piece.charFormat(), block));
            }
        }
    }

    [[nodiscard]] QTextCharFormat formatOf(const QTextCharFormat& written,
                                           const QTextBlock& block) const {
        QTextCharFormat format = written;
        format.clearProperty(QTextFormat::FontSizeAdjustment);
        const double size = look_.font.pointSizeF();
        if (const int level = block.blockFormat().headingLevel(); level > 0) {
            format.setFontPointSize(
                size * HeadingShares[std::min<std::size_t>(level, HeadingShares.size()) - 1]);
            format.setFontWeight(QFont::Bold);
        } else if (written.fontFixedPitch()) {
            format.setFontFamilies({QFontDatabase::systemFont(QFontDatabase::FixedFont).family()});
            format.setFontPointSize(size * CodeShare);
            format.setBackground(look_.palette.color(QPalette::AlternateBase));
        }
        if (!written.anchorHref().isEmpty()) {
            format.setForeground(linkInk(look_.palette));
            format.setFontUnderline(true);
        } else {
            format.setForeground(look_.palette.color(QPalette::Text));
        }
        return format;
    }

    /// A picture as large as it is, or as there is room.
    void setPicture(QTextCursor& cursor, QTextImageFormat format) {
        const QTextTable* table = cursor.currentTable();
        const double room =
            table == nullptr ? room_ : std::floor(room_ / table->columns() - em_ * 0.8);
        QImage picture(look_.folder + '/' + format.name());
        if (picture.isNull()) {
            return;
        }
        const double width = std::min<double>(room, picture.width());
        const double height = width * picture.height() / picture.width();
        picture = picture.scaled((QSizeF(width, height) * look_.density).toSize(),
                                 Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        frame(picture);
        picture.setDevicePixelRatio(look_.density);
        document_.addResource(QTextDocument::ImageResource, QUrl(format.name()), picture);
        format.setWidth(width);
        format.setHeight(height);
        cursor.setCharFormat(format);
        if (table == nullptr) {
            pictures_.push_back(cursor);
        }
    }

    void frame(QImage& picture) const {
        picture = picture.convertToFormat(QImage::Format_RGB32);
        QPainter painter(&picture);
        painter.setPen(look_.palette.color(QPalette::Mid));
        painter.drawRect(picture.rect().adjusted(0, 0, -1, -1));
    }

    /// What the page says of a picture stands below it, too.
    void addCaptions() {
        for (QTextCursor& cursor : pictures_) {
            const QString words =
                cursor.charFormat().property(QTextFormat::ImageAltText).toString();
            cursor.setPosition(cursor.selectionEnd());
            if (words.isEmpty() || cursor.block().length() > 2) {
                continue;
            }
            QTextCharFormat format;
            format.setFontPointSize(look_.font.pointSizeF() * CaptionShare);
            format.setForeground(look_.palette.color(QPalette::PlaceholderText));
            cursor.insertText(QString(QChar::LineSeparator) + words, format);
        }
    }

    QTextDocument& document_;
    const PageDress& look_;
    QFontMetricsF metrics_;
    double em_;          ///< the height of a line
    double room_ = 0;    ///< for pictures
    double column_ = 0;  ///< for text
    std::vector<QTextCursor> pictures_;
};

}  // namespace

void dress(QTextDocument& document, const PageDress& look) { Setting(document, look).set(); }

QColor linkInk(const QPalette& palette) {
    constexpr double Readable = 4.8;
    constexpr int Step = 112;  // percent
    const QColor ground = palette.color(QPalette::Base);
    QColor ink = palette.color(QPalette::Link);
    for (int tries = 0; tries < 10 && contrast(ink, ground) < Readable; ++tries) {
        ink = luminance(ground) < 0.5 ? ink.lighter(Step) : ink.darker(Step);
    }
    return ink;
}

}  // namespace help
