#pragma once

#include <QTextBrowser>
#include <QTimer>
#include <vector>

namespace help {

/// A page of the guide on the screen, set anew where the width, the font or the colours change;
/// what is read stays in sight. It goes nowhere by itself: it tells which link was followed.
class GuidePage : public QTextBrowser {
    Q_OBJECT

public:
    static constexpr int LeastZoom = 70;  ///< percent
    static constexpr int MostZoom = 250;
    static constexpr int ZoomStep = 10;

    explicit GuidePage(QWidget* parent = nullptr);

    /// Shows a page as it is written, from its beginning.
    void showPage(const QString& markdown, const QString& folder);
    void goTo(const QString& anchor);

    [[nodiscard]] int zoom() const { return zoom_; }
    void setZoom(int percent);

    /// Marks a text wherever it stands; an empty one marks nothing. Returns how often.
    int mark(const QString& text);
    /// Marks what belongs to a search of the whole guide, so many places with their lengths, and
    /// brings the first one behind the current place into sight.
    void markPlaces(const std::vector<std::pair<int, int>>& places);
    /// The place that stands out from the others, from 0; -1 is none.
    [[nodiscard]] int currentMark() const { return current_; }
    void goToMark(int mark);

    /// The page as text, each character at its place.
    [[nodiscard]] QString rawText() const { return document()->toRawText(); }

signals:
    void zoomChanged();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void set();
    void setAgain();
    void showMarks();
    [[nodiscard]] int placeInSight() const;
    void bringIntoSight(int position);

    QString markdown_;
    QString folder_;
    int zoom_ = 100;
    std::vector<QTextCursor> marks_;
    int current_ = -1;
    QTimer later_;
    int setWidth_ = 0;
    QTextDocument* page_ = nullptr;
};

}  // namespace help
