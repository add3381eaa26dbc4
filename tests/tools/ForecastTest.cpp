#include "tools/Forecast.h"

#include <gtest/gtest.h>

#include "tools/Model.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi::test {
namespace {

/// A model with rows of these types.
ContainerPointer modelWith(std::initializer_list<std::uint8_t> types) {
    ContainerPointer model = makeContainer(PKCS15_DF);
    for (const std::uint8_t type : types) model->newFATRecord(type, false);
    return model;
}

TEST(Forecast, GivesANewObjectTheLowestFreeRow) {
    Forecast forecast(*modelWith({tokenInfoObject, privateKeyObject, freeRow, dataObject}));
    forecast.write(certificateObject);
    EXPECT_EQ(forecast.objectTypeOf(2), certificateObject);
    forecast.write(publicKeyObject);
    EXPECT_EQ(forecast.objectTypeOf(4), publicKeyObject);
    forecast.erase(1);
    EXPECT_EQ(forecast.objectTypeOf(1), freeRow);
    forecast.write(dataObject);
    EXPECT_EQ(forecast.objectTypeOf(1), dataObject);
    EXPECT_EQ(forecast.objectTypeOf(5), std::nullopt);
    forecast.erase(99);
}

TEST(Forecast, NeverGivesTheRowOfTokenInfoAway) {
    Forecast forecast(*modelWith({freeRow}));
    forecast.write(dataObject);
    EXPECT_EQ(forecast.objectTypeOf(0), freeRow);
    EXPECT_EQ(forecast.objectTypeOf(1), dataObject);
}

TEST(Forecast, KnowsNoRecordNumberOnceTheCardIsReadAgain) {
    Forecast forecast(*modelWith({tokenInfoObject, privateKeyObject}));
    forecast.readAgain();
    EXPECT_EQ(forecast.objectTypeOf(1), std::nullopt);
}

TEST(Forecast, KnowsTheFirstAuthenticationObjectOfAReference) {
    Forecast forecast(*modelWith({}));
    forecast.writeAuth(1, AuthType::pin);
    forecast.writeAuth(1, AuthType::biometric);
    EXPECT_EQ(forecast.authTypeOf(1), AuthType::pin);
    EXPECT_EQ(forecast.authTypeOf(2), std::nullopt);
    forecast.eraseAuth(1);
    EXPECT_EQ(forecast.authTypeOf(1), AuthType::biometric);
    forecast.eraseAuth(1);
    forecast.eraseAuth(1);
    EXPECT_EQ(forecast.authTypeOf(1), std::nullopt);
}

}  // namespace
}  // namespace tovi::test
