#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "tovi/asn1/Type.h"

namespace pkcs15test {

/// The text of the module PKCS-15, cut into its assignments, in a form to compare tables with.
///
/// Normalized notation has single blanks, numbers for named bounds, no informal constraints, and
/// expanded abbreviations: `ECPrivateKey` is INTEGER, `PrivateKeyObject {X}` is the PKCS15Object it
/// stands for. Open types and imported types that are kept as they came are ANY. Where the C++ side
/// departs in name or order (Path.efidOrPath, the order of ReferencedValue) it is changed to what
/// C++ has.
class ModuleText {
public:
    explicit ModuleText(const std::string& file);

    /// Names of all types the module defines, in its order.
    const std::vector<std::string>& typeNames() const { return typeNames_; }
    bool defines(const std::string& name) const { return assignments_.contains(name); }
    /// Whether the name only stands for another type, which has no table of its own.
    bool isAbbreviation(const std::string& name) const;
    std::string normalized(const std::string& notation) const;
    /// The normalized assignment of the type, with the type's parameters in place of the formal
    /// ones.
    std::string assignment(const ASN1::Type& type) const;

private:
    struct Assignment {
        std::vector<std::string> parameters;
        std::string body;
    };
    void readBounds(const std::string& text);
    void readAssignments(const std::string& text);
    std::string expand(const std::string& text) const;
    std::string replaceNames(const std::string& text) const;

    std::vector<std::string> typeNames_;
    std::map<std::string, Assignment> assignments_;
    std::map<std::string, std::string> bounds_;
};

}  // namespace pkcs15test
