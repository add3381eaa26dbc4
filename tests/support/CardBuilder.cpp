#include "tests/support/CardBuilder.h"

#include <algorithm>

#include "tovi/interfaces/CardProfile.h"

namespace tovi::test {

Blob directoryFID(Directory kind) {
    return {0x44, static_cast<std::uint8_t>(0x01 + static_cast<unsigned>(kind))};
}

Blob absolutePath(const Blob& fid) { return join({PKCS15_PATH, fid}); }

CardBuilder& CardBuilder::tokenInfo(const Blob& contents) {
    tokenInfo_ = contents;
    return *this;
}

CardBuilder& CardBuilder::odf(const Blob& contents) {
    odf_ = contents;
    return *this;
}

CardBuilder& CardBuilder::odfRecord(const Blob& record) {
    usualODF_.append(ASN1::View(record));
    return *this;
}

CardBuilder& CardBuilder::directory(Directory kind, const std::vector<Blob>& records) {
    const Blob fid = directoryFID(kind);
    if (!find(fid)) {
        odfRecord(odfEntry(static_cast<unsigned>(kind), sequence(octetString(absolutePath(fid)))));
        file(fid, {});
    }
    for (const Blob& record : records) find(fid)->contents.append(ASN1::View(record));
    return *this;
}

CardBuilder& CardBuilder::privateKeys(const std::vector<Blob>& records) {
    return directory(Directory::privateKeys, records);
}
CardBuilder& CardBuilder::publicKeys(const std::vector<Blob>& records) {
    return directory(Directory::publicKeys, records);
}
CardBuilder& CardBuilder::trustedPublicKeys(const std::vector<Blob>& records) {
    return directory(Directory::trustedPublicKeys, records);
}
CardBuilder& CardBuilder::secretKeys(const std::vector<Blob>& records) {
    return directory(Directory::secretKeys, records);
}
CardBuilder& CardBuilder::certificates(const std::vector<Blob>& records) {
    return directory(Directory::certificates, records);
}
CardBuilder& CardBuilder::trustedCertificates(const std::vector<Blob>& records) {
    return directory(Directory::trustedCertificates, records);
}
CardBuilder& CardBuilder::usefulCertificates(const std::vector<Blob>& records) {
    return directory(Directory::usefulCertificates, records);
}
CardBuilder& CardBuilder::dataObjects(const std::vector<Blob>& records) {
    return directory(Directory::dataObjects, records);
}
CardBuilder& CardBuilder::authObjects(const std::vector<Blob>& records) {
    return directory(Directory::authObjects, records);
}

CardBuilder& CardBuilder::file(const Blob& fid, const Blob& contents) {
    files_.push_back({fid, contents});
    return *this;
}

CardBuilder& CardBuilder::room(std::size_t octets) {
    room_ = octets;
    return *this;
}

CardBuilder& CardBuilder::withoutFile(const Blob& fid) {
    missing_.push_back(fid);
    return *this;
}

CardBuilder::File* CardBuilder::find(const Blob& fid) {
    const auto found = std::find_if(files_.begin(), files_.end(),
                                    [&](const File& each) { return each.fid == fid; });
    return found == files_.end() ? nullptr : &*found;
}

VirtualCard CardBuilder::build() const {
    VirtualCard card;
    card.addFolder(PKCS15_PATH, PKCS15_AID);
    const auto add = [&](const Blob& fid, const Blob& contents) {
        if (std::find(missing_.begin(), missing_.end(), fid) != missing_.end()) return;
        card.addTransparent(absolutePath(fid), std::max<std::size_t>(contents.size(), 16) + room_,
                            contents);
    };
    add(PKCS15_EF_TOKEN_INFO, tokenInfo_);
    add(PKCS15_EF_ODF, odf_.value_or(usualODF_));
    for (const File& each : files_) add(each.fid, each.contents);
    return card;
}

std::unique_ptr<PKCS15Container> makeContainer() {
    return std::make_unique<PKCS15Container>(PKCS15_DF);
}

std::unique_ptr<PKCS15Container> containerOf(const CardBuilder& builder) {
    TestCard card(builder);
    auto container = makeContainer();
    container->readFromCard(card.os());
    return container;
}

CardBuilder fullCard() {
    const Blob exchange = {'0', '1'}, signature = {'S', '0', '1'};
    return CardBuilder()
        .tokenInfo(test::tokenInfo(
            {.label = "Full card", .supportedAlgorithms = std::vector<AlgorithmRecord>(1)}))
        .privateKeys({privateKey({.common = {.label = "Alice"},
                                  .id = exchange,
                                  .usage = namedBits({decrypt, sign})}),
                      privateKey({.type = Key::ec,
                                  .common = {.label = "Alice Sig", .authId = Blob{0x01}},
                                  .id = signature,
                                  .usage = namedBits({sign})})})
        .publicKeys({publicKey({.id = exchange}), publicKey({.type = Key::ec, .id = signature})})
        .trustedPublicKeys({publicKey()})
        .secretKeys({secretKey({.type = SecretKey::des3, .keyReference = 7})})
        .certificates({certificate({.id = exchange}), certificate({.id = signature})})
        .trustedCertificates({certificate({.serialNumber = integer(7)})})
        .usefulCertificates({certificate({.trustedUsage = trustedUsage({smartcardLogon()})})})
        .dataObjects({dataRecord({.applicationName = "tovi"})})
        .authObjects(
            {pin(), biometricTemplate({.reference = 2}), authKey(), externalByCertificate()});
}

}  // namespace tovi::test
