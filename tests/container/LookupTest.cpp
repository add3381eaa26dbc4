#include <gtest/gtest.h>

#include <functional>
#include <type_traits>

#include "tests/support/CardBuilder.h"
#include "tests/support/Failure.h"

namespace tovi::test {
namespace {

constexpr const char* getOperation = "PKCS15Container::getInfo";
constexpr const char* refOperation = "PKCS15Container::refInfo";

/// One getter: the type of row it wants, the name that its failures carry, and the record number of
/// what it returns.
struct Getter {
    const char* name;
    unsigned char type;
    const char* operation;
    std::function<std::uint64_t(PKCS15Container&, unsigned long)> find;

    friend void PrintTo(const Getter& getter, std::ostream* out) { *out << getter.name; }
};

// clang-format off
#define GETTER(name, type, operation)                                                            \
    Getter {                                                                                     \
        #name, type, operation, [](PKCS15Container& container, unsigned long recordNumber) {     \
            return container.name(recordNumber).recordNumber;                                    \
        }                                                                                        \
    }
// clang-format on

const Getter getters[] = {
    GETTER(getPrivateKeyInfo, 1, getOperation),
    GETTER(refPrivateKeyInfo, 1, refOperation),
    GETTER(getPublicKeyInfo, 2, getOperation),
    GETTER(refPublicKeyInfo, 2, refOperation),
    GETTER(getTrustedPublicKeyInfo, 18, getOperation),
    GETTER(getCertificateInfo, 3, getOperation),
    GETTER(refCertificateInfo, 3, refOperation),
    GETTER(getTrustedCertificateInfo, 19, getOperation),
    GETTER(getUsefulCertificateInfo, 35, getOperation),
    GETTER(getBlockCipherKeyInfo, 7, getOperation),
    GETTER(getDataInfo, 4, getOperation),
    GETTER(getContainerInfo, 5, getOperation),
};

class EveryGetter : public testing::TestWithParam<Getter> {
protected:
    Failure failureFor(PKCS15Container& container, unsigned long recordNumber) const {
        return failureOf([&] { GetParam().find(container, recordNumber); });
    }
};

INSTANTIATE_TEST_SUITE_P(Lookup, EveryGetter, testing::ValuesIn(getters),
                         [](const auto& each) { return std::string(each.param.name); });

const Failure beyondTable =
    smartcardFailure("invalid record number", "PKCS15Container::checkObjectType");

TEST_P(EveryGetter, FindsEveryObjectOfItsTypeByItsRecordNumber) {
    const auto container = containerOf(fullCard());
    const auto& rows = container->getFATRecords();
    unsigned found = 0;
    for (unsigned long r = 0; r < rows.size(); ++r) {
        if (rows[r].objectType != GetParam().type) continue;
        EXPECT_EQ(GetParam().find(*container, r), r);
        ++found;
    }
    EXPECT_GT(found, 0u);
}

TEST_P(EveryGetter, RefusesEveryNumberOnAContainerThatWasNeverRead) {
    const auto container = makeContainer();
    EXPECT_EQ(failureFor(*container, 0), beyondTable);
    EXPECT_EQ(failureFor(*container, 1), beyondTable);
}

TEST_P(EveryGetter, RefusesNumbersBeyondTheTable) {
    const auto container = containerOf(fullCard());
    EXPECT_EQ(failureFor(*container, container->getFATRecords().size()), beyondTable);
    EXPECT_EQ(failureFor(*container, ~0UL), beyondTable);
}

TEST_P(EveryGetter, RefusesRowsOfEveryOtherType) {
    const auto container = containerOf(fullCard());
    const auto& rows = container->getFATRecords();
    for (unsigned long r = 0; r < rows.size(); ++r)
        if (rows[r].objectType != GetParam().type) {
            EXPECT_EQ(failureFor(*container, r),
                      smartcardFailure("invalid object type", GetParam().operation))
                << "row " << r;
        }
}

TEST_P(EveryGetter, RefusesTheRowOfTheTokenInfo) {
    const auto container = containerOf(CardBuilder());
    EXPECT_EQ(failureFor(*container, 0),
              smartcardFailure("invalid object type", GetParam().operation));
}

TEST_P(EveryGetter, RefusesFreeRowsAndThoseOfUndecodableRecords) {
    const auto container = makeContainer();
    container->newFATRecord(freeRow, false);
    container->newFATRecord(unrecognisedObjectType, false);
    for (const unsigned long r : {0UL, 1UL})
        EXPECT_EQ(failureFor(*container, r),
                  smartcardFailure("invalid object type", GetParam().operation));
}

TEST_P(EveryGetter, RefusesARowOfItsTypeThatNoObjectHas) {
    const auto container = containerOf(fullCard());
    const unsigned long r = container->newFATRecord(GetParam().type, false);
    EXPECT_EQ(failureFor(*container, r),
              smartcardFailure("invalid record number", GetParam().operation));
}

/// Whatever a lookup could change in an info.
struct Seen {
    std::uint64_t recordNumber = noRecord;
    Blob label;
    std::int64_t auxValue1 = noLink;
    std::int64_t auxValue2 = noLink;
    std::uint64_t fid = noFID;
    Blob attributes;
    friend bool operator==(const Seen&, const Seen&) = default;
};

template <class Info>
void look(const std::vector<PKCS15ObjectInfo<Info>>& infos, std::vector<Seen>& seen) {
    for (const auto& info : infos)
        seen.push_back({info.recordNumber, info.label, info.auxValue1, info.auxValue2, info.fid,
                        info.Export()});
}

std::vector<Seen> everythingIn(const PKCS15Container& container) {
    std::vector<Seen> seen;
    look(container.getPrivateKeyInfos(), seen);
    look(container.getPublicKeyInfos(), seen);
    look(container.getTrustedPublicKeyInfos(), seen);
    look(container.getCertificateInfos(), seen);
    look(container.getTrustedCertificateInfos(), seen);
    look(container.getUsefulCertificateInfos(), seen);
    look(container.getBlockCipherKeyInfos(), seen);
    look(container.getDataInfos(), seen);
    look(container.getContainerInfos(), seen);
    look(container.getAuthInfos(), seen);
    return seen;
}

TEST_P(EveryGetter, ChangesNothing) {
    const auto container = containerOf(fullCard());
    const auto rows = container->getFATRecords();
    const auto infos = everythingIn(*container);
    for (unsigned long r = 0; r <= rows.size(); ++r) failureFor(*container, r);
    failureFor(*container, ~0UL);
    EXPECT_EQ(container->getFATRecords(), rows);
    EXPECT_TRUE(everythingIn(*container) == infos);
    EXPECT_TRUE(container->hasBeenRead());
}

TEST(Lookup, ReturnsTheFirstOfTwoObjectsWithOneRecordNumber) {
    const auto container = containerOf(fullCard());
    container->refPrivateKeyInfo(2).recordNumber = 1;
    container->refPublicKeyInfo(4).recordNumber = 3;
    container->refCertificateInfo(7).recordNumber = 6;
    EXPECT_EQ(&container->getPrivateKeyInfo(1), &container->getPrivateKeyInfos()[0]);
    EXPECT_EQ(&container->refPrivateKeyInfo(1), &container->getPrivateKeyInfos()[0]);
    EXPECT_EQ(&container->getPublicKeyInfo(3), &container->getPublicKeyInfos()[0]);
    EXPECT_EQ(&container->refPublicKeyInfo(3), &container->getPublicKeyInfos()[0]);
    EXPECT_EQ(&container->getCertificateInfo(6), &container->getCertificateInfos()[0]);
    EXPECT_EQ(&container->refCertificateInfo(6), &container->getCertificateInfos()[0]);
}

TEST(Lookup, GivesTheContainersOwnRecordsToChange) {
    const auto container = containerOf(fullCard());
    container->refPrivateKeyInfo(1).label = text("Bob");
    container->refPublicKeyInfo(3).auxValue2 = 99;
    container->refCertificateInfo(6).trustedUsage = 5;
    EXPECT_EQ(container->getPrivateKeyInfo(1).label, text("Bob"));
    EXPECT_EQ(container->getPublicKeyInfo(3).auxValue2, 99);
    EXPECT_EQ(container->getCertificateInfo(6).trustedUsage, 5u);
}

template <class Result>
constexpr bool isConstReference =
    std::is_lvalue_reference_v<Result>&& std::is_const_v<std::remove_reference_t<Result>>;

TEST(Lookup, GivesRecordsToReadOnlyFromAContainerThatMayBeChanged) {
    using C = PKCS15Container&;
    EXPECT_TRUE(isConstReference<decltype(std::declval<C>().getPrivateKeyInfo(0))>);
    EXPECT_TRUE(isConstReference<decltype(std::declval<C>().getPublicKeyInfo(0))>);
    EXPECT_TRUE(isConstReference<decltype(std::declval<C>().getTrustedPublicKeyInfo(0))>);
    EXPECT_TRUE(isConstReference<decltype(std::declval<C>().getCertificateInfo(0))>);
    EXPECT_TRUE(isConstReference<decltype(std::declval<C>().getTrustedCertificateInfo(0))>);
    EXPECT_TRUE(isConstReference<decltype(std::declval<C>().getUsefulCertificateInfo(0))>);
    EXPECT_TRUE(isConstReference<decltype(std::declval<C>().getBlockCipherKeyInfo(0))>);
    EXPECT_TRUE(isConstReference<decltype(std::declval<C>().getDataInfo(0))>);
    EXPECT_TRUE(isConstReference<decltype(std::declval<C>().getContainerInfo(0))>);
    EXPECT_TRUE(isConstReference<decltype(std::declval<C>().getAuthInfo(0))>);
}

TEST(CheckRecordNumber, PassesNumbersOfRowsAndNamesTheCallerOtherwise) {
    const auto container = makeContainer();
    container->newFATRecord(freeRow, false);
    EXPECT_EQ(failureOf([&] { container->checkRecordNumber(0, "caller"); }), Failure());
    EXPECT_EQ(failureOf([&] { container->checkRecordNumber(1, "caller"); }),
              smartcardFailure("invalid record number", "caller"));
}

TEST(CheckObjectType, NamesItselfForTheNumberAndTheCallerForTheType) {
    const auto container = makeContainer();
    container->newFATRecord(dataObject, false);
    EXPECT_EQ(failureOf([&] { container->checkObjectType(0, dataObject, "caller"); }), Failure());
    EXPECT_EQ(failureOf([&] { container->checkObjectType(0, containerObject, "caller"); }),
              smartcardFailure("invalid object type", "caller"));
    EXPECT_EQ(failureOf([&] { container->checkObjectType(1, dataObject, "caller"); }), beyondTable);
}

Failure noAuthObject() {
    return smartcardFailure("invalid object reference", "PKCS15Container::getAuthInfo");
}

TEST(GetAuthInfo, FindsAnObjectByItsReference) {
    const auto container = containerOf(
        CardBuilder().authObjects({pin({.common = {.label = "first"}, .reference = 1}),
                                   pin({.common = {.label = "second"}, .reference = 0x82})}));
    EXPECT_EQ(&container->getAuthInfo(0x82), &container->getAuthInfos()[1]);
    EXPECT_EQ(&container->getAuthInfo(1), &container->getAuthInfos()[0]);
}

TEST(GetAuthInfo, FindsTheFirstOfTwoWithOneReference) {
    const auto container = containerOf(CardBuilder().authObjects({pin(), pin()}));
    EXPECT_EQ(&container->getAuthInfo(1), &container->getAuthInfos()[0]);
}

TEST(GetAuthInfo, RefusesAReferenceThatNoObjectHas) {
    const auto container = containerOf(CardBuilder().authObjects({pin()}));
    EXPECT_EQ(failureOf([&] { container->getAuthInfo(2); }), noAuthObject());
    EXPECT_EQ(failureOf([&] { makeContainer()->getAuthInfo(0); }), noAuthObject());
}

TEST(GetAuthInfo, NeverFindsAnObjectWhoseReferenceTakesMoreThanAnOctet) {
    const auto container =
        containerOf(CardBuilder().authObjects({pin({.reference = 0x101}), unknownAuthObject()}));
    ASSERT_EQ(container->getAuthInfos()[0].reference, 0x101);
    ASSERT_EQ(container->getAuthInfos()[1].reference, noReference);
    EXPECT_EQ(failureOf([&] { container->getAuthInfo(0x01); }), noAuthObject());
    EXPECT_EQ(failureOf([&] { container->getAuthInfo(0xFF); }), noAuthObject());
}

TEST(GetAuthInfo, AsksNoRowOfTheTable) {
    const auto container = containerOf(CardBuilder().authObjects({pin({.reference = 200})}));
    EXPECT_EQ(container->getFATRecords().size(), 1u);  // that of the TokenInfo
    EXPECT_EQ(container->getAuthInfo(200).reference, 200);
}

}  // namespace
}  // namespace tovi::test
