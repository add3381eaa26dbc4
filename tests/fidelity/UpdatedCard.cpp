#include "tests/fidelity/UpdatedCard.h"

#include "tests/support/Objects.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/ProfileDFHandler.h"

namespace tovi::test {

namespace {

/// Writes an info that was changed to the object that it is of.
class Update {
public:
    Update(PKCS15Container& model, ISCardOS* os, std::size_t position)
        : model_(model), os_(os), position_(position) {}

    void operator()(const PKCS15ObjectInfo<PrivateKeyInfo>& info) const {
        model_.updatePrivateKeyInfo(os_, info);
    }
    void operator()(const PKCS15ObjectInfo<PublicKeyInfo>& info) const {
        model_.updatePublicKeyInfo(os_, info);
    }
    void operator()(const PKCS15ObjectInfo<TrustedPublicKeyInfo>& info) const {
        model_.updateTrustedPublicKeyInfo(os_, info);
    }
    void operator()(const PKCS15ObjectInfo<BlockCipherKeyInfo>& info) const {
        model_.updateBlockCipherKeyInfo(os_, info);
    }
    void operator()(const PKCS15ObjectInfo<CertificateInfo>& info) const {
        model_.updateCertificateInfo(os_, info);
    }
    void operator()(const PKCS15ObjectInfo<TrustedCertificateInfo>& info) const {
        model_.updateTrustedCertificateInfo(os_, info);
    }
    void operator()(const PKCS15ObjectInfo<UsefulCertificateInfo>& info) const {
        model_.updateUsefulCertificateInfo(os_, info);
    }
    void operator()(const PKCS15ObjectInfo<DataInfo>& info) const {
        model_.updateDataInfo(os_, info);
    }
    /// updateAuthInfo finds an object by its reference, so another one takes its index.
    void operator()(const PKCS15ObjectInfo<AuthInfo>& info) const {
        if (model_.getAuthInfos().at(position_).reference == info.reference)
            model_.updateAuthInfo(os_, info);
        else
            model_.writeAuthInfo(os_, info, static_cast<unsigned long>(position_));
    }

private:
    PKCS15Container& model_;
    ISCardOS* os_;
    std::size_t position_;
};

std::string describedWith(const PKCS15Container& container, Directory kind, std::size_t position,
                          const Edit& edit) {
    return lookAt(container, kind, [&](const auto& infos, const auto&) {
        auto info = infos.at(position);
        Fields fields = fieldsOf(info);
        edit(fields);
        return described(fields);
    });
}

RecordList recordsIn(TestCard& card, const Blob& file) {
    ProfileDFHandler reader(PKCS15_DF);
    reader.SetFilePath(file, nullptr);
    reader.ReadFile(card.os(), IGNORE_TAG, false);
    return reader.records();
}

}  // namespace

UpdatedCard::UpdatedCard(const RecordCase& its)
    : kind_(its.kind),
      position_(its.position),
      card_(CardBuilder().room(300).directory(its.kind, {its.file})) {
    first_->readFromCard(card_.os());
    readAgain();
}

void UpdatedCard::update(const Edit& edit) {
    lookAt(*first_, kind_, [&](const auto& infos, const auto&) {
        auto info = infos.at(position_);
        Fields fields = fieldsOf(info);
        edit(fields);
        Update(*container_, card_.os(), position_)(info);
    });
}

void UpdatedCard::readAgain() {
    container_ = makeContainer();
    container_->readFromCard(card_.os());
}

RecordList UpdatedCard::records() { return recordsIn(card_, absolutePath(directoryFID(kind_))); }

std::string UpdatedCard::lastRead() const {
    return describedWith(*container_, kind_, position_, [](Fields&) {});
}

std::string UpdatedCard::firstRead(const Edit& edit) const {
    return describedWith(*first_, kind_, position_, edit);
}

Blob tokenInfoRecord(TestCard& card) { return recordsIn(card, PKCS15_EF_TOKEN_INFO).at(0); }

}  // namespace tovi::test
