#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "tests/support/Records.h"
#include "tovi/card/ISO7816CardOS.h"
#include "tovi/card/VirtualCard.h"
#include "tovi/container/PKCS15Container.h"

namespace tovi::test {

/// The kinds of directory file by their choice in the ODF (PKCS#15 v1.1, 6.2).
enum class Directory : unsigned {
    privateKeys,
    publicKeys,
    trustedPublicKeys,
    secretKeys,
    certificates,
    trustedCertificates,
    usefulCertificates,
    dataObjects,
    authObjects
};
inline constexpr unsigned directoryCount = 9;

/// The usual place of a directory file, 4401 to 4409, and its absolute path.
Blob directoryFID(Directory kind);
Blob absolutePath(const Blob& fid);

/// Describes a card with one application below 5015: EF(TokenInfo), EF(ODF) and the directory files
/// that a test adds.
class CardBuilder {
public:
    /// Sets the contents of EF(TokenInfo), EF(ODF); a smallest TokenInfo and the entries of the
    /// files added are the usual ones.
    CardBuilder& tokenInfo(const Blob& contents);
    CardBuilder& odf(const Blob& contents);
    /// Adds an entry to the usual ODF, in front of the next directory file.
    CardBuilder& odfRecord(const Blob& record);

    /// Adds records to a directory file; the file and its entry in the ODF come with the first
    /// call.
    CardBuilder& directory(Directory kind, const std::vector<Blob>& records);
    CardBuilder& privateKeys(const std::vector<Blob>& records);
    CardBuilder& publicKeys(const std::vector<Blob>& records);
    CardBuilder& trustedPublicKeys(const std::vector<Blob>& records);
    CardBuilder& secretKeys(const std::vector<Blob>& records);
    CardBuilder& certificates(const std::vector<Blob>& records);
    CardBuilder& trustedCertificates(const std::vector<Blob>& records);
    CardBuilder& usefulCertificates(const std::vector<Blob>& records);
    CardBuilder& dataObjects(const std::vector<Blob>& records);
    CardBuilder& authObjects(const std::vector<Blob>& records);

    /// Adds any file below the application.
    CardBuilder& file(const Blob& fid, const Blob& contents);
    /// Gives every file that many octets of padding behind its contents; it has none without this.
    CardBuilder& room(std::size_t octets);
    /// Leaves a file out, whatever else is said of it.
    CardBuilder& withoutFile(const Blob& fid);

    VirtualCard build() const;

private:
    struct File {
        Blob fid;
        Blob contents;
    };
    File* find(const Blob& fid);

    Blob tokenInfo_ = test::tokenInfo();
    std::optional<Blob> odf_;
    Blob usualODF_;
    std::vector<File> files_;
    std::vector<Blob> missing_;
    std::size_t room_ = 0;
};

/// A card in memory and the connection to it.
class TestCard {
public:
    explicit TestCard(const CardBuilder& builder) : card_(builder.build()) {}

    ISCardOS* os() { return &os_; }
    VirtualCard& card() { return card_; }
    ICardChannel& channel() { return channel_; }

private:
    VirtualCard card_;
    VirtualCardChannel channel_{card_};
    ISO7816CardOS os_{channel_};
};

/// A container for the application of a TestCard, nothing read.
std::unique_ptr<PKCS15Container> makeContainer();

/// A container that has read the card.
std::unique_ptr<PKCS15Container> containerOf(const CardBuilder& builder);

/// One record of every kind, all of them sound: two keys that form a container, their certificates
/// and public keys, and whatever else an application can hold.
CardBuilder fullCard();

}  // namespace tovi::test
