#include "bench/Peer.h"

#include <asn_application.h>

#include <stdexcept>
#include <string>

// Only the descriptors: the generated headers have members whose names are words of C++.
extern "C" {
extern asn_TYPE_descriptor_t asn_DEF_PrivateKeyType;
extern asn_TYPE_descriptor_t asn_DEF_PublicKeyType;
extern asn_TYPE_descriptor_t asn_DEF_SecretKeyType;
extern asn_TYPE_descriptor_t asn_DEF_CertificateType;
extern asn_TYPE_descriptor_t asn_DEF_DataType;
extern asn_TYPE_descriptor_t asn_DEF_AuthenticationType;
extern asn_TYPE_descriptor_t asn_DEF_PKCS15Objects;
extern asn_TYPE_descriptor_t asn_DEF_TokenInfo;
extern asn_TYPE_descriptor_t asn_DEF_UnusedSpace;
extern asn_TYPE_descriptor_t asn_DEF_DIRRecord;
}

namespace tovi::bench {
namespace {

asn_TYPE_descriptor_t* const types[] = {
    &asn_DEF_PrivateKeyType,  &asn_DEF_PublicKeyType, &asn_DEF_SecretKeyType,
    &asn_DEF_CertificateType, &asn_DEF_DataType,      &asn_DEF_AuthenticationType,
    &asn_DEF_PKCS15Objects,   &asn_DEF_TokenInfo,     &asn_DEF_UnusedSpace,
    &asn_DEF_DIRRecord,
};

asn_TYPE_descriptor_t* find(std::string_view name) {
    for (asn_TYPE_descriptor_t* type : types)
        if (name == type->name) return type;
    throw std::invalid_argument("no such type: " + std::string(name));
}

bool decodeWhole(asn_TYPE_descriptor_t& type, ASN1::View record, void*& value) {
    const asn_dec_rval_t result = ber_decode(nullptr, &type, &value, record.data(), record.size());
    return result.code == RC_OK && result.consumed == record.size();
}

}  // namespace

Peer::Peer(std::string_view type) : type_(find(type)) {}

bool Peer::decode(ASN1::View record) const {
    void* value = nullptr;
    const bool decoded = decodeWhole(*type_, record, value);
    type_->free_struct(type_, value, 0);
    return decoded;
}

ASN1::Octets Peer::recode(ASN1::View record) const {
    void* value = nullptr;
    ASN1::Octets out(2 * record.size() + 16, 0);
    const bool decoded = decodeWhole(*type_, record, value);
    const asn_enc_rval_t written =
        decoded ? der_encode_to_buffer(type_, value, out.data(), out.size()) : asn_enc_rval_t{};
    out.resize(written.encoded > 0 ? static_cast<std::size_t>(written.encoded) : 0);
    type_->free_struct(type_, value, 0);
    return out;
}

}  // namespace tovi::bench
