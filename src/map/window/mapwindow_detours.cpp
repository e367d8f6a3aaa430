#include <QMenu>
#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "map/shown/districtground.h"
#include "map/window/mapview.h"
#include "map/window/mapwindow.h"
#include "platform/controls/qtext.h"

#include "ui_mapwindow.h"

// Streets that one run keeps off, and corners where it may turn back.

namespace map {

using controls::toQt;

constexpr double WithinPixels = 12;
constexpr double WithinFeet = 40;

/// Whoever has sent a run takes over what it has found itself, so that there is nothing to change.
void MapWindow::addDetours(QMenu& menu, geo::Feet place) {
    if ((view_ != View::Run && view_ != View::Compared) || !asked_.empty() ||
        !shown_.way.isKnown()) {
        return;
    }
    const double within =
        std::max(WithinFeet, WithinPixels * ui_->Streets->camera().feetPerPixel());
    const auto before = stepsAt(*base_, steps_, place, within);
    if (const auto offer = detoursAt(*base_, shown_.way, place, within); offer && before.empty()) {
        addDetour(menu, tr("&Avoid This Street (%1)"), offer->street);
        if (offer->block) {
            addDetour(menu, tr("Avoid &Block (%1)"), *offer->block);
        }
        addDetour(menu, tr("Allow &U-Turn Here (%1)"), offer->uTurn);
    }
    for (const auto step : before) {
        auto rest = steps_;
        rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(step));
        const auto text = steps_[step].uTurn ? tr("&No U-Turn at %1") : tr("&Drive on %1 Again");
        on(menu.addAction(text.arg(toQt(steps_[step].street))), &QAction::triggered,
           "DriveAgain_Click", [this, rest] { detour(rest); });
    }
    if (!steps_.empty()) {
        on(menu.addAction(tr("&Forget All Detours")), &QAction::triggered, "ForgetDetours_Click",
           [this] { detour({}); });
    }
}

void MapWindow::addDetour(QMenu& menu, const QString& text, const DetourStep& step) {
    auto* action =
        menu.addAction(text.arg(toQt(step.street).replace(QLatin1Char('&'), QLatin1String("&&"))));
    action->setEnabled(step.uTurn || !step.avoided.empty());
    on(action, &QAction::triggered, "Detour_Click", [this, step] {
        auto steps = steps_;
        steps.push_back(step);
        detour(std::move(steps));
    });
}

void MapWindow::detour(std::vector<DetourStep> steps) {
    askedSteps_ = std::move(steps);
    detouring_.ask([streets = base_, steps = askedSteps_, run = shown_.run](
                       const std::stop_token&) { return withDetours(streets, steps, run); });
    ui_->Status->setText(tr("Solving the run anew..."));
    waiting_->start();
    showDetour(SoonEnough);
}

void MapWindow::showDetour(std::chrono::milliseconds patience) {
    auto found = detouring_.take(patience);
    if (!found) {
        return;
    }
    if (!found->way.isKnown()) {
        news_ = fmt::format("No way is left with that. {}", found->way.troubles.front().text);
        return tellStatus();
    }
    steps_ = askedSteps_;
    drivenOn_ = found->streets;
    ui_->Streets->setGround(found->ground);
    compareWith({.run = shown_.run, .way = std::move(found->way)});
}

void MapWindow::forgetDetours() {
    drivenOn_ = base_ = district_.streets;
    if (!std::exchange(steps_, {}).empty()) {
        ui_->Streets->setGround(groundOf(district_.streets));
    }
}

}  // namespace map
