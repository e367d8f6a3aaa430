#pragma once

#include <span>
#include <string>

#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "streets/solve/solve.h"

/// How a solved run stands in the routing database. Nothing is written but by writeDirections().
namespace map {

/// Puts what was found for a stop into its row of STOP_TRIPTYPE; the side where it is known.
void setFigures(ado::Recordset& row, const streets::SolvedStop& found, bool sides);

/// Puts times and totals into the row of the run, and that it needs no solving any more.
void setTotals(ado::Recordset& row, const streets::Solution& solution);

/// Replaces the directions of a run.
void writeDirections(ado::Connection& routing, const std::string& run,
                     std::span<const streets::RunStop> stops,
                     std::span<const streets::DirectionLine> lines);

}  // namespace map
