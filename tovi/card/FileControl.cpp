#include "tovi/card/FileControl.h"

#include <algorithm>
#include <limits>

#include "tovi/card/BerTlv.h"

namespace tovi {
namespace {

constexpr std::uint8_t fcpTag = 0x62;
constexpr std::uint8_t fciTag = 0x6F;
constexpr std::uint8_t codingOctet = 0x01;  // of descriptors; says nothing of interest here

/// A number of any length; one that does not fit is the largest that does.
std::size_t number(ASN1::View octets) {
    std::size_t value = 0;
    for (const std::uint8_t octet : octets) {
        if (value > std::numeric_limits<std::size_t>::max() >> 8)
            return std::numeric_limits<std::size_t>::max();
        value = value << 8 | octet;
    }
    return value;
}

std::optional<std::size_t> size(ASN1::View value) {
    if (value.empty()) return std::nullopt;
    return number(value);
}

/// Descriptor, data coding, then record size of one or two octets, then count of one or two.
void parseDescriptor(ASN1::View value, FileControl& control) {
    if (value.empty()) return;
    control.descriptor = value[0];
    if (value.size() < 3) return;
    const std::size_t width = value.size() == 3 ? 1 : 2;
    control.recordSize = number(value.subspan(2, width));
    if (value.size() > 4)
        control.recordCount =
            number(value.subspan(4).first(std::min<std::size_t>(2, value.size() - 4)));
}

void parseMember(const BerTlv& member, FileControl& control) {
    switch (member.tag) {
        case 0x80:
            control.dataSize = size(member.value);
            break;
        case 0x81:
            control.allocatedSize = size(member.value);
            break;
        case 0x82:
            parseDescriptor(member.value, control);
            break;
        case 0x83:
            if (member.value.size() == 2)
                control.fid = static_cast<std::uint16_t>(number(member.value));
            break;
        case 0x84:
            control.name = Blob(member.value);
            break;
        case 0x88:
            if (member.value.size() == 1)
                control.sfi = static_cast<std::uint8_t>(member.value[0] >> 3);
            break;
        default:
            break;
    }
}

void appendNumber(Blob& out, std::uint8_t tag, std::size_t value) {
    Blob octets;
    std::size_t width = 2;
    while (width < sizeof value && value >> (8 * width) != 0) ++width;
    while (width-- > 0) octets.push_back(static_cast<std::uint8_t>(value >> (8 * width)));
    appendBerTlv(out, tag, octets);
}

FileStructure structure(const FileControl& control) {
    // Cards that leave the descriptor out, or say nothing in it, have transparent files.
    const std::uint8_t descriptor = control.descriptor.value_or(0);
    if ((descriptor & 0xB8) == folderDescriptor) return FileStructure::other;
    switch (descriptor & 0x07) {
        case 0:
        case 1:
            return FileStructure::transparent;
        case 2:
        case 3:
            return FileStructure::linearFixed;
        case 4:
        case 5:
            return FileStructure::linearVariable;
        default:
            return FileStructure::other;
    }
}

}  // namespace

FileControl FileControl::parse(ASN1::View response) {
    FileControl control;
    BerTlv outer;
    if (!BerTlv::next(response, outer) || (outer.tag != fcpTag && outer.tag != fciTag))
        return control;
    BerTlv member;
    while (BerTlv::next(outer.value, member)) parseMember(member, control);
    return control;
}

Blob FileControl::encode(std::uint8_t tag) const {
    Blob members;
    if (dataSize) appendNumber(members, 0x80, *dataSize);
    if (allocatedSize) appendNumber(members, 0x81, *allocatedSize);
    if (descriptor) {
        Blob value{*descriptor};
        if (recordSize) {
            value.push_back(codingOctet);
            value.push_back(static_cast<std::uint8_t>(*recordSize >> 8));
            value.push_back(static_cast<std::uint8_t>(*recordSize));
            value.push_back(static_cast<std::uint8_t>(recordCount.value_or(0)));
        }
        appendBerTlv(members, 0x82, value);
    }
    if (fid) appendNumber(members, 0x83, *fid);
    if (!name.empty()) appendBerTlv(members, 0x84, name);
    if (sfi) appendBerTlv(members, 0x88, Blob{static_cast<std::uint8_t>(*sfi << 3)});
    Blob out;
    appendBerTlv(out, tag, members);
    return out;
}

FileInfo FileControl::info() const {
    FileInfo info;
    info.structure = structure(*this);
    if (info.structure == FileStructure::transparent) {
        info.size = dataSize.value_or(allocatedSize.value_or(0));
    } else {
        info.recordSize = recordSize.value_or(0);
        info.recordCount = recordCount.value_or(0);
    }
    return info;
}

std::uint8_t fileDescriptor(FileStructure structure) {
    switch (structure) {
        case FileStructure::transparent:
            return 0x01;
        case FileStructure::linearFixed:
            return 0x02;
        case FileStructure::linearVariable:
            return 0x04;
        default:
            return folderDescriptor;
    }
}

}  // namespace tovi
