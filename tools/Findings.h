#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/ApplicationFiles.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi {

/// Something about an application that its owner should know: about one of its objects, one of its
/// files, or the whole of it.
struct Finding {
    std::string kind;                                ///< "dangling-auth-id"
    std::string object = {};                         ///< "private key 3", or empty
    std::optional<std::uint64_t> recordNumber = {};  ///< of the object
    std::string file = {};                           ///< "EF(PrKDF) 3F0050154401", or empty
    std::string message = {};                        ///< what was found, and where in the file
};
using Findings = std::vector<Finding>;

/// How much a finding matters: something cannot be read or used; something is wrong; something is
/// worth knowing.
enum class Severity : std::uint8_t { error, warning, notice };
Severity severityOf(const Finding& finding);

// ---- rules about one file; each adds what it finds ----

/// unreadable-file
void findUnreadable(const ApplicationFile& file, Findings& findings);
/// undecodable-record: a record that is no value of its type.
void findUndecodable(const ApplicationFile& file, Findings& findings);
/// invalid-record: one that breaks a size or range of its type.
void findInvalid(const ApplicationFile& file, Findings& findings);
/// stale-octets: what stands behind the records and is no padding.
void findStale(const ApplicationFile& file, Findings& findings);
/// unread-records: such as stand behind padding so long that reading ends in it.
void findUnread(const ApplicationFile& file, Findings& findings);
/// file-nearly-full: less than a tenth of the file is free, of its octets when transparent, of its
/// records when linear and somebody knows how many it may have.
void findNearlyFull(const ApplicationFile& file, Findings& findings);
/// repeated-file: EF(ODF) names it twice, so that its records count twice.
void findRepeated(const ApplicationFile& file, Findings& findings);
/// path-outside-application
void findFileOutside(const ApplicationFile& file, const Blob& rootPath, Findings& findings);
/// token-info: not exactly one record in EF(TokenInfo).
void findTokenInfoCount(const ApplicationFile& file, Findings& findings);

// ---- rules about the model ----

/// unsupported-record: a value of its type that the model has no object for.
void findUnsupported(const PKCS15Container& model, Findings& findings);
/// skipped-entry: an entry of EF(ODF) that names no file, such as one that holds its objects
/// itself.
void findSkippedFiles(const PKCS15Container& model, Findings& findings);
/// dangling-auth-id: authId, or the authKeyId of an authentication key, that names nothing.
void findDanglingAuthIds(const PKCS15Container& model, Findings& findings);
/// key-without-certificate: a private key with neither certificate nor public key.
void findKeysWithoutCertificate(const PKCS15Container& model, Findings& findings);
/// certificate-without-key: a certificate of the holder without a private key.
void findCertificatesWithoutKey(const PKCS15Container& model, Findings& findings);
/// duplicate-id: two objects of one list with the same identifier.
void findDuplicateIds(const PKCS15Container& model, Findings& findings);
/// shared-file: objects of one list whose values lie in one file.
void findSharedFiles(const PKCS15Container& model, Findings& findings);
/// path-outside-application
void findObjectsOutside(const PKCS15Container& model, Findings& findings);
/// Whether the file at an absolute path is linear.
using IsLinear = std::function<bool(const Blob& path)>;
/// overlapping-areas: values that lie, by index and length, on the same octets of one transparent
/// file, or in the same record of a linear one. Asks for the structure of files that hold several.
void findOverlaps(const PKCS15Container& model, const IsLinear& isLinear, Findings& findings);

/// All rules about files, file by file.
Findings findingsOfFiles(const std::vector<ApplicationFile>& files, const Blob& rootPath);
/// All rules about the model.
Findings findingsOfModel(const PKCS15Container& model, const IsLinear& isLinear);

}  // namespace tovi
