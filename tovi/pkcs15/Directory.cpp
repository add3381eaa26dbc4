#include "tovi/pkcs15/Directory.h"

#include "tovi/asn1/Schema.h"

namespace PKCS15 {

using namespace ASN1::schema;
using ASN1::Member, ASN1::Type;

namespace {

constexpr Member ddoRows[] = {
    expected<&DDO::oid>("oid"),
    optional<&DDO::odfPath>("odfPath"),
    optional<&DDO::tokenInfoPath>("tokenInfoPath").tagged(0),
    optional<&DDO::unusedPath>("unusedPath").tagged(1),
    extension<&DDO::unknown>(),
};

constexpr Member dirRecordRows[] = {
    mandatory<&DIRRecord::aid>("aid").application(15),
    optional<&DIRRecord::label>("label").application(16),
    // Applications that are selected by their identifier need no path.
    expected<&DIRRecord::path>("path").application(17),
    optional<&DIRRecord::ddo>("ddo").application(19),
    // No marker stands here, but any data object may stand in an application template.
    extension<&DIRRecord::unknown>().kindness(),
};

constexpr Type dirRecord() {
    Type type = sequence<DIRRecord>("DIRRecord", dirRecordRows);
    type.tag = ASN1::application(1);
    return type;
}

constexpr Member unusedSpaceRows[] = {
    mandatory<&UnusedSpace::path>("path"),
    optional<&UnusedSpace::authId>("authId"),
    extension<&UnusedSpace::unknown>(),
    optional<&UnusedSpace::accessControlRules>("accessControlRules"),
};

}  // namespace

constinit const Type DDO::type = sequence<DDO>("DDO", ddoRows);
constinit const Type DIRRecord::type = dirRecord();
constinit const Type UnusedSpace::type = sequence<UnusedSpace>("UnusedSpace", unusedSpaceRows);

}  // namespace PKCS15
