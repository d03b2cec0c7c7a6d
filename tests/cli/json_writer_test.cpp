// The command line's JSON: members and commas in their places, and any text of a project,
// whatever bytes it holds, written as a valid JSON string.
#include <gtest/gtest.h>

#include <cmath>

#include "cli/JsonWriter.h"

namespace {

TEST(JsonWriterTest, NestsObjectsAndArraysWithTheirCommas) {
    JsonWriter json;
    json.BeginObject().Key("n").Number(-3).Key("list").BeginArray();
    json.Number(1u).BeginObject().EndObject().BeginArray().EndArray().String("x");
    json.EndArray().Key("empty").BeginArray().EndArray().EndObject();
    EXPECT_EQ(json.Text(), R"({"n":-3,"list":[1,{},[],"x"],"empty":[]})");
}

TEST(JsonWriterTest, DecimalsAreFixedAndWhatIsNoNumberIsNull) {
    JsonWriter json;
    json.BeginArray().Decimal(91.35, 1).Decimal(1.0f / 3, 2).Decimal(0, 1);
    json.Decimal(std::nan(""), 1).Decimal(-HUGE_VAL, 2).Decimal(1e300, 1).EndArray();
    EXPECT_EQ(json.Text().substr(0, 21), "[91.3,0.33,0.0,null,n");  // 91.35 is a shade below
    EXPECT_EQ(json.Text().size(), 21 + 4 + 303 + 1);
}

TEST(JsonWriterTest, StringsEscapeWhatJsonMustAndKeepOtherBytesValid) {
    JsonWriter json;
    json.BeginArray().String("say \"hi\\\"\t\n\x01\x1f end");
    json.String("caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80");  // well formed: kept
    // Latin-1, an overlong slash, a surrogate, a sequence cut short and a stray follower.
    json.String("caf\xe9|\xc0\xaf|\xed\xa0\x80|\xe2\x82|\x80").EndArray();
    EXPECT_EQ(json.Text(),
              "[\"say \\\"hi\\\\\\\"\\u0009\\u000a\\u0001\\u001f end\","
              "\"caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80\","
              "\"caf\\u00e9|\\u00c0\\u00af|\\u00ed\\u00a0\\u0080|\\u00e2\\u0082|\\u0080\"]");
}

}  // namespace
