#pragma once

namespace controls {

class MultiColumnList;

/// Lets the user say which columns of a list are seen and in what order; the list follows when the
/// user is done.
void chooseColumns(MultiColumnList& list);

}  // namespace controls
