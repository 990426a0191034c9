#include "history/cbor_shape.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <vector>

namespace tessavo::test {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Json = nlohmann::json;

TEST(CborShape, PlainValuesPass) {
    for (const Json& value :
         {Json(1), Json("text"), Json::array(), Json::object(), Json(nullptr), Json(2.5), Json(-1),
          Json(true), Json::binary({1, 2}), Json{{"a", {1, {{"b", Json::binary({})}}}}}}) {
        EXPECT_TRUE(hasPlainShape(Json::to_cbor(value))) << value;
    }
}

TEST(CborShape, OnlyWholeValuesPass) {
    const Bytes whole = Json::to_cbor(Json{{"list", {1, "two", Json::binary({3, 3, 3})}}});
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(hasPlainShape(std::span(whole).first(size))) << size;
    }
    Bytes more = whole;
    more.push_back(0x01);
    EXPECT_FALSE(hasPlainShape(more));
}

TEST(CborShape, WhatIsTooDeepIsRefusedBeforeItTakesTheStack) {
    constexpr std::uint8_t listOfOne = 0x81;
    constexpr std::uint8_t openList = 0x9F;
    constexpr std::uint8_t mapOfOne = 0xA1;
    Bytes eight(8, listOfOne);
    eight.push_back(0x01);
    EXPECT_TRUE(hasPlainShape(eight));
    eight.insert(eight.begin(), listOfOne);
    EXPECT_FALSE(hasPlainShape(eight));
    EXPECT_FALSE(hasPlainShape(Bytes(10000000, listOfOne)));
    EXPECT_FALSE(hasPlainShape(Bytes(10000000, openList)));
    Bytes maps;
    for (int i = 0; i < 3000000; ++i) {
        maps.insert(maps.end(), {mapOfOne, 0x61, 'a'});
    }
    EXPECT_FALSE(hasPlainShape(maps));
}

TEST(CborShape, ListsOfMorePartsThanBytesAreRefused) {
    for (const std::uint8_t kind : Bytes{0x80, 0xA0}) {
        EXPECT_FALSE(hasPlainShape(Bytes{static_cast<std::uint8_t>(kind + 0x1B), 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
                                         0xFF, 0xFF, 0xFE, 0x01}));
        EXPECT_FALSE(
            hasPlainShape(Bytes{static_cast<std::uint8_t>(kind + 0x1A), 0x7F, 0xFF, 0xFF, 0xFF, 0x01}));
    }
    for (const std::uint8_t kind : Bytes{0x40, 0x60}) {
        EXPECT_FALSE(hasPlainShape(Bytes{static_cast<std::uint8_t>(kind + 0x1B), 0x7F, 0xFF, 0xFF, 0xFF, 0xFF,
                                         0xFF, 0xFF, 0xFE, 0x01}));
    }
}

}  // namespace
}  // namespace tessavo::test
