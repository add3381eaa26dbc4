#include "tovi/pkcs15/PKCS15Objects.h"

namespace PKCS15 {

using namespace ASN1::schema;
using ASN1::Member, ASN1::Type;

namespace {

using Objects = PKCS15Objects;

constexpr Member pkcs15ObjectsRows[] = {
    alternative<&Objects::value, Objects::privateKeys>("privateKeys").explicitly(0),
    alternative<&Objects::value, Objects::publicKeys>("publicKeys").explicitly(1),
    alternative<&Objects::value, Objects::trustedPublicKeys>("trustedPublicKeys").explicitly(2),
    alternative<&Objects::value, Objects::secretKeys>("secretKeys").explicitly(3),
    alternative<&Objects::value, Objects::certificates>("certificates").explicitly(4),
    alternative<&Objects::value, Objects::trustedCertificates>("trustedCertificates").explicitly(5),
    alternative<&Objects::value, Objects::usefulCertificates>("usefulCertificates").explicitly(6),
    alternative<&Objects::value, Objects::dataObjects>("dataObjects").explicitly(7),
    alternative<&Objects::value, Objects::authObjects>("authObjects").explicitly(8),
    extension<&Objects::value, Objects::unknown>(),
};

struct PathOf {
    template <class ObjectType>
    const Path* operator()(const PathOrObjects<ObjectType>& entries) const {
        return entries.template getIf<PathOrObjects<ObjectType>::path>();
    }
    const Path* operator()(const ASN1::OpenData&) const { return nullptr; }
    const Path* operator()(std::monostate) const { return nullptr; }
};

}  // namespace

constinit const Type PKCS15Objects::type =
    choice<PKCS15Objects>("PKCS15Objects", pkcs15ObjectsRows);

const Path* filePath(const PKCS15Objects& entry) { return std::visit(PathOf(), entry.value); }

}  // namespace PKCS15
