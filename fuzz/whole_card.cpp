// Whatever a card holds, reading it ends; every object keeps its place, every lookup gives the
// object it names or a SmartcardException, and a second read finds the same.
//
// The input: for EF(TokenInfo), EF(ODF) and the nine directory files in turn, two octets of length
// and the contents. An empty TokenInfo or ODF stands for a usual one.
#include <cstdint>
#include <initializer_list>

#include "fuzz/ImageCard.h"
#include "fuzz/require.h"
#include "tovi/container/PKCS15Container.h"
#include "tovi/interfaces/CardProfile.h"

namespace {

using tovi::Blob;

Blob nextChunk(ASN1::View& input) {
    if (input.size() < 2) return {};
    const std::size_t wanted = std::size_t{input[0]} << 8 | input[1];
    input = input.subspan(2);
    const std::size_t size = std::min(wanted, input.size());
    const Blob chunk(input.first(size));
    input = input.subspan(size);
    return chunk;
}

Blob usualTokenInfo() {
    return {0x30, 0x0A, 0x02, 0x01, 0x00, 0x04, 0x01, 0x2A, 0x03, 0x02, 0x06, 0x40};
}

/// Names 4401 to 4409, one file for each kind.
Blob usualODF() {
    Blob odf;
    for (std::uint8_t kind = 0; kind < 9; ++kind)
        odf.append(Blob{static_cast<std::uint8_t>(0xA0 + kind), 0x06, 0x30, 0x04, 0x04, 0x02, 0x44,
                        static_cast<std::uint8_t>(0x01 + kind)});
    return odf;
}

tovi::fuzz::ImageCard cardFrom(ASN1::View input) {
    tovi::fuzz::ImageCard card;
    const Blob tokenInfo = nextChunk(input), odf = nextChunk(input);
    card.files[{0x3F, 0x00, 0x50, 0x15, 0x50, 0x32}] =
        tokenInfo.empty() ? usualTokenInfo() : tokenInfo;
    card.files[{0x3F, 0x00, 0x50, 0x15, 0x50, 0x31}] = odf.empty() ? usualODF() : odf;
    for (std::uint8_t kind = 0; kind < 9; ++kind)
        card.files[{0x3F, 0x00, 0x50, 0x15, 0x44, static_cast<std::uint8_t>(0x01 + kind)}] =
            nextChunk(input);
    return card;
}

/// Whether `lookup` answers for the record number, with the object that carries it.
template <class Lookup>
bool answers(Lookup lookup, unsigned long recordNumber) {
    try {
        require(lookup(recordNumber).recordNumber == recordNumber);
        return true;
    } catch (const tovi::SmartcardException& failure) {
        require(failure.GetMessage() && failure.GetOperation() && failure.GetCode() == 0);
        return false;
    }
}

void checkLookups(const tovi::PKCS15Container& c) {
    const auto& fat = c.getFATRecords();
    for (unsigned long r = 0; r <= fat.size() && r < 300; ++r) {
        const int found = answers(
                              [&](auto n) -> auto& { return c.getPrivateKeyInfo(n); }, r) +
                          answers(
                              [&](auto n) -> auto& { return c.getPublicKeyInfo(n); }, r) +
                          answers(
                              [&](auto n) -> auto& { return c.getTrustedPublicKeyInfo(n); }, r) +
                          answers(
                              [&](auto n) -> auto& { return c.getBlockCipherKeyInfo(n); }, r) +
                          answers(
                              [&](auto n) -> auto& { return c.getCertificateInfo(n); }, r) +
                          answers(
                              [&](auto n) -> auto& { return c.getTrustedCertificateInfo(n); }, r) +
                          answers(
                              [&](auto n) -> auto& { return c.getUsefulCertificateInfo(n); }, r) +
                          answers(
                              [&](auto n) -> auto& { return c.getDataInfo(n); }, r) +
                          answers(
                              [&](auto n) -> auto& { return c.getContainerInfo(n); }, r);
        const bool named = r < fat.size() && fat[r].objectType != tovi::tokenInfoObject &&
                           fat[r].objectType != tovi::unrecognisedObjectType;
        require(found == (named ? 1 : 0));
    }
    for (const auto& auth : c.getAuthInfos()) {
        if (auth.reference > 0xFF) continue;
        const auto reference = static_cast<unsigned char>(auth.reference);
        require(c.getAuthInfo(reference).reference == auth.reference);
    }
    for (const int type : {1, 2, 3, 4, 7, 18, 19, 35, 254})
        require(c.getFreeFID(0x4B00, static_cast<unsigned char>(type)) >= 0x4B00);
}

void checkPositions(const tovi::PKCS15Container& c) {
    const auto sameSize = [](const auto& infos, const auto& raws) {
        require(infos.size() == raws.size());
        return infos.size();
    };
    const std::size_t rows =
        1 + sameSize(c.getPrivateKeyInfos(), c.getRawPrivateKeys()) +
        sameSize(c.getPublicKeyInfos(), c.getRawPublicKeys()) +
        sameSize(c.getTrustedPublicKeyInfos(), c.getRawTrustedPublicKeys()) +
        sameSize(c.getBlockCipherKeyInfos(), c.getRawSecretKeys()) +
        sameSize(c.getCertificateInfos(), c.getRawCertificates()) +
        sameSize(c.getTrustedCertificateInfos(), c.getRawTrustedCertificates()) +
        sameSize(c.getUsefulCertificateInfos(), c.getRawUsefulCertificates()) +
        sameSize(c.getDataInfos(), c.getRawDataObjects()) + c.getContainerInfos().size();
    require(c.getFATRecords().size() == rows);
    sameSize(c.getAuthInfos(), c.getRawAuthObjects());
}

bool read(tovi::PKCS15Container& container, tovi::ISCardOS& card) {
    try {
        container.readFromCard(&card);
    } catch (const tovi::SmartcardException&) {
        require(!container.hasBeenRead());
        return false;
    }
    require(container.hasBeenRead());
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tovi::fuzz::ImageCard card = cardFrom({data, size});
    tovi::PKCS15Container container(tovi::PKCS15_DF);
    const bool first = read(container, card);
    if (first) {
        checkPositions(container);
        checkLookups(container);
    }
    const std::vector<tovi::FATInfo> rows = container.getFATRecords();
    container.clear();
    require(container.getFATRecords().empty());
    require(read(container, card) == first && container.getFATRecords() == rows);
    // Other borders between responses; reading may end earlier where padding is long.
    container.clear();
    card.readSize = 97;
    if (read(container, card)) checkPositions(container);
    return 0;
}
