#include "tests/asn1/CaseFile.h"

#include <cctype>
#include <fstream>

#include "tests/asn1/TestTools.h"
#include "tovi/asn1/Print.h"

namespace asn1test {

namespace {

void setField(Case& c, const std::string& key, const std::string& value) {
    if (key == "type")
        c.type = value;
    else if (key == "octets")
        c.octets = hex(value);
    else if (key == "value")
        c.value = value;
    else if (key == "again")
        c.again = hex(value);
    else if (key == "valid")
        c.isValid = value != "no";
    else if (key == "error")
        c.error = value;
    else
        throw std::runtime_error("unknown field " + key);
}

void readLine(std::vector<Case>& cases, bool& fresh, const std::string& line) {
    if (line.empty()) {
        fresh = true;
    } else if (line[0] == '#') {
        if (fresh) cases.emplace_back();
        cases.back().about += (fresh ? "" : " ") + line.substr(2);
        fresh = false;
    } else {
        const std::size_t equals = line.find('=');
        if (cases.empty() || equals == std::string::npos) throw std::runtime_error("no field");
        setField(cases.back(), collapse(line.substr(0, equals)), collapse(line.substr(equals + 1)));
    }
}

void checkDecoded(const Case& c, const ASN1::AnyValue& value) {
    EXPECT_EQ(collapse(ASN1::print(value)), c.value);
    EXPECT_EQ(ASN1::isValid(value), c.isValid);
    EXPECT_EQ(toHex(ASN1::encode(value)), toHex(c.again.value_or(c.octets)));
    const ASN1::AnyValue copy = value;
    EXPECT_EQ(ASN1::encode(copy), ASN1::encode(value)) << "a clone encodes differently";
}

}  // namespace

std::vector<Case> readCases(const std::string& file) {
    std::ifstream in(TOVI_TEST_DATA "/" + file);
    if (!in) throw std::runtime_error("cannot open " + file);
    std::vector<Case> cases;
    bool fresh = true;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        try {
            readLine(cases, fresh, line);
        } catch (const std::exception& problem) {
            throw std::runtime_error(file + ":" + std::to_string(number) + ": " + problem.what());
        }
    }
    return cases;
}

void check(const Case& c, const ASN1::Type& type) {
    ASN1::AnyValue value(type);
    ASN1::Error error;
    const bool understood = ASN1::decode(c.octets, value, error);
    EXPECT_EQ(understood ? "" : toString(error), c.error);
    if (understood && c.error.empty()) checkDecoded(c, value);
    EXPECT_LE(error.offset, c.octets.size());
}

std::string caseName(const testing::TestParamInfo<Case>& info) {
    std::string name;
    bool capital = true;
    for (char letter : info.param.about) {
        const auto code = static_cast<unsigned char>(letter);
        if (std::isalnum(code)) name += static_cast<char>(capital ? std::toupper(code) : letter);
        capital = !std::isalnum(code);
    }
    return name;
}

}  // namespace asn1test
