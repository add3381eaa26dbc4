#include "tools/FieldNames.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <span>

#include "tovi/interfaces/PKCS11.h"

namespace tovi {
namespace {

struct Attribute {
    unsigned long number;
    const char* name;
};
/// All of them are booleans.
constexpr Attribute booleanAttributes[] = {
    {CKA_PRIVATE, "CKA_PRIVATE"},
    {CKA_ENCRYPT, "CKA_ENCRYPT"},
    {CKA_DECRYPT, "CKA_DECRYPT"},
    {CKA_WRAP, "CKA_WRAP"},
    {CKA_UNWRAP, "CKA_UNWRAP"},
    {CKA_SIGN, "CKA_SIGN"},
    {CKA_SIGN_RECOVER, "CKA_SIGN_RECOVER"},
    {CKA_VERIFY, "CKA_VERIFY"},
    {CKA_VERIFY_RECOVER, "CKA_VERIFY_RECOVER"},
    {CKA_DERIVE, "CKA_DERIVE"},
    {CKA_MODIFIABLE, "CKA_MODIFIABLE"},
    {CKA_ALWAYS_AUTHENTICATE, "CKA_ALWAYS_AUTHENTICATE"},
};

const Attribute* findAttribute(unsigned long attribute) {
    const auto* found = std::find_if(std::begin(booleanAttributes), std::end(booleanAttributes),
                                     [&](const Attribute& a) { return a.number == attribute; });
    return found == std::end(booleanAttributes) ? nullptr : found;
}

// Names by position (PKCS#15 v1.1, 6.8.1, 6.8.2, 6.10); an empty one stands for none.
constexpr std::string_view pinFlags[] = {"case-sensitive",
                                         "local",
                                         "change-disabled",
                                         "unblock-disabled",
                                         "initialized",
                                         "needs-padding",
                                         "unblockingPin",
                                         "soPin",
                                         "disable-allowed",
                                         "integrity-protected",
                                         "confidentiality-protected",
                                         "exchangeRefData"};
constexpr std::string_view biometricFlags[] = {
    "", "local",           "change-disabled",     "unblock-disabled",         "initialized", "", "",
    "", "disable-allowed", "integrity-protected", "confidentiality-protected"};
constexpr std::string_view pinTypes[] = {"bcd", "ascii-numeric", "utf8", "half-nibble-bcd",
                                         "iso9564-1"};
constexpr std::string_view biometricTypes[] = {"fingerPrint", "irisScan"};
constexpr std::string_view keyTypes[] = {"RSA", "DSA", "DH", "EC"};
constexpr std::string_view operations[] = {"compute-checksum",
                                           "compute-signature",
                                           "verify-checksum",
                                           "verify-signature",
                                           "encipher",
                                           "decipher",
                                           "hash",
                                           "generate-key"};

std::optional<std::string_view> nameAt(std::span<const std::string_view> names,
                                       std::uint64_t position) {
    if (position >= names.size() || names[position].empty()) return std::nullopt;
    return names[position];
}

std::optional<unsigned> positionOf(std::string_view name, std::span<const std::string_view> names) {
    for (unsigned position = 0; position < names.size(); ++position) {
        if (!name.empty() && names[position] == name) return position;
    }
    return std::nullopt;
}

/// The number that all of `digits` are.
std::optional<std::uint32_t> parseNumber(std::string_view digits, int base) {
    std::uint32_t number = 0;
    const char* end = digits.data() + digits.size();
    const auto [rest, error] = std::from_chars(digits.data(), end, number, base);
    if (digits.empty() || rest != end || error != std::errc()) return std::nullopt;
    return number;
}

std::optional<unsigned> bitOf(std::string_view name, std::span<const std::string_view> names) {
    if (const auto position = positionOf(name, names)) return position;
    if (name.substr(0, 3) != "bit") return std::nullopt;
    const auto number = parseNumber(name.substr(3), 10);
    return number && *number < 32 ? number : std::nullopt;
}

std::vector<std::string> setBits(std::uint32_t flags, std::span<const std::string_view> names) {
    std::vector<std::string> set;
    for (unsigned bit = 0; bit < 32; ++bit) {
        if ((flags >> bit & 1) == 0) continue;
        const auto name = nameAt(names, bit);
        set.push_back(name ? std::string(*name) : fmt::format("bit{}", bit));
    }
    return set;
}

}  // namespace

std::string attributeName(unsigned long attribute) {
    const Attribute* found = findAttribute(attribute);
    return found ? found->name : fmt::format("CKA_0x{:X}", attribute);
}

std::optional<unsigned long> attributeNumber(std::string_view name) {
    for (const Attribute& attribute : booleanAttributes) {
        if (attribute.name == name) return attribute.number;
    }
    constexpr std::string_view prefix = "CKA_0x";
    if (name.substr(0, prefix.size()) != prefix) return std::nullopt;
    return parseNumber(name.substr(prefix.size()), 16);
}

bool isBooleanAttribute(unsigned long attribute) { return findAttribute(attribute) != nullptr; }

std::optional<std::string_view> keyTypeName(std::uint64_t keyType) {
    return nameAt(keyTypes, keyType);
}

std::optional<std::uint64_t> keyTypeNumber(std::string_view name) {
    return positionOf(name, keyTypes);
}

std::vector<std::string> pinFlagNames(std::uint32_t flags) { return setBits(flags, pinFlags); }

std::vector<std::string> biometricFlagNames(std::uint32_t flags) {
    return setBits(flags, biometricFlags);
}

std::optional<unsigned> pinFlagBit(std::string_view name) { return bitOf(name, pinFlags); }

std::optional<unsigned> biometricFlagBit(std::string_view name) {
    return bitOf(name, biometricFlags);
}

std::string_view operationName(std::size_t bit) { return operations[bit]; }

std::optional<unsigned> operationBit(std::string_view name) { return positionOf(name, operations); }

std::optional<std::string_view> pinTypeName(std::uint32_t pinType) {
    return nameAt(pinTypes, pinType);
}

std::optional<unsigned> pinTypeNumber(std::string_view name) { return positionOf(name, pinTypes); }

std::optional<std::string_view> biometricTypeName(std::uint64_t position) {
    return nameAt(biometricTypes, position);
}

std::optional<unsigned> biometricTypeNumber(std::string_view name) {
    return positionOf(name, biometricTypes);
}

}  // namespace tovi
