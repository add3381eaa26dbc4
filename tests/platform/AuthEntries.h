#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

#include "tests/platform/FakeCard.h"
#include "tests/support/Failure.h"
#include "tests/support/Records.h"
#include "tovi/asn1/CoderEnv.h"
#include "tovi/interfaces/ASN1Coding.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS15AuthCT.h"
#include "tovi/interfaces/ProfileDFHandler.h"
#include "tovi/records/ASN1Object.h"
#include "tovi/records/AuthInfo.h"
#include "tovi/records/PKCS15Object.h"

/// Authentication objects as infos and as records, put together by hand, and an AODF to write them
/// to.
namespace tovi::test {

using Auth = PKCS15::AuthenticationType;
using Info = PKCS15AuthCT::Info;

inline constexpr unsigned long noIndex = ~0UL;

/// What a record says; the kind is that of its alternative.
inline Info infoOf(const Auth& value) {
    Info info;
    if (const auto* pin = value.getIf<Auth::pin>()) PKCS15AuthCT::decodePinInfo(info, *pin);
    if (const auto* bio = value.getIf<Auth::biometricTemplate>())
        PKCS15AuthCT::decodeBioInfo(info, *bio);
    if (const auto* key = value.getIf<Auth::authKey>()) PKCS15AuthCT::decodeAuthKeyInfo(info, *key);
    if (const auto* external = value.getIf<Auth::external>())
        PKCS15AuthCT::decodeExternalInfo(info, *external);
    return info;
}

/// An AODF on a card, read, and its records decoded.
class Aodf {
public:
    explicit Aodf(const std::vector<Blob>& records) {
        ASN1_configureCoderEnv(&env, ASN1_getPKCS15());
        const Blob used = join(records);
        card.files[path] = transparentFile(used + times(fileSize - used.size(), 0x00));
        card.isWritable = true;
        handler.SetFilePath(path, nullptr);
        handler.ReadFile(&card, IGNORE_TAG, true);
        for (const Blob& record : handler.records()) {
            auto value = std::make_unique<Auth>();
            ASN1::Error error;
            const bool isDecoded = ASN1::decode(record, *value, error);
            const bool isValid = isDecoded && value->isValid();
            raws.push_back({isDecoded ? value.release() : nullptr, isValid, isDecoded});
        }
    }
    ~Aodf() { clearObjects(raws); }

    unsigned long encode(const Info& info, unsigned long index) {
        return PKCS15AuthCT::encodeAuthInfoBase(&env, &card, handler, info, raws, index);
    }
    Info info(std::size_t index) const { return infoOf(*raws[index].value); }
    /// What somebody finds who reads the file now.
    Blob records() const {
        FakeCard copy = card;
        ProfileDFHandler reader({0x50, 0x15});
        reader.SetFilePath(path, nullptr);
        reader.ReadFile(&copy, IGNORE_TAG, false);
        return join(reader.records());
    }

    static inline const Blob path = {0x3F, 0x00, 0x50, 0x15, 0x44, 0x09};
    static constexpr std::size_t fileSize = 1000;

