#pragma once

#include <gtest/gtest.h>

#include <string_view>
#include <type_traits>
#include <vector>

#include "tests/support/ObjectKinds.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/PKCS11.h"
#include "tovi/pkcs15/PKCS15.h"

/// Every kind of object that is written by record number: how it is written, updated and found.
namespace tovi::test {

template <class InfoType>
struct WritableKind : ObjectKind<InfoType> {
    using Info = PKCS15ObjectInfo<InfoType>;

    /// An info that can be written, with `label` as its id too.
    static Info make(std::string_view label) {
        Info info;
        info.label = text(label);
        info.path.path = hex("4B77");
        getFID(info);
        if constexpr (requires { info.id; }) info.id = text(label);
        if constexpr (requires { info.keyType; }) info.keyType = CKK_EC;
        if constexpr (std::is_same_v<InfoType, BlockCipherKeyInfo>) {
            info.algorithmName = text("DES");
            info.keyLength = 8;
        }
        return info;
    }
    /// A record of the card, by a hand other than ours.
    static Blob record(const char* label) {
        const Common common = {.label = label};
        if constexpr (requires(Info info) { info.keyType; })
            return privateKey({.type = Key::ec, .common = common, .id = text(label)});
        else if constexpr (std::is_same_v<InfoType, BlockCipherKeyInfo>)
            return secretKey({.type = SecretKey::des, .common = common, .id = text(label)});
        else if constexpr (std::is_same_v<InfoType, DataInfo>)
            return dataRecord({.common = common});
        else
            return certificate({.common = common, .id = text(label)});
    }

    /// The labels of the infos, in the order of their list.
    static std::vector<Blob> labels(const PKCS15Container& container) {
        std::vector<Blob> labels;
        for (const Info& info : ObjectKind<InfoType>::infos(container))
            labels.push_back(info.label);
        return labels;
    }
    /// The labels of the raw records, which are those of all records that are decoded.
    static std::vector<Blob> rawLabels(const PKCS15Container& container) {
        std::vector<Blob> labels;
        for (const auto& raw : ObjectKind<InfoType>::raws(container)) {
            using Type = std::remove_pointer_t<std::decay_t<decltype(raw.value)>>;
            labels.push_back(labelOf<Type>(*raw.value));
        }
        return labels;
    }

private:
    /// The label of whatever alternative the record is of.
    template <class Type>
    static Blob labelOf(const Type& record) {
        return std::visit(
            [](const auto& object) -> Blob {
                if constexpr (requires { object.commonObjectAttributes; })
                    return object.commonObjectAttributes.label.value_or(PKCS15::Label());
                else
                    return {};
            },
            record.value);
    }
};

using PrivateKeyKind = WritableKind<PrivateKeyInfo>;
using PublicKeyKind = WritableKind<PublicKeyInfo>;
using WritableKinds =
    testing::Types<PrivateKeyKind, PublicKeyKind, WritableKind<TrustedPublicKeyInfo>,
                   WritableKind<BlockCipherKeyInfo>, WritableKind<CertificateInfo>,
                   WritableKind<TrustedCertificateInfo>, WritableKind<UsefulCertificateInfo>,
                   WritableKind<DataInfo>>;

/// A card, a connection that can be made to fail, and a container that has read the card.
class WrittenCard {
public:
    explicit WrittenCard(const CardBuilder& builder) : card_(builder), container_(makeContainer()) {
        container_->readFromCard(card_.os());
    }
    PKCS15Container& operator*() { return *container_; }
    PKCS15Container* operator->() { return container_.get(); }
    ISCardOS* os() { return card_.os(); }
    TestCard& card() { return card_; }
    /// What a container finds that reads the card now.
    std::unique_ptr<PKCS15Container> again() {
        auto container = makeContainer();
        container->readFromCard(card_.os());
        return container;
    }

private:
    TestCard card_;
    std::unique_ptr<PKCS15Container> container_;
};

}  // namespace tovi::test
