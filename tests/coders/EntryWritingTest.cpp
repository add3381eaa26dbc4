#include "tovi/coders/EntryWriting.h"

#include <gtest/gtest.h>

#include "tests/coders/ScriptedHandler.h"
#include "tests/support/CardBuilder.h"
#include "tests/support/Failure.h"
#include "tovi/pkcs15/DataObject.h"
#include "tovi/records/Infos.h"

namespace tovi::test {
namespace {

// ---- room ----

TEST(MakeRoomForOne, LetsTheNextInsertionAllocateNothing) {
    std::vector<int> elements;
    for (int i = 0; i < 100; ++i) {
        makeRoomForOne(elements);
        const int* const before = elements.data();
        elements.insert(elements.begin(), i);
        EXPECT_EQ(elements.data(), before);
    }
}

TEST(MakeRoomForOne, GrowsGeometrically) {
    std::vector<int> elements;
    int moves = 0;
    for (int i = 0; i < 10000; ++i) {
        const std::size_t before = elements.capacity();
        makeRoomForOne(elements);
        if (elements.capacity() != before) ++moves;
        elements.push_back(i);
    }
    EXPECT_LT(moves, 20);
}

TEST(MakeRoomForOne, KeepsTheElements) {
    std::vector<int> elements = {1, 2, 3};
    elements.shrink_to_fit();
    makeRoomForOne(elements);
    EXPECT_EQ(elements, (std::vector<int>{1, 2, 3}));
}

// ---- the tail of every entry coder ----

/// A value that shows whether it is alive.
struct Counted {
    explicit Counted(int its) : number(its) { ++alive; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    ~Counted() { --alive; }

    int number;
    static inline int alive = 0;
};

class WriteFileAndObject : public testing::Test {
protected:
    WriteFileAndObject() {
        handlerScript() = {};
        for (int number : {10, 11, 12}) raws.push_back({new Counted(number), false, true});
    }
    ~WriteFileAndObject() override {
        clearObjects(raws);
        value.reset();
        EXPECT_EQ(Counted::alive, 0);
    }

    unsigned long write(ISCardOS* os) {
        return writeFileAndObject(os, handler, value, record, raws, noIndex, false);
    }
    unsigned long update(ISCardOS* os, unsigned long index) {
        return writeFileAndObject(os, handler, value, record, raws, index, true);
    }
    std::vector<int> numbers() const {
        std::vector<int> all;
        for (const auto& raw : raws) all.push_back(raw.value ? raw.value->number : 0);
        return all;
    }
    /// The value is still the caller's, and nothing else has changed.
    void expectNothingTaken() const {
        ASSERT_NE(value, nullptr);
        EXPECT_EQ(value->number, 99);
        EXPECT_EQ(numbers(), (std::vector<int>{10, 11, 12}));
        EXPECT_EQ(Counted::alive, 4);
        for (const auto& raw : raws) {
            EXPECT_FALSE(raw.isValid);
            EXPECT_TRUE(raw.isDecoded);
        }
    }
    /// The value stands at `position` now.
    void expectTaken(std::size_t position) const {
        EXPECT_EQ(value, nullptr);
        EXPECT_EQ(raws.at(position).value->number, 99);
        EXPECT_TRUE(raws.at(position).isValid);
        EXPECT_FALSE(raws.at(position).isDecoded);
    }