    FakeCard card;
    ProfileDFHandler handler{Blob{0x50, 0x15}};
    ASN1::CoderEnv env;
    std::vector<ASN1Object<Auth>> raws;
};

/// The record that a new info makes; it is written behind another one.
inline Blob written(const Info& info) {
    const Blob first = pin();
    Aodf aodf({first});
    EXPECT_EQ(aodf.encode(info, noIndex), 1u);
    EXPECT_EQ(aodf.raws.size(), 2u);
    const Blob records = aodf.records();
    EXPECT_TRUE(aodf.raws.back().isValid);
    EXPECT_FALSE(aodf.raws.back().isDecoded);
    const Blob record(records.begin() + first.size(), records.end());
    EXPECT_EQ(ASN1::encode(*aodf.raws.back().value), record);
    return record;
}

using Change = std::function<void(Info&)>;

/// The record after an update with what it says, changed.
inline Blob updated(const Blob& record, const Change& change) {
    const Blob neighbour = pin({.reference = 99});
    Aodf aodf({neighbour, record, neighbour});
    Info info = aodf.info(1);
    change(info);
    EXPECT_EQ(aodf.encode(info, 1), 1u);
    const Blob records = aodf.records();
    const Blob result(records.begin() + neighbour.size(), records.end() - neighbour.size());
    EXPECT_EQ(join({neighbour, result, neighbour}), records);
    EXPECT_EQ(ASN1::encode(*aodf.raws[1].value), result);
    return result;
}

inline const Failure encodingError =
    smartcardFailure("ASN1 encoding error", "PKCS15AuthCT::encodeAuthInfoBase");

/// How it fails, and that nothing has changed then.
inline Failure failureOfEncoding(const std::vector<Blob>& records, const Info& info,
                                 unsigned long index) {
    Aodf aodf(records);
    std::vector<Auth*> before;
    for (const auto& raw : aodf.raws) before.push_back(raw.value);
    const Failure failure = failureOf([&] { aodf.encode(info, index); });
    EXPECT_EQ(aodf.records(), join(records));
    EXPECT_EQ(aodf.card.writes, 0u);
    EXPECT_EQ(aodf.raws.size(), before.size());
    for (std::size_t i = 0; i < before.size(); ++i) EXPECT_EQ(aodf.raws[i].value, before[i]);
    return failure;
}

inline Failure failureOfNew(const Info& info) { return failureOfEncoding({pin()}, info, noIndex); }

inline Failure failureOfUpdate(const Blob& record, const Change& change) {
    Info info = infoOf(decoded<Auth>(record));
    change(info);
    return failureOfEncoding({record}, info, 0);
}

inline const Change withoutLabel = [](Info& info) { info.label.clear(); };

// ---- the objects ----

inline const Blob modifiable = namedBits({1});
inline const Blob bothFlags = namedBits({0, 1});
inline const Blob identifier7 = sequence(octetString({0x07}));
inline const Blob mandatoryOfPin = join({namedBits({4, 5}), enumerated(1), integer(4), integer(8)});
inline const Blob time2025 = element(0x18, text("20250101000000Z"));
inline const Blob path5016 = sequence(octetString(hex("3F005016")), integer(0), hex("80020080"));

inline Blob authRecord(std::uint8_t tag, const Blob& common, const Blob& typeAttributes) {
    return element(tag, join({common, identifier7, context(1, typeAttributes)}));
}

inline Info newPin() {
    Info info;
    info.type = AuthType::pin;
    info.authObjectId = {0x07};
    info.pinFlags = 1u << 4 | 1u << 5;  // initialized, needs-padding
    info.pinType = 1;
    info.minLength = 4;
    info.storedLength = 8;
    info.reference = 0;
    return info;
}

inline Info fullPin() {
    Info info = newPin();
    info.label = text("PIN");
    info.isPrivate = true;
    info.authId = {0x02};
    info.userConsent = 1;
    info.maxLength = 200;
    info.reference = 131;
    info.hasPadChar = true;
    info.padChar = 0xFF;
    info.lastChange = text("20250101000000Z");
    info.path = {hex("3F005016"), 0, 128};
    return info;
}

inline const Blob leastPin = authRecord(0x30, sequence(modifiable), sequence(mandatoryOfPin));
inline const Blob wholePin =
    authRecord(0x30, sequence(utf8String("PIN"), bothFlags, octetString({0x02}), integer(1)),
               sequence(mandatoryOfPin, integer(200), hex("80020083"), octetString({0xFF}),
                        time2025, path5016));

inline Info newTemplate() {
    Info info;
    info.type = AuthType::biometric;
    info.authObjectId = {0x07};
    info.bioFlags = 1u << 1;
    info.templateId = hex("00000001 00000002 00000348");
    info.bioType = 0;
    info.side = 1;
    info.finger = 3;
    info.reference = 0;
    return info;
}

inline const Blob bioFlagsAndTemplate = join({namedBits({1}), objectIdentifier({1, 2, 840})});
inline const Blob ringFinger = sequence(enumerated(1), enumerated(3));
inline const Blob leftEye = context(0, enumerated(0));

inline Blob templateRecord(const Blob& attributes) {
    return authRecord(0xA0, sequence(modifiable), sequence(bioFlagsAndTemplate, attributes));
}

inline Info newAuthKey() {
    Info info;
    info.type = AuthType::authKey;
    info.authObjectId = {0x07};
    info.authKeyId = {0x4B, 0x31};
    return info;
}

inline const Blob derivedKey =
    authRecord(0xA1, sequence(modifiable), sequence(octetString({0x4B, 0x31})));
inline const Blob storedKey =
    authRecord(0xA1, sequence(modifiable), sequence(boolean(false), octetString({0x4B, 0x31})));

inline Info newExternal() {
    Info info;
    info.type = AuthType::external;
    info.authObjectId = {0x07};
    info.cha = {0x01, 0x02, 0x03};
    return info;
}

inline const Blob certificateBased =
    authRecord(0xA2, sequence(modifiable), context(0, octetString({0x01, 0x02, 0x03})));

/// A member that may be left out.
struct Option {
    const char* name;
    Blob element;  ///< of the record when it is there
    Change set;
    Change clear;
};

}  // namespace tovi::test
