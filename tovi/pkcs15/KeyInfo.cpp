#include "tovi/pkcs15/KeyInfo.h"

namespace PKCS15 {

using ASN1::NamedNumber, ASN1::Type;

namespace {

constexpr NamedNumber operationsBits[] = {
    {"compute-checksum", 0},
    {"compute-signature", 1},
    {"verify-checksum", 2},
    {"verify-signature", 3},
    {"encipher", 4},
    {"decipher", 5},
    {"hash", 6},
    {"generate-key", 7},
};

}  // namespace

constinit const Type Operations::type =
    ASN1::schema::namedBits<Operations>("Operations", operationsBits);

}  // namespace PKCS15