    TestCard card{CardBuilder()};
    ProfileDFHandler handler{{}};
    std::unique_ptr<Counted> value = std::make_unique<Counted>(99);
    Blob record = hex("30 01 2A");
    std::vector<ASN1Object<Counted>> raws;
};

using Calls = std::vector<HandlerScript::Call>;

TEST_F(WriteFileAndObject, InsertsANewValueWhereTheHandlerPutTheRecord) {
    const std::vector<int> expected[] = {
        {99, 10, 11, 12}, {10, 99, 11, 12}, {10, 11, 99, 12}, {10, 11, 12, 99}};
    for (unsigned long position = 0; position <= 3; ++position) {
        handlerScript() = {.position = position};
        value = std::make_unique<Counted>(99);
        EXPECT_EQ(write(card.os()), position);
        EXPECT_EQ(numbers(), expected[position]);
        expectTaken(position);
        EXPECT_EQ(handlerScript().calls, (Calls{{card.os(), {}, record}}));
        delete raws[position].value;
        raws.erase(raws.begin() + static_cast<std::ptrdiff_t>(position));
    }
}

TEST_F(WriteFileAndObject, InsertsTheFirstValue) {
    clearObjects(raws);
    handlerScript().position = 0;
    EXPECT_EQ(write(card.os()), 0u);
    EXPECT_EQ(numbers(), std::vector<int>{99});
}

TEST_F(WriteFileAndObject, AsksTheHandlerForANewRecordEvenWithoutACard) {
    handlerScript().position = 3;
    EXPECT_EQ(write(nullptr), 3u);
    EXPECT_EQ(handlerScript().calls, (Calls{{nullptr, {}, record}}));
}

TEST_F(WriteFileAndObject, KeepsANewValueThatTheHandlerDeclines) {
    handlerScript().answer = false;
    EXPECT_EQ(write(card.os()), noIndex);
    expectNothingTaken();
}

TEST_F(WriteFileAndObject, ReturnsTheIndexOfAHandlerThatDeclinesAndSetsOne) {
    handlerScript() = {.answer = false, .position = 1};
    EXPECT_EQ(write(card.os()), 1u);
    expectNothingTaken();
}

TEST_F(WriteFileAndObject, KeepsANewValueThatTheHandlerPutBehindAllRecordsReadBefore) {
    for (const unsigned long position : {4UL, 100UL, noIndex - 1, noIndex}) {
        handlerScript() = {.position = position};
        EXPECT_EQ(write(card.os()), noIndex);
        expectNothingTaken();
    }
}

TEST_F(WriteFileAndObject, KeepsANewValueWhenTheHandlerThrows) {
    handlerScript().before = [] { throw SmartcardException("no", "here"); };
    EXPECT_EQ(failureOf([&] { write(card.os()); }), smartcardFailure("no", "here"));
    expectNothingTaken();
}

TEST_F(WriteFileAndObject, ReplacesAValue) {
    EXPECT_EQ(update(card.os(), 1), 1u);
    EXPECT_EQ(numbers(), (std::vector<int>{10, 99, 12}));
    expectTaken(1);
    EXPECT_EQ(Counted::alive, 3) << "the old value is gone";
    EXPECT_EQ(handlerScript().calls, (Calls{{card.os(), 1UL, record}}));
}

TEST_F(WriteFileAndObject, ReplacesAValueThatIsNotThere) {
    deleteObject(raws[2]);
    EXPECT_EQ(update(card.os(), 2), 2u);
    EXPECT_EQ(numbers(), (std::vector<int>{10, 11, 99}));
    expectTaken(2);
}

TEST_F(WriteFileAndObject, ReplacesAValueInMemoryOnlyWithoutACard) {
    handlerScript().answer = false;  // would be heard if it were asked
    EXPECT_EQ(update(nullptr, 2), 2u);
    EXPECT_EQ(numbers(), (std::vector<int>{10, 11, 99}));
    expectTaken(2);
    EXPECT_TRUE(handlerScript().calls.empty());
}

TEST_F(WriteFileAndObject, KeepsAValueThatTheHandlerDeclinesToReplace) {
    handlerScript().answer = false;
    EXPECT_EQ(update(card.os(), 1), 1u) << "the index all the same";
    expectNothingTaken();
}

TEST_F(WriteFileAndObject, KeepsAValueWhenTheHandlerThrows) {
    handlerScript().before = [] { throw SmartcardException("no", "here"); };
    EXPECT_EQ(failureOf([&] { update(card.os(), 1); }), smartcardFailure("no", "here"));
    expectNothingTaken();
}

// ---- the common part of every entry coder ----

using Value = PKCS15::DataType;

constexpr const char* operation = "Test::encode";
const Failure failed = smartcardFailure("ASN1 encoding error", operation);

const Blob stored = dataRecord({.common = {.label = "stored"}});
const Blob invalid = dataRecord({.common = {.label = std::string(256, 'x')}});

PKCS15::CommonObjectAttributes& commonOf(Value& value) {
    return value.getIf<Value::opaqueDO>()->commonObjectAttributes;
}

/// Makes the value a whole one.
void complete(Value& value) {
    auto& object = value.select_opaqueDO();
    object.typeAttributes.select<PKCS15::Opaque::indirect>().select_path().efidOrPath = hex("4E01");
    object.commonObjectAttributes.set_label() = text("new");
}
const Blob completed = dataRecord({.common = {.label = "new"}});

class EncodeEntry : public testing::Test {
protected:
    EncodeEntry() {
        handlerScript() = {};
        ASN1_configureCoderEnv(&env, ASN1_getPKCS15());
        for (const Blob& record : {stored, invalid})
            raws.push_back({decoded<Value>(record).clone().release(), true, true});
        raws.push_back({});  // did not decode
    }
    ~EncodeEntry() override { clearObjects(raws); }

