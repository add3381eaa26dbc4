#include "bench/SyntheticCard.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tovi/interfaces/CardProfile.h"

namespace tovi::bench {
namespace {

constexpr std::size_t maxFileSize = 32000;
constexpr std::uint16_t firstValueFID = 0x1000, firstDirectoryFID = 0x4400;

// DER by hand, so that what is read does not come from the encoder under test.

Blob tlv(std::uint8_t tag, ASN1::View content) {
    Blob out{tag};
    if (content.size() > 0xFF) {
        out.append(Blob{0x82, static_cast<std::uint8_t>(content.size() >> 8)});
    } else if (content.size() > 0x7F) {
        out.push_back(0x81);
    }
    out.push_back(static_cast<std::uint8_t>(content.size() & 0xFF));
    out.append(content);
    return out;
}

template <class... Parts>
Blob constructed(std::uint8_t tag, const Parts&... parts) {
    Blob content;
    (content.append(parts), ...);
    return tlv(tag, content);
}

Blob text(std::uint8_t tag, std::string_view characters) {
    return tlv(tag, Blob(characters.begin(), characters.end()));
}

Blob twoOctets(std::size_t number) {
    return {static_cast<std::uint8_t>(number >> 8 & 0xFF),
            static_cast<std::uint8_t>(number & 0xFF)};
}

Blob pathTo(std::size_t fid) {
    Blob path = PKCS15_PATH;
    path.append(twoOctets(fid));
    return constructed(0x30, tlv(0x04, path));
}

/// Makes the records of one card, giving out ids and files in order.
class RecordMaker {
public:
    explicit RecordMaker(bool isShared) : isShared_(isShared) {}

    Blob privateKey(std::size_t i) {
        const Blob keyClass =
            constructed(0x30, id(i), Blob{0x03, 0x02, 0x05, 0x20},               // sign
                        Blob{0x03, 0x02, 0x03, 0xB8},                            // access flags
                        Blob{0x02, 0x01, static_cast<std::uint8_t>(i & 0x7F)});  // keyReference
        return key(common("Private key", i, true), keyClass, i);
    }
    Blob publicKey(std::size_t i) {
        const Blob keyClass = constructed(0x30, id(i), Blob{0x03, 0x02, 0x01, 0x02});  // verify
        return key(common("Public key", i, false), keyClass, i);
    }
    Blob certificate(std::size_t i) {
        const Blob serialNumber = constructed(0x02, Blob{0x11}, ordinal(i, 15));
        return constructed(0x30, common("Certificate", i, false), constructed(0x30, id(i)),
                           constructed(0xA1, constructed(0x30, nextPath(), serialNumber)));
    }
    Blob secretKey(std::size_t i) {
        const Blob keyClass =
            constructed(0x30, id(i), Blob{0x03, 0x02, 0x06, 0xC0});         // en-, decrypt
        const Blob length{0xA0, 0x06, 0x30, 0x04, 0x02, 0x02, 0x00, 0xC0};  // 192 bits
        return constructed(0xA4, common("Secret key", i, true), keyClass, length,
                           constructed(0xA1, constructed(0x30, nextPath())));
    }
    Blob dataObject(std::size_t i) {
        return constructed(0x30, common("Data", i, false),
                           constructed(0x30, text(0x0C, "card application")),
                           constructed(0xA1, nextPath()));
    }
    Blob authObject(std::size_t i) {
        const Blob authId{0x04, 0x01, static_cast<std::uint8_t>(i + 1)};
        const Blob reference{0x80, 0x01, static_cast<std::uint8_t>(i + 1)};
        return constructed(0x30, common("PIN", i, true), constructed(0x30, authId),
                           constructed(0xA1, constructed(0x30, Blob{0x03, 0x02, 0x03, 0x48},
                                                         Blob{0x0A, 0x01, 0x01, 0x02, 0x01, 0x04,
                                                              0x02, 0x01, 0x08, 0x02, 0x01, 0x08},
                                                         reference, Blob{0x04, 0x01, 0x00})));
    }

private:
    /// RSA keys of 2048 bits at even places, EC keys at odd ones.
    Blob key(const Blob& commonAttributes, const Blob& keyClass, std::size_t i) {
        const bool isRSA = i % 2 == 0;
        const Blob modulusLength = isRSA ? Blob{0x02, 0x02, 0x08, 0x00} : Blob{};
        return constructed(isRSA ? 0x30 : 0xA0, commonAttributes, keyClass,
                           constructed(0xA1, constructed(0x30, nextPath(), modulusLength)));
    }
    static Blob common(const char* kind, std::size_t i, bool isPrivate) {
        std::string label = std::string(kind) + " " + std::to_string(i);
        label.resize(16, '.');
        const Blob flags = isPrivate ? Blob{0x03, 0x02, 0x06, 0xC0, 0x04, 0x01, 0x01}  // and authId
                                     : Blob{0x03, 0x02, 0x06, 0x40};
        return constructed(0x30, text(0x0C, label), flags);
    }
    /// `i` spread over `length` octets, so that equal ones differ early as hashes do.
    static Blob ordinal(std::size_t i, std::size_t length) {
        Blob octets(length, 0);
        std::uint32_t state = static_cast<std::uint32_t>(i) + 1;
        for (std::uint8_t& octet : octets) {
            state = state * 1664525 + 1013904223;
            octet = static_cast<std::uint8_t>(state >> 24);
        }
        return octets;
    }
    Blob id(std::size_t i) const { return tlv(0x04, ordinal(isShared_ ? 0 : i, 20)); }
    Blob nextPath() { return pathTo(isShared_ ? nextFID_ : nextFID_++); }

