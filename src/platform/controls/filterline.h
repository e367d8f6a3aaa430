#pragma once

#include <QLineEdit>
#include <QPointer>

namespace controls {

class MultiColumnList;

/// Filters a list while the user types, and tells in the box how many of its rows are shown. Ctrl+F
/// goes there, Esc empties it first and leaves what Esc else does to the next press, Down and Enter
/// go into the list.
class FilterLine : public QLineEdit {
    Q_OBJECT

public:
    explicit FilterLine(QWidget* parent = nullptr);

    void filters(MultiColumnList& list);
    /// "37 of 812 shown"; "" while nothing is filtered.
    [[nodiscard]] QString told() const;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void follow();
    void makeRoom();
    [[nodiscard]] QString countThatFits() const;
    void getReady();
    [[nodiscard]] int widthOf(int characters) const;

    QPointer<MultiColumnList> list_;
};

}  // namespace controls
