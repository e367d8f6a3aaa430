#include <QLabel>
#include <QScreen>
#include <QTabWidget>

#include "platform/controls/timebox.h"
#include "walk.h"

namespace {

/// The program in a font of 16 points.
class FittingWalk : public walk::Walk {
protected:
    FittingWalk() { QApplication::setFont(QFont(usual_.family(), 16)); }
    ~FittingWalk() override { QApplication::setFont(usual_); }

    static void expectWide(const QWidget& control, int needed) {
        EXPECT_GE(control.width(), needed) << control.window()->objectName().toStdString() << "."
                                           << control.objectName().toStdString();
    }
    static void expectNothingCut(const forms::Form& form) {
        for (const QWidget* control : form.findChildren<QWidget*>()) {
            const auto* label = qobject_cast<const QLabel*>(control);
            const bool mayEnd = control->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored ||
                                (label != nullptr && label->wordWrap());
            const bool isMeant = label != nullptr ||
                                 qobject_cast<const QAbstractButton*>(control) ||
                                 qobject_cast<const controls::TimeBox*>(control);
            if (isMeant && !mayEnd && !control->objectName().startsWith("qt_") &&
                !control->objectName().isEmpty() && control->isVisibleTo(&form)) {
                expectWide(*control, control->minimumSizeHint().width());
            }
        }
    }

private:
    QFont usual_ = QApplication::font();
};

TEST_F(FittingWalk, NoLabelButtonOrTimeIsCutAndEveryFormIsOnTheScreen) {
    for (const auto& station : walk::Stations) {
        forms::Form& form = open(station);
        const auto pages = form.findChildren<QTabWidget*>();
        for (int page = 0; page < (pages.empty() ? 1 : pages.front()->count()); ++page) {
            if (!pages.empty()) {
                pages.front()->setCurrentIndex(page);
            }
            for (int turn = 0; turn < 5; ++turn) {
                forms::Application::instance().yield();
            }
            expectNothingCut(form);
        }
        EXPECT_TRUE(form.screen()->availableGeometry().contains(form.geometry())) << station.form;
        closeOthers(stationOf("frmTarn"));
    }
}

}  // namespace
