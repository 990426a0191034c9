#include "params/set_text.h"

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

SetText filled() {
    SetText field;
    field.fill(u'#');
    return field;
}

TEST(SetTexts, AreZeroFilled) {
    SetText field = filled();
    writeSetText(field, u"Type 1");
    EXPECT_EQ(readSetText(field), u"Type 1");
    for (std::size_t i = 6; i < field.size(); ++i) {
        EXPECT_EQ(field[i], u'\0') << i;
    }
}

TEST(SetTexts, KeepAsMuchAsTheLimit) {
    SetText field = filled();
    writeSetText(field, std::u16string(40, u'x'), 31);
    EXPECT_EQ(readSetText(field), std::u16string(31, u'x'));
    writeSetText(field, std::u16string(200, u'y'));
    EXPECT_EQ(readSetText(field), std::u16string(63, u'y'));
    writeSetText(field, u"");
    EXPECT_EQ(readSetText(field), u"");
}

TEST(SetTexts, NeverSplitAPairOfSurrogates) {
    SetText field = filled();
    const std::u16string text = std::u16string(30, u'x') + u"\U0001F600";
    writeSetText(field, text, 31);
    EXPECT_EQ(readSetText(field), std::u16string(30, u'x'));
    writeSetText(field, text, 32);
    EXPECT_EQ(readSetText(field), text);
}

TEST(SetTexts, NeverSplitThePairsAtTheEndsOfTheRange) {
    for (const std::u16string& pair : {std::u16string(u"\U00010000"), std::u16string(u"\U0010FFFF")}) {
        SetText field = filled();
        writeSetText(field, std::u16string(30, u'x') + pair, 31);
        EXPECT_EQ(readSetText(field), std::u16string(30, u'x'));
    }
    for (const char16_t single : {u'\uD7FF', u'\uE000', u'\uFFFF'}) {
        SetText field = filled();
        writeSetText(field, std::u16string(30, u'x') + single + u"y", 31);
        EXPECT_EQ(readSetText(field), std::u16string(30, u'x') + single);
    }
}

TEST(SetTexts, WithoutAZeroAreReadWhole) {
    EXPECT_EQ(readSetText(filled()), std::u16string(64, u'#'));
}

TEST(Utf, GoesBothWays) {
    const std::string text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    EXPECT_EQ(utf16FromUtf8(text), u"a\u00E9\u20AC\U0001F600");
    EXPECT_EQ(utf8FromUtf16(u"a\u00E9\u20AC\U0001F600"), text);
    EXPECT_EQ(utf16FromUtf8(""), u"");
    EXPECT_EQ(utf8FromUtf16(u""), "");
}

TEST(Utf, CoversTheEndsOfEachLength) {
    const std::pair<const char*, std::u16string> ends[] = {
        {"\x7F", u"\u007F"},
        {"\xC2\x80", u"\u0080"},
        {"\xDF\xBF", u"\u07FF"},
        {"\xE0\xA0\x80", u"\u0800"},
        {"\xED\x9F\xBF", u"\uD7FF"},
        {"\xEE\x80\x80", u"\uE000"},
        {"\xEF\xBF\xBF", u"\uFFFF"},
        {"\xF0\x90\x80\x80", u"\U00010000"},
        {"\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
    };
    for (const auto& [utf8, utf16] : ends) {
        EXPECT_EQ(utf16FromUtf8(utf8), utf16);
        EXPECT_EQ(utf8FromUtf16(utf16), utf8);
    }
}

TEST(Utf, ReplacesWhatIsNotValid) {
    EXPECT_EQ(utf8FromUtf16(std::u16string(1, static_cast<char16_t>(0xD800))), "\xEF\xBF\xBD");
    EXPECT_EQ(utf8FromUtf16(std::u16string(1, static_cast<char16_t>(0xDC00)) + u"a"),
              "\xEF\xBF\xBD"
              "a");
    for (const std::string& bad :
         {std::string("\x80"), std::string("\xFF"), std::string("\xC3"), std::string("\xC0\x80"),
          std::string("\xED\xA0\x80"), std::string("\xF5\x80\x80\x80")}) {
        const std::u16string text = utf16FromUtf8(bad + "z");
        ASSERT_GE(text.size(), 2U);
        EXPECT_EQ(text.front(), u'\uFFFD');
        EXPECT_EQ(text.back(), u'z');
    }
}

TEST(Utf, TellsEveryPath) {
    EXPECT_EQ(utf8FromPath({}), "");
    EXPECT_EQ(utf8FromPath(std::filesystem::path(u"\u00E4\u20AC \U0001F600.eqs")),
              "\u00E4\u20AC \U0001F600.eqs");
    EXPECT_EQ(utf8FromPath(nameThatIsNoText(".eqs")), "\uFFFD.eqs");
}

}  // namespace
}  // namespace tessavo::test
