#include "tools/JsonWriter.h"

#include <gtest/gtest.h>

#include <atomic>
#include <sstream>

#include "TestCommand.h"

namespace tovi::test {
namespace {

/// A call with its output.
struct Output {
    std::istringstream in;
    std::ostringstream out, err;
    Console console{in, out, err};
    GlobalOptions options;
    Invocation call{options, console, "tovi test"};
};

TEST(JsonWriter, WritesWhatADocumentAsAWholeWouldBe) {
    const Json value = {{"a", {1, {{"b", "two\nlines \x7F"}}}}, {"c", Json::object()}};
    Json document;
    document["first"] = value;
    document["none"] = Json::array();
    document["list"] = Json::array({value, 7, value});
    document["last \""] = nullptr;
    Output whole, pieces;
    whole.call.printJson(document);
    JsonWriter writer(pieces.call);
    writer.add("first", value);
    writer.beginList("none");
    writer.endList();
    writer.beginList("list");
    for (const Json& element : document["list"]) writer.addElement(element);
    writer.endList();
    writer.add("last \"", nullptr);
    writer.finish();
    EXPECT_EQ(pieces.out.str(), whole.out.str());
}

TEST(JsonWriter, WritesAnEmptyDocument) {
    Output output;
    JsonWriter(output.call).finish();
    EXPECT_EQ(Json::parse(output.out.str()), Json::object());
}

TEST(JsonWriter, WritesNothingWhenTheUserAskedToStop) {
    const std::atomic<bool> interrupted = true;
    Output output;
    output.console.interrupted = &interrupted;
    JsonWriter writer(output.call);
    writer.add("member", 1);
    EXPECT_THROW(writer.finish(), Interrupted);
    EXPECT_EQ(output.out.str(), "");
}

TEST(JsonWriter, FailsWhenTheOutputDid) {
    Output output;
    JsonWriter writer(output.call);
    output.out.setstate(std::ios::badbit);
    EXPECT_THROW(writer.finish(), Failure);
}

}  // namespace
}  // namespace tovi::test
