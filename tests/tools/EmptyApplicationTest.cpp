#include "tools/EmptyApplication.h"

#include <gtest/gtest.h>

#include "tools/CardPlan.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi::test {
namespace {

NewApplication plain() {
    NewApplication application;
    application.serial = Blob{0x01};
    application.aid = PKCS15_AID;
    application.fileSize = 300;
    return application;
}

TEST(DescribeEmptyApplication, IsADescriptionOfACard) {
    const CardPlan plan = cardPlanFromJson(describeEmptyApplication(plain()));
    ASSERT_EQ(plan.card.files().size(), 14u);
    EXPECT_EQ(plan.card.files()[2].aid, PKCS15_AID);
    for (std::size_t i = 5; i < 14; ++i) EXPECT_EQ(plan.card.files()[i].size, 300u);
}

TEST(DescribeEmptyApplication, LeavesOutTextsThatAreEmpty) {
    const auto tokenInfo = [](const NewApplication& application) {
        return describeEmptyApplication(application)["files"][4]["records"][0];
    };
    EXPECT_FALSE(tokenInfo(plain()).contains("label"));
    EXPECT_FALSE(tokenInfo(plain()).contains("manufacturerID"));
    NewApplication named = plain();
    named.label = "L";
    named.manufacturer = "M";
    EXPECT_EQ(tokenInfo(named)["label"], "L");
    EXPECT_EQ(tokenInfo(named)["manufacturerID"], "M");
}

}  // namespace
}  // namespace tovi::test
