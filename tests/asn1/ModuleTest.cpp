#include "tovi/asn1/Module.h"

#include <gtest/gtest.h>

#include "tests/asn1/TestSchema.h"
#include "tests/asn1/TestTools.h"
#include "tovi/asn1/CoderEnv.h"

namespace {

using namespace asn1test;

const ASN1::Type* const types[] = {&Point::type, &Shape::type};

TEST(Module, FindsItsTypesByName) {
    const ASN1::Module module("Test", {2, 999, 1}, types);
    EXPECT_EQ(module.name(), "Test");
    EXPECT_EQ(module.identifier().toString(), "2.999.1");
    EXPECT_EQ(module.find("Shape"), &Shape::type);
    EXPECT_EQ(module.find("Circle"), nullptr);
    EXPECT_EQ(module.types().size(), 2u);
}

struct CoderEnvironment : testing::Test {
    ASN1::Module module{"Test", {2, 999, 1}, types};
    ASN1::CoderEnv env;

    bool decode(const ASN1::Octets& octets, ASN1::AbstractData value, bool acceptRest = false) {
        const char* begin = reinterpret_cast<const char*>(octets.data());
        return env.decode(begin, begin + octets.size(), value, acceptRest);
    }
};

TEST_F(CoderEnvironment, CodesOnceItIsConfigured) {
    Point point;
    ASN1::Octets out;
    EXPECT_FALSE(decode(hex("30 03 02 01 07"), point));
    EXPECT_EQ(toString(env.lastError()), "the coder environment is not configured");
    EXPECT_FALSE(env.encode(point, out));
    env.configure(&module);
    EXPECT_EQ(env.module(), &module);
    EXPECT_TRUE(decode(hex("30 03 02 01 07"), point));
    EXPECT_FALSE(env.lastError());
    EXPECT_TRUE(env.encode(point, out));
    EXPECT_EQ(toHex(out), "3003020107");
}

TEST_F(CoderEnvironment, KeepsTheLastError) {
    env.configure(&module);
    Point point;
    EXPECT_FALSE(decode(hex("30 03 04 01 07"), point));
    EXPECT_EQ(toString(env.lastError()),
              "Point.x: found OCTET STRING, expected INTEGER, at octet 2");
}

TEST_F(CoderEnvironment, RefusesOctetsBehindTheValueUnlessTold) {
    env.configure(&module);
    Point point;
    EXPECT_FALSE(decode(hex("30 03 02 01 07 00"), point));
    EXPECT_TRUE(decode(hex("30 03 02 01 07 00"), point, true));
}

TEST_F(CoderEnvironment, DoesNotWriteWhatHasNothingSelected) {
    env.configure(&module);
    ASN1::Octets out;
    EXPECT_FALSE(env.encode(Shape(), out));
}

}  // namespace
