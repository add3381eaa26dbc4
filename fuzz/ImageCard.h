#pragma once

#include <algorithm>
#include <map>

#include "tovi/interfaces/Exception.h"
#include "tovi/interfaces/ISCardOS.h"

namespace tovi::fuzz {

/// A card of transparent files in memory, with the least that the container asks of one.
class ImageCard final : public ISCardOS {
public:
    std::map<Blob, Blob> files;  ///< contents by absolute path
    std::size_t readSize = 256;  ///< octets of one response

    Blob selectApplication(const Blob&, unsigned char) override { return {}; }

    FileInfo selectFile(const Blob& path) override {
        const auto found = files.find(path);
        if (found == files.end())
            throw SmartcardException("file not found", "ImageCard::selectFile", 0x16A82);
        selected_ = &found->second;
        FileInfo info;
        info.size = selected_->size();
        return info;
    }

    Blob readBinary(std::size_t offset, std::size_t length) override {
        if (offset >= selected_->size()) return {};
        const std::size_t count = std::min({length, readSize, selected_->size() - offset});
        return Blob(ASN1::View(*selected_).subspan(offset, count));
    }

    void updateBinary(std::size_t, ASN1::View) override { refuse(); }
    Blob readRecord(std::size_t) override { refuse(); }
    void updateRecord(std::size_t, ASN1::View) override { refuse(); }
    void appendRecord(ASN1::View) override { refuse(); }
    std::size_t maxRead() const override { return readSize; }
    std::size_t maxWrite() const override { return 255; }

private:
    [[noreturn]] static void refuse() {
        throw SmartcardException("not possible here", "ImageCard", 0x16981);
    }

    const Blob* selected_ = nullptr;
};

}  // namespace tovi::fuzz
