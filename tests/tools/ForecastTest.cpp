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

using Identity = Forecast::Identity;

PKCS15ObjectInfo<AuthInfo> authObject(std::uint16_t reference, AuthType type, std::uint8_t id) {
    PKCS15ObjectInfo<AuthInfo> object;
    object.reference = reference;
    object.type = type;
    object.authObjectId = Blob{id};
    return object;
}

TEST(Forecast, GivesANewObjectTheLowestFreeRow) {
    const auto model = modelWith({tokenInfoObject, privateKeyObject, freeRow, dataObject});
    Forecast forecast(*model);
    forecast.write(certificateObject, 0, {});
    EXPECT_EQ(forecast.objectTypeOf(2), certificateObject);
    forecast.write(publicKeyObject, 1, {});
    EXPECT_EQ(forecast.objectTypeOf(4), publicKeyObject);
    forecast.erase(1);
    EXPECT_EQ(forecast.objectTypeOf(1), freeRow);
    forecast.write(dataObject, 3, {});
    EXPECT_EQ(forecast.objectTypeOf(1), dataObject);
    EXPECT_EQ(forecast.objectTypeOf(5), std::nullopt);
    forecast.erase(99);
}

TEST(Forecast, NeverGivesTheRowOfTokenInfoAway) {
    const auto model = modelWith({freeRow});
    Forecast forecast(*model);
    forecast.write(dataObject, 0, {});
    EXPECT_EQ(forecast.objectTypeOf(0), freeRow);
    EXPECT_EQ(forecast.objectTypeOf(1), dataObject);
}

TEST(Forecast, KnowsNoRecordNumberUntilItIsToldThoseOfTheModel) {
    const auto model = modelWith({tokenInfoObject, privateKeyObject});
    Forecast forecast(*model);
    forecast.readAgain();
    EXPECT_EQ(forecast.objectTypeOf(1), std::nullopt);
    EXPECT_EQ(forecast.identityOf(1), std::nullopt);
    model->newFATRecord(dataObject, false);
    forecast.takeRows();
    EXPECT_EQ(forecast.objectTypeOf(2), dataObject);
}

TEST(Forecast, KnowsObjectsApartThatHaveTheSameNumber) {
    const auto model = modelWith({tokenInfoObject, dataObject});
    Forecast forecast(*model), other(*model);
    EXPECT_TRUE(forecast.hasSameRows(other));
    forecast.erase(1);
    EXPECT_EQ(forecast.identityOf(1), std::nullopt);
    forecast.write(dataObject, 7, {});
    EXPECT_EQ(forecast.identityOf(1), Identity(true, 7));
    EXPECT_EQ(other.identityOf(1), Identity(false, 1));
    EXPECT_FALSE(forecast.hasSameRows(other));
}

TEST(Forecast, KnowsTheFirstAuthenticationObjectOfAName) {
    const auto model = modelWith({});
    Forecast forecast(*model);
    forecast.writeAuth(authObject(1, AuthType::pin, 5), 0);
    forecast.writeAuth(authObject(1, AuthType::biometric, 6), 1);
    const AuthName one{1, {}}, two{2, {}}, six{noReference, Blob{6}};
    EXPECT_EQ(forecast.find(one)->type, AuthType::pin);
    EXPECT_EQ(forecast.identityOf(six), Identity(true, 1));
    EXPECT_EQ(forecast.find(two), nullptr);
    forecast.updateAuth(one, authObject(1, AuthType::pin, 6));
    EXPECT_EQ(forecast.identityOf(six), Identity(true, 0)) << "which has the identifier now, too";
    forecast.eraseAuth(one);
    EXPECT_EQ(forecast.find(one)->type, AuthType::biometric);
    forecast.eraseAuth(one);
    forecast.eraseAuth(one);
    EXPECT_EQ(forecast.find(one), nullptr);
    EXPECT_EQ(forecast.identityOf(one), std::nullopt);
}

}  // namespace
}  // namespace tovi::test
