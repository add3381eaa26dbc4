#pragma once

#include "tovi/card/StatusWord.h"
#include "tovi/interfaces/Exception.h"
#include "tovi/interfaces/ISCardOS.h"

namespace tovi {

/// A card that shows a file which it does not let read as an empty one, so that everything else can
/// be read. Nothing can be written to it.
class ReadableCardOS final : public ISCardOS {
public:
    /// `card` must outlive this object.
    explicit ReadableCardOS(ISCardOS& card) : card_(card) {}

    Blob selectApplication(const Blob& aid, unsigned char mode) override {
        return card_.selectApplication(aid, mode);
    }
    FileInfo selectFile(const Blob& path) override { return card_.selectFile(path); }
    Blob readBinary(std::size_t offset, std::size_t length) override {
        return unlessDenied([&] { return card_.readBinary(offset, length); });
    }
    Blob readRecord(std::size_t number) override {
        return unlessDenied([&] { return card_.readRecord(number); });
    }
    void updateBinary(std::size_t, ASN1::View) override { refuse(); }
    void updateRecord(std::size_t, ASN1::View) override { refuse(); }
    void appendRecord(ASN1::View) override { refuse(); }
    std::size_t maxRead() const override { return card_.maxRead(); }
    std::size_t maxWrite() const override { return card_.maxWrite(); }

    static constexpr std::int64_t denied = statusWordCode + StatusWord::securityNotSatisfied;

private:
    template <class Read>
    static Blob unlessDenied(Read read) {
        try {
            return read();
        } catch (const SmartcardException& failure) {
            if (failure.GetCode() != denied) throw;
            return {};
        }
    }
    [[noreturn]] static void refuse() {
        throw SmartcardException("read only", "ReadableCardOS", denied);
    }

    ISCardOS& card_;
};

}  // namespace tovi
