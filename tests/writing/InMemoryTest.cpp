#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <new>
#include <optional>

#include "tests/container/FailingAllocations.h"
#include "tests/support/Objects.h"
#include "tests/writing/Sweep.h"
#include "tovi/interfaces/Exception.h"

// Every operation that needs no card, with each of its allocations failing in turn: it has then
// changed nothing and can be performed again, or has done all of its work.
namespace tovi::test {
namespace {

using Extent = FailingAllocations::Extent;
using Operation = std::function<void(PKCS15Container&)>;
/// Makes an operation for a container, so that it needs no memory of its own when it is performed.
using Preparation = std::function<Operation(const PKCS15Container&)>;

/// What a container holds, with the record numbers by which objects name each other.
struct State {
    ContainerView view;
    std::vector<std::vector<std::uint64_t>> links;
};

State stateOf(const PKCS15Container& container) {
    State state = {viewOf(container), {}};
    for (unsigned kind = 0; kind < directoryCount; ++kind)
        lookAt(container, static_cast<Directory>(kind), [&](const auto& infos, const auto&) {
            for (const PKCS15Object& object : infos)
                state.links.push_back({static_cast<std::uint64_t>(object.auxValue1),
                                       static_cast<std::uint64_t>(object.auxValue2)});
        });
    for (const auto& info : container.getContainerInfos())
        state.links.push_back({info.exchangeKeyRecord, info.exchangeCertificateRecord,
                               info.signatureKeyRecord, info.signatureCertificateRecord});
    return state;
}

enum class Outcome { done, refused, withoutMemory };

Outcome outcomeOf(const Operation& operation, PKCS15Container& container) {
    try {
        operation(container);
    } catch (const SmartcardException&) {
        return Outcome::refused;
    } catch (const std::bad_alloc&) {
        return Outcome::withoutMemory;
    }
    return Outcome::done;
}

/// Performs one operation on the full card, read anew for each of its allocations.
class Exhaustion {
public:
    Exhaustion(const Preparation& prepare, Outcome expected) : prepare_(prepare) {
        const auto container = read();
        before_ = stateOf(*container);
        EXPECT_EQ(outcomeOf(prepare_(*container), *container), expected);
        after_ = stateOf(*container);
        outcome_ = expected;
    }

    /// Until no allocation is left to fail.
    CutPoints failEveryAllocation() {
        CutPoints points;
        for (const Extent extent : {Extent::once, Extent::forGood})
            for (std::size_t index = 0; fail(index, extent); ++index) {
                if (testing::Test::HasFailure()) return points;
                ++points.tried;
            }
        return points;
    }

private:
    std::unique_ptr<PKCS15Container> read() {
        auto container = makeContainer();
        container->readFromCard(card_.os());
        return container;
    }

    /// False when there is no such allocation.
    bool fail(std::size_t index, Extent extent) {
        SCOPED_TRACE(index);
        const long blocks = liveBlocks();
        bool hasFailed = false;
        {
            const auto container = read();
            const Operation operation = prepare_(*container);
            std::optional<FailingAllocations> failing(std::in_place, index, extent);
            Outcome outcome = outcomeOf(operation, *container);
            hasFailed = failing->failed();
            failing.reset();
            if (outcome == Outcome::withoutMemory) {
                expectState(*container, before_);
                outcome = outcomeOf(prepare_(*container), *container);
            }
            EXPECT_EQ(outcome, outcome_);
            expectState(*container, after_);
        }
        EXPECT_EQ(liveBlocks(), blocks) << "something leaked";
        return hasFailed;
    }

    void expectState(const PKCS15Container& container, const State& expected) const {
        const State found = stateOf(container);
        EXPECT_EQ(difference(found.view, expected.view), "");
        EXPECT_EQ(found.links, expected.links);
        EXPECT_EQ(contradiction(container), "");
    }

