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

using AfterFailure = Forecast::AfterFailure;

PKCS15ObjectInfo<AuthInfo> authObject(std::uint16_t reference, AuthType type, std::uint8_t id) {
    PKCS15ObjectInfo<AuthInfo> object;
    object.reference = reference;
    object.type = type;
    object.authObjectId = Blob{id};
    return object;
}

TEST(Forecast, GivesANewObjectTheLowestFreeRow) {
    const auto model = modelWith({tokenInfoObject, privateKeyObject, freeRow, dataObject});
    Forecast forecast(*model, AfterFailure::stop);
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
    const auto model = modelWith({freeRow});
    Forecast forecast(*model, AfterFailure::stop);
    forecast.write(dataObject);
    EXPECT_EQ(forecast.objectTypeOf(0), freeRow);
    EXPECT_EQ(forecast.objectTypeOf(1), dataObject);
}

TEST(Forecast, KnowsNoRecordNumberOnceTheCardIsReadAgain) {
    const auto model = modelWith({tokenInfoObject, privateKeyObject});
    Forecast forecast(*model, AfterFailure::stop);
    forecast.readAgain();
    forecast.write(dataObject);
    EXPECT_EQ(forecast.objectTypeOf(0), std::nullopt);
    EXPECT_EQ(forecast.objectTypeOf(1), std::nullopt);
}

TEST(Forecast, KnowsTheFirstAuthenticationObjectOfAName) {
    const auto model = modelWith({});
    Forecast forecast(*model, AfterFailure::stop);
    forecast.writeAuth(authObject(1, AuthType::pin, 5));
    forecast.writeAuth(authObject(1, AuthType::biometric, 6));
    const AuthName one{1, {}}, two{2, {}}, six{noReference, Blob{6}};
    EXPECT_EQ(forecast.find(one)->type, AuthType::pin);
    EXPECT_EQ(forecast.find(six)->type, AuthType::biometric);
    EXPECT_EQ(forecast.find(two), nullptr);
    forecast.updateAuth(one, authObject(1, AuthType::pin, 6));
    EXPECT_EQ(forecast.find(six)->type, AuthType::pin) << "which has the identifier now, too";
    forecast.eraseAuth(one);
    EXPECT_EQ(forecast.find(one)->type, AuthType::biometric);
    forecast.eraseAuth(one);
    forecast.eraseAuth(one);
    EXPECT_EQ(forecast.find(one), nullptr);
}

TEST(Forecast, KnowsNothingOfNewObjectsWhenOperationsMayFail) {
    const auto model = modelWith({tokenInfoObject, privateKeyObject, dataObject});
    Forecast forecast(*model, AfterFailure::goOn);
    forecast.erase(1);
    forecast.write(certificateObject);
    forecast.write(certificateObject);
    EXPECT_EQ(forecast.objectTypeOf(1), freeRow) << "which may not be free";
    EXPECT_EQ(forecast.objectTypeOf(2), dataObject) << "nothing but a deletion changes that";
    EXPECT_EQ(forecast.objectTypeOf(3), std::nullopt);
    forecast.writeAuth(authObject(1, AuthType::pin, 5));
    EXPECT_EQ(forecast.find({1, {}}), nullptr);
}

}  // namespace
}  // namespace tovi::test
