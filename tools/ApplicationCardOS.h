#pragma once

#include <utility>
#include <vector>

#include "tovi/interfaces/ISCardOS.h"

namespace tovi {

/// A card whose PKCS#15 application goes by another identifier, or by none, and whose files need
/// not lie at their usual places: whoever selects PKCS15_AID gets the application `aid`, by its
/// path where the card does not know the identifier. Everything else is the card's.
class ApplicationCardOS final : public ISCardOS {
public:
    /// `card` must outlive this object. An empty `aid`: nothing but the path selects it.
    ApplicationCardOS(ISCardOS& card, Blob aid) : card_(card), aid_(std::move(aid)) {}

    /// Says by which identifier the application goes, from now on.
    void setAid(Blob aid) { aid_ = std::move(aid); }
    /// Says where the application lies, from 3F00 on; without, only its identifier selects it.
    void setPath(Blob path) { path_ = std::move(path); }
    /// Whoever selects the file `from` gets the file `to`; absolute paths.
    void redirect(Blob from, Blob to) {
        redirections_.emplace_back(std::move(from), std::move(to));
    }

    Blob selectApplication(const Blob& aid, unsigned char mode) override;
    FileInfo selectFile(const Blob& path) override;
    Blob readBinary(std::size_t offset, std::size_t length) override {
        return card_.readBinary(offset, length);
    }
    void updateBinary(std::size_t offset, ASN1::View octets) override {
        card_.updateBinary(offset, octets);
    }
    Blob readRecord(std::size_t number) override { return card_.readRecord(number); }
    void updateRecord(std::size_t number, ASN1::View record) override {
        card_.updateRecord(number, record);
    }
    void appendRecord(ASN1::View record) override { card_.appendRecord(record); }
    std::size_t maxRead() const override { return card_.maxRead(); }
    std::size_t maxWrite() const override { return card_.maxWrite(); }

private:
    ISCardOS& card_;
    Blob aid_;
    Blob path_;  // empty: none
    std::vector<std::pair<Blob, Blob>> redirections_;
};

}  // namespace tovi
