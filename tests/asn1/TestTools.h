#pragma once

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>

#include "tovi/asn1/Coding.h"
#include "tovi/asn1/Octets.h"

/// What the tests of the ASN.1 runtime and of the PKCS#15 module share.
namespace asn1test {

/// Octets from hex digits; blanks are skipped.
inline ASN1::Octets hex(std::string_view text) {
    ASN1::Octets octets;
    int high = -1;
    for (char c : text) {
        if (c == ' ' || c == '\n') continue;
        const int digit = c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
        if (digit < 0 || digit > 15) throw std::invalid_argument("hex digit");
        if (high < 0) {
            high = digit;
        } else {
            octets.push_back(static_cast<std::uint8_t>(high << 4 | digit));
            high = -1;
        }
    }
    if (high >= 0) throw std::invalid_argument("odd number of hex digits");
    return octets;
}

inline std::string toHex(ASN1::View octets) {
    std::string text;
    for (std::uint8_t octet : octets) {
        text += "0123456789ABCDEF"[octet >> 4];
        text += "0123456789ABCDEF"[octet & 15];
    }
    return text;
}

/// The value that the octets decode to; a test failure when they do not.
template <class T>
T decoded(ASN1::View octets) {
    T value{};
    ASN1::Error error;
    EXPECT_TRUE(ASN1::decode(octets, value, error)) << toString(error);
    return value;
}

template <class T>
T decoded(std::string_view octets) {
    return decoded<T>(ASN1::View(hex(octets)));
}

/// Why the octets do not decode; "no error" when they do.
template <class T>
std::string refusal(std::string_view octets) {
    T value{};
    ASN1::Error error;
    ASN1::decode(ASN1::View(hex(octets)), value, error);
    return toString(error);
}

template <class T>
std::string encoded(const T& value) {
    return toHex(ASN1::encode(value));
}

/// Runs of white space become one blank.
inline std::string collapse(std::string_view text) {
    std::string result;
    for (char c : text) {
        const bool blank = c == ' ' || c == '\n';
        if (!blank)
            result += c;
        else if (!result.empty() && result.back() != ' ')
            result += ' ';
    }
    while (!result.empty() && result.back() == ' ') result.pop_back();
    return result;
}

}  // namespace asn1test
