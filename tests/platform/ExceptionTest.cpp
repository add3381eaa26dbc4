#include "tovi/interfaces/Exception.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <new>
#include <typeinfo>

namespace {

bool memoryIsExhausted = false;

}  // namespace

// The form of operator new that Clone has to use.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (memoryIsExhausted) return nullptr;
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

namespace tovi {
namespace {

template <class T>
class EveryException : public testing::Test {};

using Classes = testing::Types<Exception, LogicalException, SmartcardException>;
TYPED_TEST_SUITE(EveryException, Classes);

TYPED_TEST(EveryException, HoldsMessageOperationAndCode) {
    const char* message = "invalid record number";
    const char* operation = "PKCS15Container::updateInfo";
    const TypeParam exception(message, operation, -7);
    EXPECT_EQ(exception.GetMessage(), message) << "the texts are not copied";
    EXPECT_EQ(exception.GetOperation(), operation);
    EXPECT_EQ(exception.GetCode(), -7);
    EXPECT_EQ(TypeParam(nullptr, operation).GetMessage(), nullptr);
    EXPECT_EQ(TypeParam(message, operation).GetCode(), 0);
}

TYPED_TEST(EveryException, ClonesItsOwnClass) {
    const TypeParam exception("message", "operation", 0x16A84);
    const Exception& base = exception;
    const std::unique_ptr<Exception> clone(base.Clone());
    ASSERT_NE(clone, nullptr);
    const Exception& copy = *clone;
    EXPECT_EQ(typeid(copy), typeid(TypeParam));
    EXPECT_EQ(clone->GetMessage(), exception.GetMessage());
    EXPECT_EQ(clone->GetOperation(), exception.GetOperation());
    EXPECT_EQ(clone->GetCode(), 0x16A84);
}

TYPED_TEST(EveryException, ClonesToNullWhenMemoryIsExhausted) {
    const TypeParam exception("message", "operation");
    memoryIsExhausted = true;
    const Exception* clone = exception.Clone();
    memoryIsExhausted = false;
    EXPECT_EQ(clone, nullptr);
}

TYPED_TEST(EveryException, ThrowsItsOwnClass) {
    const TypeParam exception("message", "operation", 5);
    const Exception& base = exception;
    try {
        base.Throw();
    } catch (const Exception& thrown) {
        EXPECT_EQ(typeid(thrown), typeid(TypeParam));
        EXPECT_EQ(thrown.GetMessage(), exception.GetMessage());
        EXPECT_EQ(thrown.GetOperation(), exception.GetOperation());
        EXPECT_EQ(thrown.GetCode(), 5);
    }
}

TEST(Exception, HasANumberForEachClass) {
    EXPECT_EQ(Exception("", "").GetId(), 0);
    EXPECT_EQ(LogicalException("", "").GetId(), 40);
    EXPECT_EQ(SmartcardException("", "").GetId(), 140);
}

}  // namespace
}  // namespace tovi
