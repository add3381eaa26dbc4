#include "tools/TextTable.h"

#include <fmt/format.h>

#include <algorithm>

#include "tools/Text.h"

namespace tovi {
namespace {

std::string padded(std::string_view text, std::size_t width) {
    const std::size_t taken = displayWidth(text);
    return std::string(text) + std::string(width > taken ? width - taken : 0, ' ');
}

/// A line without the spaces that pad its last cell.
std::string finished(std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    return line + '\n';
}

}  // namespace

std::string Style::paint(std::string_view text, std::string_view code) const {
    return colour_ ? fmt::format("\x1B[{}m{}\x1B[0m", code, text) : std::string(text);
}

void TextTable::add(std::vector<std::string> cells) {
    for (std::string& cell : cells) cell = forTerminal(cell);
    cells.resize(headings_.size());
    rows_.push_back(std::move(cells));
}

std::vector<std::size_t> TextTable::widths() const {
    std::vector<std::size_t> widths(headings_.size());
    for (const auto& row : rows_) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], displayWidth(row[i]));
        }
    }
    for (std::size_t i = 0; i < widths.size(); ++i) {
        if (widths[i] > 0) widths[i] = std::max(widths[i], displayWidth(headings_[i]));
    }
    return widths;
}

std::string TextTable::text(const Style& style, std::size_t indent) const {
    const std::vector<std::size_t> width = widths();
    const auto line = [&](const std::vector<std::string>& cells) {
        std::string text(indent, ' ');
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (width[i] > 0) text += padded(cells[i], width[i]) + "  ";
        }
        return finished(std::move(text));
    };
    std::string heading = line(headings_);
    heading.pop_back();
    std::string text = style.dim(heading) + '\n';
    for (const auto& row : rows_) text += line(row);
    return text;
}

void FieldList::add(std::string_view name, std::string_view value) {
    if (!value.empty()) fields_.push_back({std::string(name), forTerminal(value)});
}

std::string FieldList::text(const Style& style, std::size_t indent) const {
    std::size_t width = 0;
    for (const Field& field : fields_) width = std::max(width, field.name.size());
    std::string text;
    for (const Field& field : fields_) {
        text += std::string(indent, ' ') + style.dim(padded(field.name, width)) + "  " +
                field.value + '\n';
    }
    return text;
}

}  // namespace tovi