    bool isShared_;
    std::size_t nextFID_ = firstValueFID;
};

/// Puts records into directory files and the files into the ODF.
class CardMaker {
public:
    CardMaker() { card_.addFolder(PKCS15_PATH, PKCS15_AID); }

    /// Adds the records that `make` returns for 0 to `count` - 1 as objects of the ODF's choice
    /// `kind`.
    template <class Make>
    void addKind(std::uint8_t kind, std::size_t count, Make make) {
        Blob file;
        for (std::size_t i = 0; i < count; ++i) {
            const Blob record = make(i);
            if (file.size() + record.size() > maxFileSize) closeFile(kind, file);
            file.append(record);
        }
        if (count > 0) closeFile(kind, file);
    }

    VirtualCard finished() {
        addFile(0x5032, {0x30, 0x0A, 0x02, 0x01, 0x00, 0x04, 0x01, 0x2A, 0x03, 0x02, 0x06, 0x40});
        addFile(0x5031, odf_);
        return card_;
    }

private:
    void closeFile(std::uint8_t kind, Blob& file) {
        odf_.append(constructed(static_cast<std::uint8_t>(0xA0 + kind), pathTo(nextFID_)));
        addFile(nextFID_++, file);
        file.clear();
    }
    void addFile(std::size_t fid, const Blob& contents) {
        Blob path = PKCS15_PATH;
        path.append(twoOctets(fid));
        card_.addTransparent(path, contents.size(), contents);
    }

    VirtualCard card_;
    Blob odf_;
    std::size_t nextFID_ = firstDirectoryFID;
};

}  // namespace

CardContents mixedContents(std::size_t count) {
    CardContents contents;
    contents.keyPairs = contents.certificates = count * 3 / 10;
    contents.authObjects = 1;
    const std::size_t rest = count - 3 * contents.keyPairs - contents.authObjects;
    contents.secretKeys = rest / 2;
    contents.dataObjects = rest - contents.secretKeys;
    return contents;
}

VirtualCard syntheticCard(const CardContents& contents) {
    RecordMaker make(contents.isShared);
    CardMaker card;
    card.addKind(0, contents.keyPairs + contents.privateKeys,
                 [&](auto i) { return make.privateKey(i); });
    card.addKind(1, contents.keyPairs + contents.publicKeys,
                 [&](auto i) { return make.publicKey(i); });
    card.addKind(3, contents.secretKeys, [&](auto i) { return make.secretKey(i); });
    card.addKind(4, contents.certificates, [&](auto i) { return make.certificate(i); });
    card.addKind(7, contents.dataObjects, [&](auto i) { return make.dataObject(i); });
    card.addKind(8, contents.authObjects, [&](auto i) { return make.authObject(i); });
    return card.finished();
}

}  // namespace tovi::bench
