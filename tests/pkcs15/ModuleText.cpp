#include "tests/pkcs15/ModuleText.h"

#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>

#include "tests/asn1/TestTools.h"
#include "tovi/asn1/Notation.h"

namespace pkcs15test {

namespace {

using asn1test::collapse;

std::string replaceAll(std::string text, const std::string& pattern, const std::string& by) {
    return std::regex_replace(text, std::regex(pattern), by);
}

/// Where the brace that opens at `open` is closed.
std::size_t closingBrace(const std::string& text, std::size_t open) {
    int depth = 0;
    for (std::size_t at = open; at < text.size(); ++at) {
        depth += text[at] == '{' ? 1 : text[at] == '}' ? -1 : 0;
        if (depth == 0) return at;
    }
    throw std::runtime_error("unbalanced braces");
}

std::vector<std::string> splitParameters(const std::string& text) {
    std::vector<std::string> parts;
    int depth = 0;
    std::string part;
    for (char c : text) {
        depth += c == '{' ? 1 : c == '}' ? -1 : 0;
        if (c == ',' && depth == 0) {
            parts.push_back(collapse(part));
            part.clear();
        } else {
            part += c;
        }
    }
    parts.push_back(collapse(part));
    return parts;
}

/// Whole words only; a hyphen belongs to a word.
std::string replaceWord(const std::string& text, const std::string& word, const std::string& by) {
    return replaceAll(text, "(^|[^A-Za-z0-9-])" + word + "(?![A-Za-z0-9-])", "$1" + by);
}

/// Spacing that carries no meaning, and constraints that are notes.
std::string tidy(std::string text) {
    text = collapse(text);
    text = replaceAll(text, R"(\( ?CONSTRAINED BY \{[^}]*\} ?\))", "");
    text = replaceAll(text, R"(\( ?WITH COMPONENTS \{[^}]*\}( \| WITH COMPONENTS \{[^}]*\})* ?\))",
                      "");
    text = replaceAll(text, R"( ?([{}(),]) ?)", "$1");
    return collapse(text);
}

/// What follows a "::=", as far as it belongs to the assignment.
std::string bodyOf(const std::string& rest) {
    // The line of the next "::=" belongs to the next assignment.
    std::string body = rest.substr(0, rest.find("::="));
    body = body.substr(0, body.rfind('\n'));
    const std::size_t open = body.find('{');
    if (open == std::string::npos) return body.substr(0, body.find("\n\n"));
    const std::size_t close = closingBrace(body, open);
    const std::size_t next = body.find_first_not_of(" \n", close + 1);
    const bool hasConstraint = next != std::string::npos && body[next] == '(';
    return body.substr(0, (hasConstraint ? body.rfind(')') : close) + 1);
}

}  // namespace

ModuleText::ModuleText(const std::string& file) {
    std::ifstream in(file);
    if (!in) throw std::runtime_error("cannot open " + file);
    std::stringstream text;
    text << in.rdbuf();
    const std::string all = text.str();
    const std::size_t imports = all.find("IMPORTS");
    const std::string body = all.substr(all.find(';', imports) + 1);
    readBounds(body);
    readAssignments(body);
}

void ModuleText::readBounds(const std::string& text) {
    const std::regex row(R"((pkcs15-[ul]b-\w+)\s+INTEGER ::= ([\w-]+))");
    for (std::sregex_iterator at(text.begin(), text.end(), row), end; at != end; ++at) {
        const std::string value = (*at)[2];
        bounds_[(*at)[1]] = bounds_.contains(value) ? bounds_[value] : value;
    }
}

void ModuleText::readAssignments(const std::string& text) {
    // A type begins with a capital and is no information object class.
    const std::regex row(R"((?:^|\n)([A-Z][\w-]*)\s*(\{[^}=]*\})?\s*::=\s*)");
    for (std::sregex_iterator at(text.begin(), text.end(), row), end; at != end; ++at) {
        const std::string body =
            bodyOf(text.substr(static_cast<std::size_t>(at->position() + at->length())));
        if (body.starts_with("CLASS") || body.starts_with("TYPE-IDENTIFIER")) continue;
        typeNames_.push_back((*at)[1]);
        Assignment& assignment = assignments_[typeNames_.back()];
        assignment.body = tidy(body);
        if (!(*at)[2].matched) continue;
        const std::string formal = (*at)[2];
        assignment.parameters = splitParameters(formal.substr(1, formal.size() - 2));
    }
}

bool ModuleText::isAbbreviation(const std::string& name) const {
    const std::string& body = assignments_.at(name).body;
    return assignments_.contains(body.substr(0, body.find_first_of(" {(")));
}

std::string ModuleText::expand(const std::string& text) const {
    std::string result = text;
    for (const auto& [name, assignment] : assignments_) {
        if (!isAbbreviation(name)) continue;
        if (assignment.parameters.empty()) {
            result = replaceWord(result, name, assignment.body);
            continue;
        }
        for (std::size_t at; (at = result.find(name + "{")) != std::string::npos;) {
            const std::size_t open = at + name.size(), close = closingBrace(result, open);
            std::string body = assignment.body;
            const auto actual = splitParameters(result.substr(open + 1, close - open - 1));
            for (std::size_t i = 0; i < actual.size(); ++i)
                body = replaceWord(body, assignment.parameters[i], actual[i]);
            result = result.substr(0, at) + body + result.substr(close + 1);
        }
    }
    return result;
}

std::string ModuleText::replaceNames(const std::string& text) const {
    std::string result = text;
    for (const auto& [name, number] : bounds_) result = replaceAll(result, name, number);
    // The parameter of these never reaches the wire, and the C++ types have none.
    for (const char* name : {"ReferencedValue", "EnvelopedData", "EncryptedContentInfo"})
        for (std::size_t at = 0;
             (at = result.find(std::string(name) + "{", at)) != std::string::npos;) {
            const std::size_t open = at + std::string(name).size();
            result = result.substr(0, open) + result.substr(closingBrace(result, open) + 1);
        }
    for (const char* name : {"ECPrivateKey", "DHPrivateKey", "DSAPrivateKey", "KEAPrivateKey",
                             "CertificateSerialNumber", "DiffieHellmanPublicNumber"})
        result = replaceWord(result, name, "INTEGER");
    result = replaceWord(result, "ECPoint", "OCTET STRING");
    result = replaceWord(result, "PublicKeyOperations", "Operations");
    for (const char* name : {R"(PKCS15-OPAQUE\.&Type)", "Certificate", "AttributeCertificate"})
        result = replaceWord(result, name, "ANY");
    return result;
}

std::string ModuleText::normalized(const std::string& notation) const {
    const std::string tidied = tidy(notation);
    const std::size_t is = tidied.find("::=");
    return tidy(replaceNames(expand(tidied.substr(is + 3))));
}

std::string ModuleText::assignment(const ASN1::Type& type) const {
    const std::string name(type.name);
    const Assignment& found = assignments_.at(name);
    std::string body = found.body;
    if (!type.parameters.empty()) {
        for (std::size_t i = 0; i < found.parameters.size(); ++i)
            body = replaceWord(
                body, found.parameters[i],
                std::string(type.parameters[i]->name) + "\x01" + std::to_string(i) + "\x01");
        for (std::size_t i = 0; i < found.parameters.size(); ++i) {
            // Parameters that have parameters of their own print with them.
            std::string full = ASN1::notation(*type.parameters[i]);
            full = tidy(full.substr(0, full.find(" ::=")));
            const std::string marked =
                std::string(type.parameters[i]->name) + "\x01" + std::to_string(i) + "\x01";
            for (std::size_t at; (at = body.find(marked)) != std::string::npos;)
                body.replace(at, marked.size(), full);
        }
    }
    if (name == "Path") body = replaceWord(body, "path", "efidOrPath");
    if (name == "ReferencedValue") body = "CHOICE{url URL,path Path}";
    return normalized("X ::= " + body);
}

}  // namespace pkcs15test
