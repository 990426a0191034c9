#include "history/cbor.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace tessavo::test {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Json = nlohmann::json;

constexpr std::uint64_t largest = ~std::uint64_t{0};

const std::vector<std::uint64_t> numbers{0,     1,     23,         24,          255,         256,
                                         65535, 65536, 0xFFFFFFFF, 0x100000000, largest - 1, largest};

/// A map with one value of this form under the key "a", and whether a reader takes it that only knows "b".
bool isPassedOver(const Bytes& value) {
    Bytes map{0xA2, 0x61, 'a'};
    map.insert(map.end(), value.begin(), value.end());
    map.insert(map.end(), {0x61, 'b', 0x07});
    CborReader in(map);
    std::uint64_t seven = 0;
    const bool isRight = in.map({{"b", [&](CborReader& found) {
                                      seven = found.number().value_or(0);
                                      return true;
                                  }}});
    return isRight && in.isAtEnd() && seven == 7;
}

TEST(Cbor, WritesAsAnotherWriterDoes) {
    for (const std::uint64_t number : numbers) {
        Bytes bytes;
        CborWriter(bytes).number(number);
        EXPECT_EQ(bytes, Json::to_cbor(Json(number))) << number;
    }
    for (const std::size_t size : {0U, 1U, 23U, 24U, 255U, 256U, 65535U, 65536U}) {
        Bytes bytes;
        CborWriter(bytes).bytes(Bytes(size, 5));
        EXPECT_EQ(bytes, Json::to_cbor(Json::binary(Bytes(size, 5)))) << size;
        bytes.clear();
        CborWriter(bytes).text(std::string(size, 'x'));
        EXPECT_EQ(bytes, Json::to_cbor(Json(std::string(size, 'x')))) << size;
        bytes.clear();
        CborWriter(bytes).list(size);
        for (std::size_t i = 0; i < size; ++i) {
            CborWriter(bytes).boolean(i % 2 == 1);
        }
        Json list = Json::array();
        for (std::size_t i = 0; i < size; ++i) {
            list.push_back(i % 2 == 1);
        }
        EXPECT_EQ(bytes, Json::to_cbor(list)) << size;
    }
    Bytes bytes;
    CborWriter out(bytes);
    out.map(2);
    out.text("a");
    out.number(1);
    out.text("b");
    out.boolean(true);
    EXPECT_EQ(bytes, Json::to_cbor(Json{{"a", 1}, {"b", true}}));
}

TEST(Cbor, ReadsWhatItHasWritten) {
    for (const std::uint64_t number : numbers) {
        Bytes bytes;
        CborWriter out(bytes);
        out.number(number);
        out.text("t\u00e4xt");
        out.bytes(Bytes(300, 9));
        out.boolean(true);
        out.boolean(false);
        out.list(3);
        CborReader in(bytes);
        EXPECT_EQ(in.number(), number);
        EXPECT_EQ(in.text(), "t\u00e4xt");
        const auto read = in.bytes();
        ASSERT_TRUE(read.has_value());
        EXPECT_EQ(Bytes(read->begin(), read->end()), Bytes(300, 9));
        EXPECT_EQ(in.boolean(), true);
        EXPECT_EQ(in.boolean(), false);
        EXPECT_FALSE(in.isAtEnd());
        EXPECT_EQ(in.list(), 3U);
        EXPECT_TRUE(in.isAtEnd());
        EXPECT_FALSE(in.number().has_value());
        EXPECT_FALSE(in.isAtEnd()) << "more was asked for than there is";
    }
}

TEST(Cbor, WhatIsOfAnotherKindIsNoneOfThis) {
    const std::vector<Json> values{1U,   -1,      "text", Json::binary({1}), Json::array({1}), Json{{"a", 1}},
                                   true, nullptr, 2.5};
    for (const Json& value : values) {
        const Bytes bytes = Json::to_cbor(value);
        EXPECT_EQ(CborReader(bytes).number().has_value(), value.is_number_unsigned()) << value;
        EXPECT_EQ(CborReader(bytes).text().has_value(), value.is_string()) << value;
        EXPECT_EQ(CborReader(bytes).bytes().has_value(), value.is_binary()) << value;
        EXPECT_EQ(CborReader(bytes).list().has_value(), value.is_array()) << value;
        EXPECT_EQ(CborReader(bytes).boolean().has_value(), value.is_boolean()) << value;
        CborReader in(bytes);
        EXPECT_FALSE(in.map({{"b", [](CborReader&) { return true; }}})) << value;
        EXPECT_FALSE(in.text().has_value()) << "nothing is read after that";
    }
}

TEST(Cbor, WhatEndsTooSoonIsNothing) {
    for (const std::uint64_t number : numbers) {
        Bytes bytes;
        CborWriter(bytes).number(number);
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            EXPECT_FALSE(CborReader(std::span(bytes).first(size)).number().has_value())
                << number << ' ' << size;
        }
    }
    Bytes bytes;
    CborWriter(bytes).text(std::string(40, 'x'));
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_FALSE(CborReader(std::span(bytes).first(size)).text().has_value()) << size;
    }
    for (const std::uint8_t kind : Bytes{0x40, 0x60}) {
        const Bytes endless{
            static_cast<std::uint8_t>(kind + 0x1B), 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 1};
        EXPECT_FALSE(CborReader(endless).text().has_value());
        EXPECT_FALSE(CborReader(endless).bytes().has_value());
    }
}

