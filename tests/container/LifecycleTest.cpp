#include <gtest/gtest.h>

#include <sstream>
#include <thread>
#include <type_traits>

#include "tests/support/CardBuilder.h"
#include "tests/support/Failure.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi::test {
namespace {

void expectEmpty(const PKCS15Container& container) {
    EXPECT_FALSE(container.hasBeenRead());
    EXPECT_TRUE(container.getFATRecords().empty());
    EXPECT_TRUE(container.getPrivateKeyInfos().empty());
    EXPECT_TRUE(container.getPublicKeyInfos().empty());
    EXPECT_TRUE(container.getTrustedPublicKeyInfos().empty());
    EXPECT_TRUE(container.getCertificateInfos().empty());
    EXPECT_TRUE(container.getTrustedCertificateInfos().empty());
    EXPECT_TRUE(container.getUsefulCertificateInfos().empty());
    EXPECT_TRUE(container.getBlockCipherKeyInfos().empty());
    EXPECT_TRUE(container.getDataInfos().empty());
    EXPECT_TRUE(container.getContainerInfos().empty());
    EXPECT_TRUE(container.getAuthInfos().empty());
    EXPECT_TRUE(container.getRawTokenInfos().empty());
    EXPECT_TRUE(container.getRawODF().empty());
    EXPECT_TRUE(container.getRawPrivateKeys().empty());
    EXPECT_TRUE(container.getRawPublicKeys().empty());
    EXPECT_TRUE(container.getRawTrustedPublicKeys().empty());
    EXPECT_TRUE(container.getRawSecretKeys().empty());
    EXPECT_TRUE(container.getRawCertificates().empty());
    EXPECT_TRUE(container.getRawTrustedCertificates().empty());
    EXPECT_TRUE(container.getRawUsefulCertificates().empty());
    EXPECT_TRUE(container.getRawDataObjects().empty());
    EXPECT_TRUE(container.getRawAuthObjects().empty());
}

TEST(PKCS15Container, BeginsEmptyAndUnread) {
    const PKCS15Container container(PKCS15_DF);
    expectEmpty(container);
    EXPECT_TRUE(container.getTokenInfo().info.label.empty());
    EXPECT_TRUE(container.getTokenInfo().loginRequired);
}

TEST(PKCS15Container, BearsBeingClearedBeforeItWasReadAndMoreThanOnce) {
    PKCS15Container container(PKCS15_DF);
    container.clear();
    container.clear();
    expectEmpty(container);
}

TEST(PKCS15Container, IsNeitherCopiedNorMoved) {
    EXPECT_FALSE(std::is_copy_constructible_v<PKCS15Container>);
    EXPECT_FALSE(std::is_copy_assignable_v<PKCS15Container>);
    EXPECT_FALSE(std::is_move_constructible_v<PKCS15Container>);
}

TEST(Clear, ForgetsEverythingReadButTheTokenInfo) {
    const auto container = containerOf(fullCard());
    ASSERT_TRUE(container->hasBeenRead());
    container->clear();
    expectEmpty(*container);
    EXPECT_EQ(container->getTokenInfo().info.label, text("Full card"));
    EXPECT_EQ(container->getTokenInfo().supportedAlgorithms.size(), 1u);
}

TEST(Clear, ForgetsRowsThatWereMadeWithoutReading) {
    const auto container = makeContainer();
    container->newFATRecord(dataObject, false);
    container->clear();
    EXPECT_TRUE(container->getFATRecords().empty());
}

TEST(Clear, LeavesAContainerThatCanReadAgain) {
    TestCard card(fullCard());
    const auto container = makeContainer();
    container->readFromCard(card.os());
    const auto rows = container->getFATRecords();
    container->clear();
    container->readFromCard(card.os());
    EXPECT_TRUE(container->hasBeenRead());
    EXPECT_EQ(container->getFATRecords(), rows);
}

TEST(GetRootPath, IsTheUsualPathForTheUsualApplication) {
    EXPECT_EQ(PKCS15Container({0x50, 0x15}).getRootPath(), hex("3F005015"));
}

TEST(GetRootPath, IsTheMasterFileFollowedByAnyOtherPath) {
    EXPECT_EQ(PKCS15Container({0x50, 0x16}).getRootPath(), hex("3F005016"));
    EXPECT_EQ(PKCS15Container({0x50, 0x15, 0x44, 0x01}).getRootPath(), hex("3F0050154401"));
    EXPECT_EQ(PKCS15Container({0x50}).getRootPath(), hex("3F0050"));
    EXPECT_EQ(PKCS15Container({0x3F, 0x00, 0x50, 0x15}).getRootPath(), hex("3F003F005015"));
}

TEST(GetRootPath, IsTheMasterFileForAnEmptyPath) {
    EXPECT_EQ(PKCS15Container(byte_array()).getRootPath(), hex("3F00"));
}

TEST(PKCS15Container, CopiesThePathThatItIsMadeWith) {
    byte_array path = {0x50, 0x16};
    const PKCS15Container container(path);
    path = {0x50, 0x17};
    EXPECT_EQ(container.getRootPath(), hex("3F005016"));
}

TEST(PKCS15Container, KeepsItsPathWhenCleared) {
    PKCS15Container container({0x50, 0x16});
    container.clear();
    EXPECT_EQ(container.getRootPath(), hex("3F005016"));
}

TEST(PKCS15Container, ReadsTheApplicationAtItsPath) {
    VirtualCard card;
    card.addFolder(hex("3F005016"), PKCS15_AID);
    card.addTransparent(hex("3F0050165031"), 16);
    card.addTransparent(hex("3F0050165032"), 64, tokenInfo({.label = "elsewhere"}));
    VirtualCardChannel channel(card);
    ISO7816CardOS os(channel);
    PKCS15Container container({0x50, 0x16});
    container.readFromCard(&os);
    EXPECT_EQ(container.getTokenInfo().info.label, text("elsewhere"));
}

TEST(PKCS15Container, PrintsNothing) {
    PKCS15Container container(PKCS15_DF);
    std::ostringstream stream;
    container.print(stream);
    EXPECT_EQ(&(stream << container), &stream);
    EXPECT_EQ(stream.str(), "");
}

/// Tells when it dies.
class MortalContainer : public PKCS15Container {
public:
    explicit MortalContainer(int& deaths) : PKCS15Container(PKCS15_DF), deaths_(deaths) {}
    ~MortalContainer() override { ++deaths_; }

private:
    int& deaths_;
};

TEST(ReferenceCount, BeginsAtZeroSoThatTheCreatorTakesTheFirstReference) {
    int deaths = 0;
    IRefCounted* container = new MortalContainer(deaths);
    container->AddRef();
    EXPECT_EQ(deaths, 0);
    container->Release();
    EXPECT_EQ(deaths, 1);
}

TEST(ReferenceCount, KeepsTheContainerUntilTheLastReferenceGoes) {
    int deaths = 0;
    auto* container = new MortalContainer(deaths);
    container->AddRef();
    container->AddRef();
    container->Release();
    EXPECT_EQ(deaths, 0);
    container->Release();
    EXPECT_EQ(deaths, 1);
}

TEST(ReferenceCount, DestroysAContainerThatHasBeenRead) {
    TestCard card(fullCard());
    int deaths = 0;
    auto* container = new MortalContainer(deaths);
    container->AddRef();
    container->readFromCard(card.os());
    container->Release();
    EXPECT_EQ(deaths, 1);
}

TEST(ReferenceCount, CountsReferencesOfManyThreads) {
    constexpr int threads = 8, rounds = 2000;
    int deaths = 0;
    auto* container = new MortalContainer(deaths);
    container->AddRef();
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t)
        workers.emplace_back([container] {
            for (int i = 0; i < rounds; ++i) container->AddRef();
            for (int i = 0; i < rounds; ++i) container->Release();
        });
    for (std::thread& worker : workers) worker.join();
    EXPECT_EQ(deaths, 0);
    container->Release();
    EXPECT_EQ(deaths, 1);
}

/// Does not die at the end of its references but says so.
class Immortal : public RefCounterImpl<IRefCounted, 2, SyncObject> {
public:
    int ends = 0;

private:
    void destruct() override {
        ++ends;
        AddRef();  // would wait for ever if the lock were still held
    }
};

TEST(ReferenceCount, BeginsAtTheNumberThatTheClassNames) {
    Immortal object;
    object.Release();
    EXPECT_EQ(object.ends, 0);
    object.Release();
    EXPECT_EQ(object.ends, 1);
}

struct Recorder {
    void Lock() { log += '('; }
    void Unlock() { log += ')'; }
    static inline std::string log;
};

class Watched : public RefCounterImpl<IRefCounted, 0, Recorder> {
    void destruct() override { Recorder::log += 'd'; }
};

TEST(ReferenceCount, IsLockedForEachChangeAndNotWhileTheObjectDies) {
    Recorder::log.clear();
    Watched object;
    object.AddRef();
    object.AddRef();
    object.Release();
    object.Release();
    EXPECT_EQ(Recorder::log, "()()()()d");
}

}  // namespace
}  // namespace tovi::test
