#include "tools/Redaction.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "TestCommand.h"
#include "tools/AsnJson.h"
#include "tools/Segment.h"
#include "tools/Text.h"
#include "tovi/asn1/Coding.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi::test {
namespace {

const FileKind& privateKeyFile = directoryFileKind(0);
const FileKind& certificateFile = directoryFileKind(4);
const FileKind& dataFile = directoryFileKind(7);

Blob octets(const std::string& hex) {
    std::string digits = hex;
    digits.erase(std::remove(digits.begin(), digits.end(), ' '), digits.end());
    return *fromHex(digits);
}

/// The record as it is after blanking, in hex.
template <class Type>
std::string blanked(const std::string& hex) {
    Redaction redaction;
    return toHex(redaction.record(Type::type, octets(hex)));
}

std::string hex(const std::string& spaced) { return toHex(octets(spaced)); }

TEST(RedactedRecord, BlanksTheTextsOfTokenInfoAndKeepsTheRest) {
    EXPECT_EQ(blanked<PKCS15::TokenInfo>("302A 020100 0404 DEADBEEF 0C04 41636D65 8005 416C696365"
                                         "03020640 A20E 300C 020101 020101 0500 03020640"),
              hex("302A 020100 0404 00000000 0C04 78787878 8005 7878787878"
                  "03020640 A20E 300C 020101 020101 0500 03020640"));
}

TEST(RedactedRecord, KeepsShortIdentifiersAndPaths) {
    EXPECT_EQ(blanked<PKCS15::PrivateKeyType>("3026 300D 0C04 4B455931 03020780 040101"
                                              "3007 040145 03020264"
                                              "A10C 300A 3004 04024B01 02020400"),
              hex("3026 300D 0C04 78787878 03020780 040101"
                  "3007 040145 03020264"
                  "A10C 300A 3004 04024B01 02020400"));
}

TEST(RedactedRecord, BlanksTheIdentityInACertificateEntry) {
    // Common, class with iD and trustedUsage left out, then value by path, subject, issuer, serial.
    EXPECT_EQ(blanked<PKCS15::CertificateType>("3038 3004 0C02 4142"
                                               "3003 040101"
                                               "A12B 3029 3004 04024E01"
                                               "300F 310D 300B 06035504 03 0C04 426F6273"
                                               "A00B 3009 3107 3005 06015A 0500"
                                               "02031234 56"),
              hex("3038 3004 0C02 7878"
                  "3003 040101"
                  "A12B 3029 3004 04024E01"
                  "300F 310D 300B 06035504 03 0C04 78787878"
                  "A00B 3009 3107 3005 06015A 0500"
                  "02030101 01"));
}

TEST(RedactedRecord, BlanksDirectValues) {
    // An opaque object: SEQUENCE { OCTET STRING, UTF8String, [0] octets, BIT STRING, UTCTime }.
    EXPECT_EQ(blanked<PKCS15::DataType>("3037 3000 300B 0C04 4D617073 0603 2A0304"
                                        "A126 A024 3022"
                                        "0402 AABB 0C01 41 8002 1234 0303 04 F0F0"
                                        "170D 3234303133313132303030305A 0101FF"),
              hex("3037 3000 300B 0C04 78787878 0603 2A0304"
                  "A126 A024 3022"
                  "0402 0000 0C01 78 8002 0000 0303 04 0000"
                  "170D 3030303030303030303030305A 0101FF"));
}

TEST(RedactedRecord, BlanksUnknownElementsButTheirTags) {
    // A member of a later edition behind those of the common attributes, and a whole alternative.
    EXPECT_EQ(blanked<PKCS15::DataType>("3012 3006 9E04 42 6F6273 3000 A106 3004 0402 4F01"),
              hex("3012 3006 9E04 00 000000 3000 A106 3004 0402 4F01"));
    EXPECT_EQ(blanked<PKCS15::DataType>("AB06 3004 0C02 4142"), hex("AB06 3004 0C02 7878"));
}

TEST(RedactedRecord, BlanksStringsInPiecesAndIndefiniteLengths) {
    EXPECT_EQ(
        blanked<PKCS15::DataType>("3080 3008 2C06 0C01 41 0C01 42 3000 A106 3004 04024F01 0000"),
        hex("3080 3008 2C06 0C01 78 0C01 78 3000 A106 3004 04024F01 0000"));
}

TEST(RedactedRecord, BlanksAUrl) {
    EXPECT_EQ(blanked<PKCS15::DataType>("300B 3000 3000 A105 1303 61 2F 62"),
              hex("300B 3000 3000 A105 1303 78 78 78"));
}

TEST(RedactedRecord, KeepsWhereTheApplicationIs) {
    EXPECT_EQ(blanked<PKCS15::DIRRecord>("611D 4F05 A000000063 5004 426F6273 5102 5015"
                                         "730A 0602 2A03 3004 0402 5131"),
              hex("611D 4F05 A000000063 5004 78787878 5102 5015"
                  "730A 0602 2A03 3004 0402 5131"));
}

TEST(RedactedIdentifier, IsTheSameEverywhereAndOfTheSameLength) {
    Redaction redaction;
    const Blob first = octets("AABBCC"), second = octets("AABBCD"), longer = octets("AABBCCDD");
    EXPECT_EQ(redaction.identifier(first), octets("000001"));
    EXPECT_EQ(redaction.identifier(second), octets("000002"));
    EXPECT_EQ(redaction.identifier(longer), octets("00000001"));
    EXPECT_EQ(redaction.identifier(first), octets("000001"));
    EXPECT_EQ(redaction.identifier(octets("4142")), octets("4142"));
    EXPECT_EQ(redaction.identifier({}), Blob{});
}

TEST(RedactedIdentifier, KeepsTheSInFrontOfThatOfASignatureKey) {
    Redaction redaction;
    const Blob exchange = redaction.identifier(octets("AABBCC"));
    Blob signature = octets("53");
    signature.append(exchange);
    EXPECT_EQ(redaction.identifier(octets("53AABBCC")), signature);
    EXPECT_EQ(redaction.identifier(octets("5301")), octets("5301"));
    EXPECT_EQ(redaction.identifier(Blob(100000, 'S')), Blob(100000, 'S'));
}

// ---- files ----

DirectoryFile transparent(const std::string& hex) {
    DirectoryFile file;
    const Blob contents = octets(hex);
    file.octets.assign(contents.begin(), contents.end());
    file.size = contents.size();
    file.isWhole = true;
    return file;
}

struct Piece {
    Segment::Kind kind;
    std::size_t slot, offset, length;
    bool operator==(const Piece&) const = default;
};

std::vector<Piece> piecesOf(const FileKind& kind, const DirectoryFile& file) {
    std::vector<Piece> pieces;
    for (const Segment& segment : segmentsOf(kind, file)) {
        pieces.push_back({segment.kind, segment.slot, segment.offset, segment.octets.size()});
    }
    return pieces;
}

/// The contents after blanking, whose pieces must be those from before.
std::string blankedFile(const FileKind& kind, const std::string& contents) {
    const DirectoryFile file = transparent(contents);
    Redaction redaction;
    const DirectoryFile result = redaction.file(kind, file);
    EXPECT_EQ(piecesOf(kind, result), piecesOf(kind, file)) << contents;
    return toHex(Blob(result.octets.begin(), result.octets.end()));
}

TEST(RedactedFile, KeepsPaddingAndBlanksWhatDoesNotDecodeBehindItsHeader) {
    EXPECT_EQ(blankedFile(privateKeyFile, "00FF 3004 0C02 4142 FF00FF"),
              hex("00FF 3004 0000 0000 FF00FF"));
    EXPECT_EQ(blankedFile(certificateFile, "3082 0004 0C02 4142"), hex("3082 0004 0000 0000"));
}

TEST(RedactedFile, BlanksBrokenRecordsToTheEnd) {
    EXPECT_EQ(blankedFile(dataFile, "AB00 3020 0C02 4142"), hex("AB00 3020 0000 0000"));
    EXPECT_EQ(blankedFile(dataFile, "3080 4142 4344"), hex("3080 FFFF FFFF"));
    EXPECT_EQ(blankedFile(dataFile, "30FF 4142"), hex("30FF FFFF"));
    EXPECT_EQ(blankedFile(dataFile, "3FFFFFFF 4142"), hex("3FFFFFFF FFFF"));
    EXPECT_EQ(blankedFile(dataFile, "AB00 30"), hex("AB00 30"));
    EXPECT_EQ(blankedFile(dataFile, "AB00 308201"), hex("AB00 308201"));
}

TEST(RedactedFile, KeepsARecordBehindPaddingOutOfAnErasedOne) {
    std::string contents = "0000 3030 30";
    for (int i = 0; i < 47; ++i) contents += "41";
    EXPECT_EQ(blankedFile(dataFile, contents).substr(0, 12), "000030303000");
}

TEST(RedactedFile, BlanksErasedRecordsThatStayErased) {
    EXPECT_EQ(blankedFile(dataFile, "0006 3004 0C02 4142 AB00"), hex("0006 0000 0000 0000 AB00"));
    EXPECT_EQ(blankedFile(dataFile, "0081 02 4142 AB00"), hex("0081 02 0000 AB00"));
    std::string contents = "00 30 30 2E 0C2C";
    for (int i = 0; i < 44; ++i) contents += "41";
    const std::string result = blankedFile(dataFile, contents + "AB00");
    EXPECT_EQ(result.find("41"), std::string::npos);
}

TEST(RedactedFile, BlanksStaleOctets) {
    EXPECT_EQ(blankedFile(dataFile, "AB00 4142 4344"), hex("AB00 8000 0000"));
    EXPECT_EQ(blankedFile(dataFile, "41"), "80");
}

TEST(RedactedFile, OpensTheSequenceAroundTheEntriesOfTheODF) {
    EXPECT_EQ(blankedFile(odfFile, "3010 A006 3004 0402 4401 A106 3004 0402 4402"),
              hex("3010 A006 3004 0402 4401 A106 3004 0402 4402"));
}

TEST(RedactedFile, BlanksRecordsOfLinearFiles) {
    DirectoryFile file;
    file.info.structure = FileStructure::linearVariable;
    file.slots = {octets("AB04 0C02 4142 0000"),
                  octets("4142"),
                  octets("00 41"),
                  octets("FFFF"),
                  octets(""),
                  octets("AB00 41")};
    for (std::uint32_t i = 0; i < file.slots.size(); ++i) {
        const std::size_t length = recordInSlot(file.slots[i]);
        if (length > 0) file.places.push_back({i, static_cast<std::uint32_t>(length)});
    }
    Redaction redaction;
    const DirectoryFile result = redaction.file(dataFile, file);
    EXPECT_EQ(piecesOf(dataFile, result), piecesOf(dataFile, file));
    EXPECT_EQ(result.slots,
              (std::vector<Blob>{octets("AB04 0C02 7878 0000"), octets("8000"), octets("0001"),
                                 octets("FFFF"), octets(""), octets("AB00 80")}));
}

// ---- values ----

std::string blankedValue(const std::string& hex) {
    Redaction redaction;
    return toHex(redaction.value(octets(hex)));
}

TEST(RedactedValue, KeepsTheStructureOfDer) {
    EXPECT_EQ(blankedValue("3009 0C03 426F62 0202 1234 FFFF"),
              hex("3009 0C03 787878 0202 0101 FFFF"));
    EXPECT_EQ(blankedValue("3003 0C01 41 0000 3003 0C01 42"),
              hex("3003 0C01 78 0000 3003 0C01 78"));
}

TEST(RedactedValue, BlanksEverythingElse) {
    EXPECT_EQ(blankedValue("426F6273"), "00000000");
    EXPECT_EQ(blankedValue("3003 0C01 41 4142"), hex("3003 0C01 78 0000"));
    EXPECT_EQ(blankedValue("3005 0C09 41 42 43"), hex("3005 0000 00 00 00"))
        << "what does not fit into it is no element";
    EXPECT_EQ(blankedValue("3009 4142"), "00000000");
    EXPECT_EQ(blankedValue(""), "");
}

}  // namespace
}  // namespace tovi::test
