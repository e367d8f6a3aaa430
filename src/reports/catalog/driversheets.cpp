#include "reports/catalog/definition.h"

namespace reports {

namespace {

Report instructions() {
    return {.id = "driver-instructions",
            .title = "Driver instructions",
            .purpose = "A sheet a run for the driver: stops, times and the way between them",
            .form = Form::Sheet,
            .breaks = {PageBreak::Run},
            .confidential = Confidential::WithNames,
            .mayName = true,
            .mayMap = true,
            .foot = "Replaces every older sheet of this run."};
}

Definition ofRuns() {
    return {.report = instructions(),
            .ofOneRun = true,
            .runOrder = "STARTTIME, RUN",
            .fills = {fillStops, fillRiders, fillDirections, fillNeighbours}};
}

Definition ofRouteDay() {
    Definition definition = ofRuns();
    definition.report.id = "driver-day";
    definition.report.title = "Driver instructions, whole day";
    definition.report.purpose = "Every run of the route from the first in the morning to the last";
    definition.wholeDay = true;
    definition.groupOrder = "ROUTEID";
    return definition;
}

}  // namespace

std::vector<Definition> driverSheets() { return {ofRuns(), ofRouteDay()}; }

}  // namespace reports
