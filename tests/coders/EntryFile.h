#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/CardBuilder.h"
#include "tests/support/Failure.h"
#include "tovi/asn1/CoderEnv.h"
#include "tovi/coders/EntryWriting.h"
#include "tovi/interfaces/CardProfile.h"

/// What entry coders write to: a directory file on a card, with room behind its records.
namespace tovi::test {

/// The file as a coder is given it: its handler, and the values of its records.
template <class Type>
class EntryFile {
public:
    explicit EntryFile(const std::vector<Blob>& records = {})
        : card_(CardBuilder().room(4096).directory(kind, records)) {
        ASN1_configureCoderEnv(&env, ASN1_getPKCS15());
        read(handler);
        for (const Blob& record : handler.records()) raws.push_back(decodedEntry(record));
    }
    ~EntryFile() { clearObjects(raws); }
    EntryFile(const EntryFile&) = delete;
    EntryFile& operator=(const EntryFile&) = delete;

    ISCardOS* os() { return card_.os(); }

    /// The records that stand on the card now.
    std::vector<Blob> onCard() {
        ProfileDFHandler fresh(PKCS15_DF);
        read(fresh);
        return fresh.records();
    }
    /// What the values in memory stand for; empty where there is none.
    std::vector<Blob> inMemory() const {
        std::vector<Blob> records;
        for (const ASN1Object<Type>& raw : raws)
            records.push_back(raw.value ? ASN1::encode(*raw.value) : Blob());
        return records;
    }

    ASN1::CoderEnv env;
    ProfileDFHandler handler{PKCS15_DF};
    std::vector<ASN1Object<Type>> raws;

private:
    static constexpr Directory kind = Directory::privateKeys;  // any will do

    void read(ProfileDFHandler& reader) {
        reader.SetFilePath(absolutePath(directoryFID(kind)), nullptr);
        reader.ReadFile(os(), IGNORE_TAG, true);
    }
    static ASN1Object<Type> decodedEntry(const Blob& record) {
        auto value = std::make_unique<Type>();
        ASN1::Error error;
        if (!ASN1::decode(record, *value, error)) return {};
        const bool isValid = value->isValid();
        return {value.release(), isValid, isValid};
    }

    TestCard card_;
};

/// Writes an entry of the kind with its coder; see CoderKinds.h.
template <class Kind>
unsigned long encode(EntryFile<typename Kind::Type>& file, const typename Kind::Info& info,
                     unsigned long index = noIndex) {
    return Kind::encode(&file.env, file.os(), file.handler, info, file.raws, index);
}

/// The record that a new entry becomes.
template <class Kind>
Blob written(const typename Kind::Info& info) {
    EntryFile<typename Kind::Type> file;
    EXPECT_EQ(encode<Kind>(file, info), 0u);
    const std::vector<Blob> records = file.onCard();
    EXPECT_EQ(records, file.inMemory());
    return records.empty() ? Blob() : records.front();
}

/// What becomes of `record` when an entry is written over it.
template <class Kind>
Blob updated(const Blob& record, const typename Kind::Info& info) {
    EntryFile<typename Kind::Type> file({record});
    EXPECT_EQ(encode<Kind>(file, info, 0), 0u);
    const std::vector<Blob> records = file.onCard();
    EXPECT_EQ(records.size(), 1u);
    EXPECT_EQ(records, file.inMemory());
    return records.empty() ? Blob() : records.front();
}

/// The failure of writing an entry to a file with `records`, which has to change nothing.
template <class Kind>
Failure refusal(const std::vector<Blob>& records, const typename Kind::Info& info,
                unsigned long index) {
    EntryFile<typename Kind::Type> file(records);
    const auto before = file.inMemory();
    const Failure failure = failureOf([&] { encode<Kind>(file, info, index); });
    EXPECT_EQ(file.onCard(), records);
    EXPECT_EQ(file.inMemory(), before);
    return failure;
}

template <class Kind>
Failure encodingError() {
    return smartcardFailure("ASN1 encoding error", Kind::operation);
}

/// Expects that an entry can neither be added nor written over a sound record.
template <class Kind>
void expectRefused(const typename Kind::Info& info,
                   const Failure& failure = encodingError<Kind>()) {
    const Blob sound = Kind::record({.label = "sound"});
    EXPECT_EQ(refusal<Kind>({}, info, noIndex), failure);
    EXPECT_EQ(refusal<Kind>({sound}, info, noIndex), failure);
    EXPECT_EQ(refusal<Kind>({sound}, info, 0), failure);
}

}  // namespace tovi::test
