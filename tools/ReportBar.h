#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/Html.h"

namespace tovi {

/// A stretch of a file in its bar.
struct BarCell {
    std::string_view kind;   ///< the class that gives it its look: "record", "gap" and so on
    std::size_t weight = 0;  ///< its share of the bar
    std::string title;       ///< what it is, and where
    std::string href;        ///< the id of what it leads to; empty: nothing
};

/// A bar of cells, each as wide as its share. Neighbours of one kind that are too narrow to be seen
/// become one, so that thousands of records do not become thousands of cells.
void writeBar(Html& html, const std::string& name, std::vector<BarCell> cells);

}  // namespace tovi
