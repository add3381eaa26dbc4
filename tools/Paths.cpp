#include "tools/Paths.h"

#include <algorithm>

namespace tovi {
namespace {

constexpr std::uint8_t masterFile[] = {0x3F, 0x00};
constexpr std::uint8_t currentDF[] = {0x3F, 0xFF};  // in paths: the DF selected last

}  // namespace

bool beginsWith(ASN1::View octets, ASN1::View beginning) {
    return octets.size() >= beginning.size() &&
           std::equal(beginning.begin(), beginning.end(), octets.begin());
}

Blob absolutePath(const Blob& rootPath, const Blob& path) {
    if (beginsWith(path, masterFile)) return path;
    Blob absolute = rootPath;
    absolute.append(ASN1::View(path).subspan(beginsWith(path, currentDF) ? 2 : 0));
    return absolute;
}

}  // namespace tovi
