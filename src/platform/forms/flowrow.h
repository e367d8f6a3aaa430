#pragma once

#include <QHBoxLayout>
#include <QLayout>
#include <memory>
#include <vector>

namespace forms {

/// A row of controls that goes on in the next line where the form is too narrow for it. A label
/// stays with its field. What stretches takes what a line has left.
class FlowRow : public QLayout {
    Q_OBJECT

public:
    /// Takes over what stands in a row, in its place there.
    static void in(QHBoxLayout& row);

    ~FlowRow() override;

    void addItem(QLayoutItem* item) override;
    [[nodiscard]] int count() const override;
    [[nodiscard]] QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSize() const override;
    [[nodiscard]] Qt::Orientations expandingDirections() const override { return Qt::Horizontal; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    void setGeometry(const QRect& rect) override;

private:
    struct Part {
        std::unique_ptr<QLayoutItem> item;
        int stretch = 0;
    };
    /// The parts from..until, without the last, that stand on one line.
    struct Line {
        std::size_t from;
        std::size_t until;
    };

    [[nodiscard]] bool isWithNext(std::size_t part) const;
    [[nodiscard]] int wanted(const Part& part) const;
    [[nodiscard]] int widthOf(const Line& line, int (FlowRow::*of)(const Part&) const) const;
    [[nodiscard]] int least(const Part& part) const;
    [[nodiscard]] int heightOf(const Line& line) const;
    [[nodiscard]] std::vector<Line> linesIn(int width) const;
    [[nodiscard]] Line together(std::size_t from) const;
    void place(const Line& line, const QRect& rect) const;

    std::vector<Part> parts_;
};

}  // namespace forms