    template <class Fill>
    unsigned long encode(ISCardOS* os, unsigned long index, Fill fill) {
        return encodeEntry(&env, os, handler, info, raws, index, operation, fill);
    }
    template <class Fill>
    Failure failureOfEncode(unsigned long index, Fill fill) {
        return failureOf([&] { encode(card.os(), index, fill); });
    }
    Blob raw(std::size_t index) const { return ASN1::encode(*raws.at(index).value); }
    void expectUntouched() const {
        EXPECT_TRUE(handlerScript().calls.empty());
        ASSERT_EQ(raws.size(), 3u);
        EXPECT_EQ(raw(0), stored);
        EXPECT_EQ(raw(1), invalid);
        EXPECT_EQ(raws[2].value, nullptr);
    }

    TestCard card{CardBuilder()};
    ASN1::CoderEnv env;
    ProfileDFHandler handler{{}};
    PKCS15ObjectInfo<DataInfo> info;
    std::vector<ASN1Object<Value>> raws;
};

const auto notCalled = [](Value&, bool) {
    ADD_FAILURE() << "was asked to fill";
    return true;
};

TEST_F(EncodeEntry, WritesNothingForAnInfoThatIsNotValid) {
    EXPECT_FALSE(info.Import(hex("00")));
    for (const unsigned long index : {noIndex, 0UL, 2UL, 7UL})
        EXPECT_EQ(encode(card.os(), index, notCalled), noIndex);
    expectUntouched();
}

TEST_F(EncodeEntry, FillsAFreshValueForANewRecord) {
    handlerScript().position = 1;
    EXPECT_EQ(encode(card.os(), noIndex,
                     [](Value& value, bool isNew) {
                         EXPECT_TRUE(isNew);
                         EXPECT_EQ(value.selection(), std::size_t{Value::none});
                         complete(value);
                         return true;
                     }),
              1u);
    EXPECT_EQ(handlerScript().calls, (Calls{{card.os(), {}, completed}}));
    ASSERT_EQ(raws.size(), 4u);
    EXPECT_EQ(raw(1), completed);
}

TEST_F(EncodeEntry, FillsACopyOfTheStoredValueForAnUpdate) {
    EXPECT_EQ(encode(card.os(), 0,
                     [&](Value& value, bool isNew) {
                         EXPECT_FALSE(isNew);
                         EXPECT_NE(&value, raws[0].value);
                         EXPECT_EQ(ASN1::encode(value), stored);
                         commonOf(value).set_label() = text("new");
                         EXPECT_EQ(raw(0), stored);
                         return true;
                     }),
              0u);
    EXPECT_EQ(handlerScript().calls, (Calls{{card.os(), 0UL, completed}}));
    EXPECT_EQ(raw(0), completed);
}

TEST_F(EncodeEntry, UpdatesInMemoryOnlyWithoutACard) {
    const auto fill = [](Value& value, bool) {
        commonOf(value).set_label() = text("new");
        return true;
    };
    EXPECT_EQ(encode(nullptr, 0, fill), 0u);
    EXPECT_TRUE(handlerScript().calls.empty());
    EXPECT_EQ(raw(0), completed);
}

TEST_F(EncodeEntry, ReturnsTheIndexOfAnUpdateThatTheHandlerDeclines) {
    handlerScript().answer = false;
    const Value* const before = raws[0].value;
    EXPECT_EQ(encode(card.os(), 0, [](Value&, bool) { return true; }), 0u);
    EXPECT_EQ(raws[0].value, before);
}

TEST_F(EncodeEntry, RefusesAnIndexWithoutAValue) {
    for (const unsigned long index : {2UL, 3UL, noIndex - 1})
        EXPECT_EQ(failureOfEncode(index, notCalled), failed);
    expectUntouched();
}

TEST_F(EncodeEntry, FailsWhenTheValueCannotBeFilled) {
    for (const unsigned long index : {noIndex, 0UL})
        EXPECT_EQ(failureOfEncode(index,
                                  [](Value& value, bool) {
                                      complete(value);
                                      return false;
                                  }),
                  failed);
    expectUntouched();
}

TEST_F(EncodeEntry, FailsWhenTheValueCannotBeEncoded) {
    for (const unsigned long index : {noIndex, 0UL})
        EXPECT_EQ(failureOfEncode(index,
                                  [](Value& value, bool) {
                                      value = Value();
                                      return true;
                                  }),
                  failed);
    expectUntouched();
}

TEST_F(EncodeEntry, PassesOnWhatFillingThrows) {
    for (const unsigned long index : {noIndex, 0UL})
        EXPECT_EQ(failureOfEncode(index,
                                  [](Value& value, bool) -> bool {
                                      complete(value);
                                      throw SmartcardException("unfit", "Fill");
                                  }),
                  smartcardFailure("unfit", "Fill"));
    expectUntouched();
}

TEST_F(EncodeEntry, PassesOnWhatTheHandlerThrows) {
    handlerScript().before = [] { throw SmartcardException("no", "here", 0x16982); };
    const auto fill = [](Value& value, bool) {
        complete(value);
        return true;
    };
    for (const unsigned long index : {noIndex, 0UL})
        EXPECT_EQ(failureOfEncode(index, fill), (Failure{smartcardId, "no", "here", 0x16982}));
    EXPECT_EQ(raws.size(), 3u);
    EXPECT_EQ(raw(0), stored);
}

TEST_F(EncodeEntry, WritesWhatBreaksAConstraintOnlyOverARecordThatDid) {
    const auto fill = [](Value& value, bool isNew) {
        if (isNew) complete(value);
        commonOf(value).set_authId() = times(256, 0x01);
        return true;
    };
    EXPECT_EQ(failureOfEncode(noIndex, fill), failed);
    EXPECT_EQ(failureOfEncode(0, fill), failed);
    expectUntouched();
    EXPECT_EQ(encode(card.os(), 1, fill), 1u);
    EXPECT_EQ(raw(1),
              dataRecord({.common = {.label = std::string(256, 'x'), .authId = times(256, 0x01)}}));
}

TEST_F(EncodeEntry, HoldsARecordToItsConstraintsOnceItKeepsThem) {
    const auto mend = [](Value& value, bool) {
        commonOf(value).set_label() = text("new");
        return true;
    };
    const auto spoil = [](Value& value, bool) {
        commonOf(value).set_label() = times(256, 'x');
        return true;
    };
    EXPECT_EQ(encode(card.os(), 1, mend), 1u);
    EXPECT_EQ(failureOfEncode(1, spoil), failed);
    EXPECT_EQ(raw(1), completed);
}

}  // namespace
}  // namespace tovi::test
