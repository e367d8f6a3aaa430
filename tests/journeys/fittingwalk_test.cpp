#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

#include "platform/controls/timebox.h"
#include "walk.h"

namespace {

/// The program on a small screen in fonts of several sizes.
class FittingWalk : public walk::Walk, public testing::WithParamInterface<int> {
protected:
    FittingWalk() { QApplication::setFont(QFont(usual_.family(), GetParam())); }
    ~FittingWalk() override { QApplication::setFont(usual_); }

    static std::string named(const QWidget& control) {
        return (control.window()->objectName() + "." + control.objectName()).toStdString();
    }
    static bool mayEnd(const QWidget& control) {
        const auto* label = qobject_cast<const QLabel*>(&control);
        return control.sizePolicy().horizontalPolicy() == QSizePolicy::Ignored ||
               (label != nullptr && label->wordWrap());
    }
    static bool isOfToolkit(const QWidget& control) {
        return control.objectName().startsWith("qt_") ||
               qobject_cast<const QTabBar*>(control.parentWidget()) != nullptr;
    }
    static void expectNothingCut(const forms::Form& form) {
        for (const QWidget* control : form.findChildren<QWidget*>()) {
            const bool isMeant = qobject_cast<const QLabel*>(control) ||
                                 qobject_cast<const QAbstractButton*>(control) ||
                                 qobject_cast<const controls::TimeBox*>(control);
            if (isMeant && !mayEnd(*control) && !control->objectName().isEmpty() &&
                !isOfToolkit(*control) && control->isVisibleTo(&form)) {
                EXPECT_GE(control->width(), control->minimumSizeHint().width()) << named(*control);
            }
        }
    }
    /// Fields and buttons may scroll downwards, never to the side.
    static void expectNothingAside(const forms::Form& form) {
        for (const QScrollArea* area : form.findChildren<QScrollArea*>()) {
            if (area->isVisibleTo(&form)) {
                EXPECT_GE(area->viewport()->width(), area->widget()->minimumSizeHint().width())
                    << named(*area->widget()) << aside(*area);
            }
        }
    }
    static std::string aside(const QScrollArea& area) {
        std::string names;
        for (const QWidget* part : area.widget()->findChildren<QWidget*>()) {
            const int right = part->mapTo(area.widget(), part->rect().topRight()).x();
            if (right > area.viewport()->width() && part->isVisibleTo(area.widget()) &&
                !part->objectName().startsWith("qt_")) {
                names += " " + part->objectName().toStdString() + ":" +
                         std::to_string(part->minimumSizeHint().width());
            }
        }
        return names;
    }

private:
    QFont usual_ = QApplication::font();
};

TEST_P(FittingWalk, NothingIsCutOrScrollsSidewaysAndEveryFormIsOnTheScreen) {
    for (const auto& station : walk::Stations) {
        const forms::Form& form = open(station);
        onEachPage(form, [&](int) {
            expectNothingCut(form);
            expectNothingAside(form);
        });
        EXPECT_TRUE(form.screen()->availableGeometry().contains(form.geometry())) << station.form;
        closeOthers(stationOf("frmTarn"));
    }
}

TEST_P(FittingWalk, FiveRowsOfTheRunsAreInSightAfterASearchAndStandStillUnderAClick) {
    open(stationOf("frmTarn"));
    click("cmdSearch");
    settle();
    auto& runs = list("RunList");
    const auto& rows = *runs.viewport();
    EXPECT_EQ(rows.visibleRegion().boundingRect(), rows.rect());
    EXPECT_GE(rows.height(), 5 * runs.visualRect(runs.model()->index(0, 0)).height());
    const auto place = rows.mapTo(&form(), QPoint());
    choose(runs, "WALK");
    settle();
    EXPECT_EQ(rows.mapTo(&form(), QPoint()), place);
}

INSTANTIATE_TEST_SUITE_P(Points, FittingWalk, testing::Values(9, 12, 16, 18));

}  // namespace