TEST(Cbor, KeysOfAMapStandInAnyOrderEachOnce) {
    const auto sum = [](const Bytes& bytes) -> std::uint64_t {
        CborReader in(bytes);
        std::uint64_t total = 0;
        const auto add = [&](CborReader& value) {
            const auto number = value.number();
            total += number.value_or(0);
            return number.has_value();
        };
        return in.map({{"one", add}, {"two", add}}) && in.isAtEnd() ? total : 0;
    };
    const Bytes one{0x63, 'o', 'n', 'e', 1};
    const Bytes two{0x63, 't', 'w', 'o', 2};
    const auto map = [](std::uint8_t count, const std::vector<Bytes>& pairs) {
        Bytes bytes{static_cast<std::uint8_t>(0xA0 + count)};
        for (const Bytes& pair : pairs) {
            bytes.insert(bytes.end(), pair.begin(), pair.end());
        }
        return bytes;
    };
    EXPECT_EQ(sum(map(2, {one, two})), 3U);
    EXPECT_EQ(sum(map(2, {two, one})), 3U);
    EXPECT_EQ(sum(map(3, {two, {0x61, 'x', 0xF6}, one})), 3U);
    EXPECT_EQ(sum(map(1, {one})), 0U) << "one is missing";
    EXPECT_EQ(sum(map(3, {one, two, one})), 0U) << "one stands twice";
    EXPECT_EQ(sum(map(3, {one, two})), 0U) << "a pair is missing";
    EXPECT_EQ(sum(map(1, {one, two})), 0U);
    EXPECT_EQ(sum(map(3, {one, two, {1, 1}})), 0U) << "a key is no text";
}

TEST(Cbor, AKeyThatMayBeMissingStandsAtMostOnceAndIsRight) {
    const auto accepts = [](const Bytes& bytes) {
        const auto read = [](CborReader& value) { return value.number().has_value(); };
        CborReader in(bytes);
        return in.map({{"a", read, true}, {"b", read}}) && in.isAtEnd();
    };
    EXPECT_TRUE(accepts({0xA2, 0x61, 'a', 1, 0x61, 'b', 2}));
    EXPECT_TRUE(accepts({0xA1, 0x61, 'b', 2}));
    EXPECT_FALSE(accepts({0xA1, 0x61, 'a', 1})) << "the other one may not be missing";
    EXPECT_FALSE(accepts({0xA2, 0x61, 'a', 0xF5, 0x61, 'b', 2})) << "it is no number";
    EXPECT_FALSE(accepts({0xA3, 0x61, 'a', 1, 0x61, 'a', 1, 0x61, 'b', 2})) << "twice";
}

TEST(Cbor, ValuesThatNobodyKnowsArePassedOver) {
    for (const Json& value :
         {Json(1), Json(-70000), Json("text"), Json::array(), Json::object(), Json(nullptr), Json(2.5),
          Json(0.1), Json(true), Json::binary({1, 2}), Json{{"a", {1, {{"b", Json::binary({})}}}}}}) {
        EXPECT_TRUE(isPassedOver(Json::to_cbor(value))) << value;
    }
    EXPECT_TRUE(isPassedOver({0xC0, 0x61, 'x'})) << "a tag";
    EXPECT_TRUE(isPassedOver({0xF9, 0x3C, 0x00})) << "half a float";
    EXPECT_FALSE(isPassedOver({0x9F, 0x01, 0xFF})) << "its length is not told";
    EXPECT_FALSE(isPassedOver({0x1C})) << "there is no such length";
}

TEST(Cbor, WhatIsTooDeepIsRefusedBeforeItTakesTheStack) {
    constexpr std::uint8_t listOfOne = 0x81;
    for (const Bytes& part : {Bytes{listOfOne}, Bytes{0xA1, 0x61, 'a'}, Bytes{0xC1}}) {
        const auto nested = [&](int depth) {
            Bytes bytes;
            for (int i = 0; i < depth; ++i) {
                bytes.insert(bytes.end(), part.begin(), part.end());
            }
            bytes.push_back(0x01);
            return bytes;
        };
        EXPECT_TRUE(isPassedOver(nested(8)));
        EXPECT_FALSE(isPassedOver(nested(9)));
        EXPECT_FALSE(isPassedOver(nested(1000000)));
    }
}

TEST(Cbor, ListsThatPromiseTooMuchEndWithTheirBytes) {
    for (const std::uint8_t kind : Bytes{0x80, 0xA0}) {
        EXPECT_FALSE(isPassedOver(Bytes{static_cast<std::uint8_t>(kind + 0x1B), 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
                                        0xFF, 0xFF, 0xFF, 0x01}));
    }
}

}  // namespace
}  // namespace tessavo::test
