#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace tovi {

/// Writes an HTML document that is well formed whatever texts it is given.
///
/// Texts and attribute values may be any octets: they are made fit for people as for a terminal
/// (forTerminal) and then escaped, so that none of them is markup. Names of elements and attributes
/// are the program's own.
class Html {
public:
    struct Attribute {
        std::string_view name;
        std::string_view value;  ///< may be a temporary of the same call
    };
    using Attributes = std::initializer_list<Attribute>;

    /// Begins a document with its DOCTYPE.
    Html();

    /// Opens an element, which close() ends.
    Html& open(std::string_view tag, Attributes attributes = {});
    /// Ends the element opened last.
    Html& close();
    /// An element without content, such as meta.
    Html& empty(std::string_view tag, Attributes attributes);
    Html& text(std::string_view text);
    /// An element that holds one text.
    Html& element(std::string_view tag, Attributes attributes, std::string_view text);
    Html& element(std::string_view tag, std::string_view text) { return element(tag, {}, text); }
    /// A style element; `css` is taken as it stands.
    Html& style(std::string_view css);

    /// Ends all open elements and gives the document away.
    std::string finish();

private:
    void beginTag(std::string_view tag, Attributes attributes);
    void escape(std::string_view text);

    std::string document_;
    std::vector<std::string_view> open_;
};

/// UTF-8 text of at most `characters` characters. A longer one ends in an ellipsis and how many
/// characters it had.
std::string shortened(std::string_view text, std::size_t characters);

/// "1 record", "2 records"; the plural is `noun` and an s.
std::string counted(std::size_t count, std::string_view noun);

}  // namespace tovi
