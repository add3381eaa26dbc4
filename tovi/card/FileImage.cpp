#include "tovi/card/FileImage.h"

namespace tovi {
namespace {

using Kind = FileDescription::Kind;

std::string mismatch(std::size_t number, std::size_t found, std::string_view expected,
                     std::size_t size) {
    return "record " + std::to_string(number) + ": found " + std::to_string(found) +
           " octets, expected " + std::string(expected) + std::to_string(size);
}

}  // namespace

Blob encodeRecords(const std::vector<Blob>& records) {
    Blob image;
    for (const Blob& record : records) {
        image.push_back(static_cast<std::uint8_t>(record.size() >> 8));
        image.push_back(static_cast<std::uint8_t>(record.size()));
        image.append(record);
    }
    return image;
}

std::string decodeRecords(ASN1::View image, const FileDescription& file,
                          std::vector<Blob>& records) {
    records.clear();
    while (!image.empty()) {
        const std::size_t number = records.size() + 1;
        if (number > file.size) return "found more than " + std::to_string(file.size) + " records";
        if (image.size() < recordHeader)
            return mismatch(number, image.size(), "a length of ", recordHeader);
        const std::size_t size = std::size_t{image[0]} << 8 | image[1];
        image = image.subspan(recordHeader);
        if (size > file.recordSize) return mismatch(number, size, "at most ", file.recordSize);
        if (size > image.size()) return mismatch(number, image.size(), "", size);
        records.emplace_back(image.first(size));
        if (file.kind == Kind::linearFixed) records.back().resize(file.recordSize);
        image = image.subspan(size);
    }
    return {};
}

std::size_t largestImage(const FileDescription& file) {
    switch (file.kind) {
        case Kind::df:
            return 0;
        case Kind::transparent:
            return file.size;
        default:
            return file.size * (file.recordSize + recordHeader);
    }
}

}  // namespace tovi
