#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/Der.h"

/// Records of directory files (PKCS#15 v1.1, clause 6), described by what tests care about. A
/// description without further words gives the smallest record of its kind.
///
/// Members of type Blob that are empty leave their element out; where a comment says "element", the
/// octets go into the record as they are.
namespace tovi::test {

/// A value in a file: Path with two octets a step.
Blob path(std::string_view hexSteps);
Blob path(std::string_view hexSteps, std::int64_t index, std::int64_t length);

/// CommonObjectAttributes (6.1.8).
struct Common {
    std::optional<std::string> label = {};
    Blob flags = {};  ///< element: namedBits({0}) is private
    std::optional<Blob> authId = {};
    std::optional<std::int64_t> userConsent = {};
    Blob accessControlRules = {};  ///< element
    Blob encoded() const;
};

/// accessControlRules with one rule, and with an empty list, which its type does not allow.
Blob acceptableRules();
Blob unacceptableRules();

/// Tags of the alternatives of PrivateKeyType and PublicKeyType (6.3.1, 6.4.1).
enum class Key : std::uint8_t { rsa = 0x30, ec = 0xA0, dh = 0xA1, dsa = 0xA2, kea = 0xA3 };

struct KeyRecord {
    Key type = Key::rsa;
    Common common = {};
    Blob id = {0x45};
    Blob usage = namedBits({});  ///< element
    std::optional<bool> native = {};
    std::optional<std::int64_t> keyReference = {};
    Blob value = path("4B01");          ///< element
    std::int64_t modulusLength = 1024;  ///< of an RSA key
    Blob keyInfo = {};                  ///< element
};
Blob privateKey(const KeyRecord& key = {});
Blob publicKey(const KeyRecord& key = {});

/// Usage bits of KeyUsageFlags (6.1.9).
enum Usage : unsigned {
    encrypt,
    decrypt,
    sign,
    signRecover,
    wrap,
    unwrap,
    verify,
    verifyRecover,
    derive,
    nonRepudiation
};

/// Tags of the alternatives of SecretKeyType (6.5.1).
enum class SecretKey : std::uint8_t {
    generic = 0x30,
    rc2 = 0xA0,
    rc4 = 0xA1,
    des = 0xA2,
    des2 = 0xA3,
    des3 = 0xA4,
    cast = 0xA5
};

struct SecretKeyRecord {
    SecretKey type = SecretKey::generic;
    Common common = {};
    Blob id = {0x51};
    Blob usage = namedBits({});  ///< element
    std::optional<bool> native = {};
    std::optional<std::int64_t> keyReference = {};
    std::optional<std::int64_t> keyLen = {};  ///< in bits
    Blob subClass = {};         ///< element, without keyLen: CommonSecretKeyAttributes
    Blob value = path("4C01");  ///< element
};
Blob secretKey(const SecretKeyRecord& key = {});

/// Tags of the alternatives of CertificateType (6.6.1).
enum class Certificate : std::uint8_t { x509 = 0x30, attribute = 0xA0, spki = 0xA1, cv = 0xA5 };

struct CertificateRecord {
    Certificate type = Certificate::x509;
    Common common = {};
    Blob id = {0x45};
    Blob trustedUsage = {};     ///< element: trustedUsage({...})
    Blob value = path("4D01");  ///< element
    Blob serialNumber = {};     ///< element
};
Blob certificate(const CertificateRecord& certificate = {});

/// trustedUsage of a certificate with this extKeyUsage; `keyUsage` is an element and may be empty.
Blob trustedUsage(std::initializer_list<Blob> extKeyUsage, const Blob& keyUsage = {});
/// 1.3.6.1.4.1.311.20.2.2 and an extended key usage that is another one.
Blob smartcardLogon();
Blob serverAuthentication();

/// Tags of the alternatives of DataType (6.7.1).
enum class Data : std::uint8_t { opaque = 0x30, external = 0xA0, oid = 0xA1 };

struct DataRecord {
    Data type = Data::opaque;
    Common common = {};
    std::optional<std::string> applicationName = {};
    Blob applicationOID = {};   ///< element
    Blob value = path("4E01");  ///< element
};
Blob dataRecord(const DataRecord& object = {});

/// Authentication objects (6.8).
struct AuthRecord {
    Common common = {};
    Blob authId = {0x01};
    std::int64_t reference = 1;  ///< pinReference, bioReference
    Blob authKeyId = {0x51};     ///< of an authentication key
    Blob type = {};              ///< element in place of the type attributes
};
Blob pin(const AuthRecord& object = {});
Blob biometricTemplate(const AuthRecord& object = {});
Blob authKey(const AuthRecord& object = {});
Blob externalByCertificate(const AuthRecord& object = {});
Blob externalByKey(const AuthRecord& object = {});
/// A record with a tag that no version of AuthenticationType uses.
Blob unknownAuthObject();

struct AlgorithmRecord {
    std::int64_t reference = 1;
    std::int64_t algorithm = 1;
    Blob supportedOperations = namedBits({});  ///< element
    Blob algId = {};                           ///< element
};

/// TokenInfo (6.10).
struct TokenInfoRecord {
    std::int64_t version = 0;
    std::optional<Blob> serialNumber = Blob{0x2A};
    std::optional<std::string> manufacturerID = {};
    std::optional<std::string> label = {};
    Blob flags = namedBits({});  ///< element
    std::optional<std::vector<AlgorithmRecord>> supportedAlgorithms = {};
};
Blob tokenInfo(const TokenInfoRecord& token = {});

/// An entry of the ODF: the directory file of choice `kind` lies at a path (6.2).
Blob odfEntry(unsigned kind, const Blob& path);

/// An element that is a record of every directory file and decodes in none: its only member is an
/// INTEGER.
Blob undecodable();

}  // namespace tovi::test
