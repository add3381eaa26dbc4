#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tovi {

/// Puts colour on text where a terminal wants it, and leaves it alone elsewhere.
class Style {
public:
    explicit Style(bool colour) : colour_(colour) {}

    std::string heading(std::string_view text) const { return paint(text, "1"); }
    std::string dim(std::string_view text) const { return paint(text, "2"); }
    std::string warning(std::string_view text) const { return paint(text, "33"); }
    std::string error(std::string_view text) const { return paint(text, "31"); }

private:
    std::string paint(std::string_view text, std::string_view code) const;
    bool colour_;
};

/// Rows of cells under headings, each column as wide as its widest cell. Columns that are empty in
/// every row are left out. Cells are made fit for a terminal here.
class TextTable {
public:
    explicit TextTable(std::vector<std::string> headings) : headings_(std::move(headings)) {}

    /// A row with fewer cells than headings ends in empty ones.
    void add(std::vector<std::string> cells);
    bool empty() const { return rows_.empty(); }
    /// The lines of the table, each indented by `indent` spaces and ended by a line feed.
    std::string text(const Style& style, std::size_t indent = 2) const;

private:
    std::vector<std::size_t> widths() const;

    std::vector<std::string> headings_;
    std::vector<std::vector<std::string>> rows_;
};

/// Names and values in two columns, one pair a line; pairs without a value are left out.
class FieldList {
public:
    void add(std::string_view name, std::string_view value);
    std::string text(const Style& style, std::size_t indent = 2) const;

private:
    struct Field {
        std::string name, value;
    };
    std::vector<Field> fields_;
};

}  // namespace tovi
