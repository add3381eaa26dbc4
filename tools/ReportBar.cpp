#include "tools/ReportBar.h"

#include <fmt/format.h>

#include <utility>

namespace tovi {
namespace {

constexpr std::size_t fewCells = 300;  // which all have a pixel or more

/// Neighbours of one kind that together are less than a `fewCells`th of the bar.
std::vector<BarCell> merged(std::vector<BarCell> cells) {
    if (cells.size() <= fewCells) return cells;
    std::size_t all = 0;
    for (const BarCell& cell : cells) all += cell.weight;
    std::vector<BarCell> fewer;
    std::size_t count = 0;  // of cells in the last one
    const auto finish = [&] {
        if (count > 1) fewer.back().title += fmt::format(", and {} more", count - 1);
    };
    for (BarCell& cell : cells) {
        const bool joins = !fewer.empty() && fewer.back().kind == cell.kind &&
                           (fewer.back().weight + cell.weight) * fewCells < all;
        if (joins) {
            fewer.back().weight += cell.weight;
            ++count;
            continue;
        }
        finish();
        fewer.push_back(std::move(cell));
        count = 1;
    }
    finish();
    return fewer;
}

void writeCell(Html& html, const BarCell& cell) {
    const std::string share = fmt::format("flex-grow:{}", cell.weight);
    if (cell.href.empty()) {
        html.element("span",
                     {{"class", cell.kind},
                      {"style", share},
                      {"role", "img"},
                      {"tabindex", "0"},
                      {"aria-label", cell.title}},
                     "");
    } else {
        html.element("a",
                     {{"class", cell.kind},
                      {"style", share},
                      {"href", "#" + cell.href},
                      {"aria-label", cell.title}},
                     "");
    }
}

}  // namespace

void writeBar(Html& html, const std::string& name, std::vector<BarCell> cells) {
    html.open("div", {{"class", "bar"}, {"role", "group"}, {"aria-label", name}});
    html.open("div", {{"class", "cells"}});
    for (const BarCell& cell : merged(std::move(cells))) writeCell(html, cell);
    html.close().close();
}

}  // namespace tovi