    const Preparation prepare_;
    TestCard card_{fullCard()};
    State before_, after_;
    Outcome outcome_ = Outcome::done;
};

void exhaust(const std::string& what, const Preparation& prepare, Outcome expected,
             std::size_t least) {
    Exhaustion exhaustion(prepare, expected);
    const CutPoints points = exhaustion.failEveryAllocation();
    std::cout << what << ": " << points.tried << " failed allocations\n";
    testing::Test::RecordProperty("cutPoints", static_cast<int>(points.tried));
    EXPECT_GE(points.tried, least);
}

// Record numbers of the full card: its keys, their public keys, and their certificates.
constexpr std::uint64_t secondKey = 2, secondCertificate = 7;

PKCS15ObjectInfo<ContainerInfo> containerNaming(std::uint64_t key, std::uint64_t certificate) {
    PKCS15ObjectInfo<ContainerInfo> info;
    info.label = Blob(40, 'c');
    info.exchangeKeyRecord = key;
    info.exchangeCertificateRecord = certificate;
    return info;
}

TEST(WriteContainerInfoWithoutMemory, AddsAndLinksAContainerOrChangesNothing) {
    exhaust(
        "writeContainerInfo",
        [](const PKCS15Container&) {
            return [info = containerNaming(secondKey, secondCertificate)](
                       PKCS15Container& container) mutable { container.writeContainerInfo(info); };
        },
        Outcome::done, 2);
}

TEST(WriteContainerInfoWithoutMemory, AddsAContainerWhoseLinksNameNothingOrChangesNothing) {
    exhaust(
        "writeContainerInfo without links",
        [](const PKCS15Container&) {
            return [info = containerNaming(0, secondKey)](PKCS15Container& container) mutable {
                container.writeContainerInfo(info);
            };
        },
        Outcome::refused, 2);
}

TEST(UpdateContainerInfoWithoutMemory, ReplacesTheContainerOrChangesNothing) {
    exhaust(
        "updateContainerInfo",
        [](const PKCS15Container& read) {
            auto info = read.getContainerInfos().front();
            info.label = Blob(60, 'u');
            info.exchangeKeyRecord = secondKey;
            return [info](PKCS15Container& container) { container.updateContainerInfo(info); };
        },
        Outcome::done, 2);
}

TEST(DeleteObjectInfoWithoutMemory, RemovesAKeyContainerOrChangesNothing) {
    exhaust(
        "deletion of a key container",
        [](const PKCS15Container& read) {
            const auto number = read.getContainerInfos().front().recordNumber;
            return [row = static_cast<unsigned long>(number)](PKCS15Container& container) {
                container.deleteObjectInfo(nullptr, row);
            };
        },
        Outcome::done, 0);
}

/// A record does not tell the length of a secret key, which writing it asks for.
template <class Info>
Info writableCopy(Info info) {
    if constexpr (requires { info.algorithmName; }) info.keyLength = 24;
    return info;
}

class WithoutCardOrMemory : public testing::TestWithParam<unsigned> {
protected:
    void exhaustOne(const std::string& what, const Preparation& prepare, Outcome expected,
                    std::size_t least) {
        exhaust(what + " without card, directory " + std::to_string(GetParam()), prepare, expected,
                least);
    }
    const Directory kind_ = static_cast<Directory>(GetParam());
};
INSTANTIATE_TEST_SUITE_P(Writing, WithoutCardOrMemory, testing::Range(0u, directoryCount));

TEST_P(WithoutCardOrMemory, AnUpdateReplacesTheObjectOrChangesNothing) {
    exhaustOne(
        "update",
        [this](const PKCS15Container& read) {
            return withKind(kind_, [&](auto object) -> Operation {
                auto info = writableCopy(object.infos(read).front());
                info.label = Blob(60, 'u');
                return [info](PKCS15Container& container) {
                    decltype(object)::update(container, nullptr, info);
                };
            });
        },
        Outcome::done, 8);
}

TEST_P(WithoutCardOrMemory, AWriteIsRefusedAndChangesNothing) {
    exhaustOne(
        "write",
        [this](const PKCS15Container& read) {
            return withKind(kind_, [&](auto object) -> Operation {
                auto info = writableCopy(object.infos(read).front());
                return [info](PKCS15Container& container) mutable {
                    decltype(object)::write(container, nullptr, info);
                };
            });
        },
        Outcome::refused, 8);
}

TEST_P(WithoutCardOrMemory, ADeletionIsRefusedAndChangesNothing) {
    exhaustOne(
        "deletion",
        [this](const PKCS15Container&) {
            return [kind = kind_](PKCS15Container& container) {
                deleteObject(container, nullptr, kind, 0);
            };
        },
        Outcome::refused, 0);
}

}  // namespace
}  // namespace tovi::test
