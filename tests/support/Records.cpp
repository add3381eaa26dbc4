#include "tests/support/Records.h"

namespace tovi::test {

namespace {

Blob optionalInteger(const std::optional<std::int64_t>& value) {
    return value ? integer(*value) : Blob();
}
Blob optionalBoolean(const std::optional<bool>& value) { return value ? boolean(*value) : Blob(); }
Blob optionalText(const std::optional<std::string>& value) {
    return value ? utf8String(*value) : Blob();
}

/// PKCS15Object (6.1.11): class attributes, optional subclass attributes and type attributes.
Blob object(std::uint8_t tag, const Common& common, const Blob& classAttributes,
            const Blob& subClassAttributes, const Blob& typeAttributes) {
    const Blob subClass = subClassAttributes.empty() ? Blob() : context(0, subClassAttributes);
    return element(tag,
                   join({common.encoded(), classAttributes, subClass, context(1, typeAttributes)}));
}

Blob keyRecord(const KeyRecord& key) {
    const Blob keyAttributes = sequence(octetString(key.id), key.usage, optionalBoolean(key.native),
                                        optionalInteger(key.keyReference));
    const Blob modulusLength = key.type == Key::rsa ? integer(key.modulusLength) : Blob();
    return object(static_cast<std::uint8_t>(key.type), key.common, keyAttributes, {},
                  sequence(key.value, modulusLength, key.keyInfo));
}

Blob authRecord(std::uint8_t tag, const AuthRecord& auth, const Blob& usual) {
    return object(tag, auth.common, sequence(octetString(auth.authId)), {},
                  auth.type.empty() ? usual : auth.type);
}

Blob algorithmInfo(const AlgorithmRecord& algorithm) {
    return sequence(integer(algorithm.reference), integer(algorithm.algorithm), null(),
                    algorithm.supportedOperations, algorithm.algId);
}

}  // namespace

Blob path(std::string_view hexSteps) { return sequence(octetString(hex(hexSteps))); }

Blob path(std::string_view hexSteps, std::int64_t index, std::int64_t length) {
    Blob lengthElement = retagged(0x80, integer(length));
    return sequence(octetString(hex(hexSteps)), integer(index), lengthElement);
}

Blob Common::encoded() const {
    return sequence(optionalText(label), flags, authId ? octetString(*authId) : Blob(),
                    optionalInteger(userConsent), accessControlRules);
}

Blob acceptableRules() {
    return sequence(sequence(namedBits({0}), octetString({0x01})));  // read, with PIN 01
}

Blob unacceptableRules() { return sequence(); }

Blob privateKey(const KeyRecord& key) { return keyRecord(key); }
Blob publicKey(const KeyRecord& key) { return keyRecord(key); }

Blob secretKey(const SecretKeyRecord& key) {
    const Blob keyAttributes = sequence(octetString(key.id), key.usage, optionalBoolean(key.native),
                                        optionalInteger(key.keyReference));
    return object(static_cast<std::uint8_t>(key.type), key.common, keyAttributes,
                  key.keyLen ? sequence(integer(*key.keyLen)) : key.subClass, sequence(key.value));
}

Blob certificate(const CertificateRecord& certificate) {
    return object(static_cast<std::uint8_t>(certificate.type), certificate.common,
                  sequence(octetString(certificate.id), certificate.trustedUsage), {},
                  sequence(certificate.value, certificate.serialNumber));
}

Blob trustedUsage(std::initializer_list<Blob> extKeyUsage, const Blob& keyUsage) {
    const Blob purposes = extKeyUsage.size() == 0 ? Blob() : element(0x30, join(extKeyUsage));
    return context(1, keyUsage, purposes);
}

Blob smartcardLogon() { return objectIdentifier({1, 3, 6, 1, 4, 1, 311, 20, 2, 2}); }
Blob serverAuthentication() { return objectIdentifier({1, 3, 6, 1, 5, 5, 7, 3, 1}); }

Blob dataRecord(const DataRecord& data) {
    const Blob value =
        data.type == Data::oid ? sequence(objectIdentifier({1, 2, 3}), data.value) : data.value;
    return object(static_cast<std::uint8_t>(data.type), data.common,
                  sequence(optionalText(data.applicationName), data.applicationOID), {}, value);
}

Blob pin(const AuthRecord& auth) {
    return authRecord(0x30, auth,
                      sequence(namedBits({4}), enumerated(1), integer(4), integer(8),
                               retagged(0x80, integer(auth.reference))));
}

Blob biometricTemplate(const AuthRecord& auth) {
    return authRecord(0xA0, auth,
                      sequence(namedBits({4}), objectIdentifier({1, 2, 3}),
                               sequence(enumerated(0), enumerated(1)), integer(auth.reference)));
}

Blob authKey(const AuthRecord& auth) {
    return authRecord(0xA1, auth, sequence(octetString(auth.authKeyId)));
}

Blob externalByCertificate(const AuthRecord& auth) {
    return authRecord(0xA2, auth, context(0, octetString({0x11, 0x22})));
}

Blob externalByKey(const AuthRecord& auth) {
    return authRecord(0xA2, auth, sequence(octetString(auth.authKeyId)));
}

Blob unknownAuthObject() { return retagged(0xAA, pin()); }

Blob tokenInfo(const TokenInfoRecord& token) {
    Blob algorithms;
    if (token.supportedAlgorithms) {
        std::vector<Blob> entries;
        for (const AlgorithmRecord& algorithm : *token.supportedAlgorithms)
            entries.push_back(algorithmInfo(algorithm));
        algorithms = context(2, join(entries));
    }
    return sequence(
        integer(token.version), token.serialNumber ? octetString(*token.serialNumber) : Blob(),
        optionalText(token.manufacturerID),
        token.label ? contextPrimitive(0, text(*token.label)) : Blob(), token.flags, algorithms);
}

Blob odfEntry(unsigned kind, const Blob& path) { return context(kind, path); }

Blob undecodable() { return sequence(integer(1)); }

}  // namespace tovi::test
