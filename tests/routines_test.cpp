// The routines that all converters share.

#include "host/NoValue.h"
#include "routines/Angles.h"
#include "routines/CodePage.h"
#include "routines/Fields.h"
#include "routines/FileName.h"
#include "routines/Numbers.h"
#include "routines/OutputBuffer.h"
#include "routines/Reduction.h"
#include "routines/Text.h"
#include "routines/Trigonometry.h"
#include "routines/TskFormat.h"
#include "routines/TskString.h"
#include "tests/support/NotFinite.h"

#include <gtest/gtest.h>

#include <array>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

using convfile::test::kInfinity;

/// Switches the process to a locale with decimal commas while it lives, where there is one.
class CommaLocale {
public:
    CommaLocale() {
        for (const char* name : {"it_IT.UTF-8", "de_DE.UTF-8", "Italian"}) {
            if (std::setlocale(LC_ALL, name))
                return;
        }
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale() { std::setlocale(LC_ALL, "C"); }
};

/// Sixteen characters, or sixty-four, are looked at at once: wherever a text ends, it is cut as one
/// field after the other would be.
TEST(Text, FieldsAreThoseThatAreCutOneByOne) {
    std::mt19937 random(1);
    for (std::size_t length = 0; length < 150; ++length) {
        for (int turn = 0; turn < 20; ++turn) {
            std::string text;
            for (std::size_t i = 0; i < length; ++i)
                text += ", \t\x2B\x2D\xACxyz"[random() % 9];
            std::vector<std::size_t> expected;
            for (std::size_t i = text.find(','); i != std::string::npos; i = text.find(',', i + 1))
                expected.push_back(i);
            std::vector<std::size_t> positions;
            ForEachPosition(text, ',', [&](std::size_t i) { positions.push_back(i); });
            ASSERT_EQ(positions, expected) << text;

            std::string_view rest = text;
            FieldCutter cutter(text, ',');
            for (std::size_t i = 0; i <= expected.size(); ++i) {
                std::string_view field;
                CutAt(rest, ',', field);
                ASSERT_EQ(cutter.Next(), TrimBoth(field)) << text;
                ASSERT_EQ(cutter.Rest(), rest) << text;
            }
            ASSERT_EQ(cutter.Count(), expected.size()) << text;
            ASSERT_EQ(HoldsPair(text, 'x', 'z'), Contains(text, "xz")) << text;
        }
    }
}

TEST(FileName, EndsAFolderAtEitherSeparator) {
    const auto bare = [](std::string path) {
        EstraiIlNomeFile(path);
        return path;
    };
    const auto extension = [](std::string path) {
        EstraiEstensFile(path);
        return path;
    };
    EXPECT_EQ(bare("C:\\jobs\\site.gsi"), "site.gsi");
    EXPECT_EQ(bare("/home/x\\y/site.a.gsi"), "site.a.gsi");
    EXPECT_EQ(bare("site"), "site");
    EXPECT_EQ(extension("/jobs.old/site"), "");
    EXPECT_EQ(extension("a.b.Gts7"), "Gts7");
    EXPECT_EQ(extension("site."), "");
}

TEST(CodePage, GoesBothWays) {
    std::string upper;
    for (int byte = 0x80; byte < 0xA0; ++byte)
        upper += static_cast<char>(byte);
    EXPECT_EQ(
        Utf8FromWindows1252(upper),
        "\u20AC\xC2\x81\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\xC2\x8D"
        "\u017D\xC2\x8F\xC2\x90\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161"
        "\u203A\u0153\xC2\x9D\u017E\u0178");
    EXPECT_EQ(Utf8FromWindows1252("\x7F\xA0\xE8\xFF"), "\x7F\u00A0\u00E8\u00FF");
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    EXPECT_EQ(Windows1252FromUtf8(Utf8FromWindows1252(all)), all);
    EXPECT_EQ(Windows1252FromUtf8("\u0416\U0001F600x"), "??x");
}

/// The first and the last character of each length, and what lies just beyond them.
TEST(CodePage, KnowsUtf8) {
    for (const char* right :
         {"caff\xC3\xA8", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
          "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(IsUtf8(right)) << right;
    for (const char* wrong : {"\xE8", "\xC3", "\x80", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF",
                              "\xED\xA0\x80", "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF",
                              "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xC3\xC0", "\xE2\x82z"})
        EXPECT_FALSE(IsUtf8(wrong)) << wrong;
}

TEST(Numbers, ReadWhatStandsAtTheStart) {
    EXPECT_EQ(DoubleDaString(" \t+12.50abc"), 12.5);
    EXPECT_EQ(DoubleDaString("-.5"), -0.5);
    EXPECT_EQ(DoubleDaString("5."), 5);
    EXPECT_EQ(DoubleDaString("1e3x"), 1000);
    EXPECT_EQ(DoubleDaString("1e"), 1);
    EXPECT_EQ(DoubleDaString("1,5"), 1);
    for (const char* none : {"", "  ", "abc", ".", "-", "+-5", "inf", "nan", "-inf", "\n5"}) {
        EXPECT_EQ(DoubleDaString(none), 0) << none;
        EXPECT_EQ(NumberOrNoValue(none), kNoValue) << none;
    }
    EXPECT_EQ(DoubleDaString("0x10"), 0);
    EXPECT_EQ(NumberOrNoValue("0x10"), 0);
    EXPECT_EQ(tsk_atof("2.5 m"), 2.5);
}

/// The short way for plain decimals must give the double that the general routine gives.
TEST(Numbers, AreTheNearestDoubleHoweverTheyAreRead) {
    constexpr const char* kTails[] = {"",    "",   "",  " ",  "          ",
                                      ".25", "e2", "E", ",1", "\xB5 m"};
    std::mt19937_64 random(1);
    for (int i = 0; i < 400000; ++i) {
        std::string text = std::to_string(random() >> (random() % 64));
        text.insert(0, random() % 9, '0');
        if (random() % 2 == 0)
            text.insert(random() % (text.size() + 1), ".");
        if (random() % 8 == 0)
            text.insert(random() % (text.size() + 1), "-");
        text += kTails[random() % std::size(kTails)];
        char* end = nullptr;
        const double expected = std::strtod(text.c_str(), &end);
        double number = 0;
        ASSERT_EQ(NumberAtStart(text, number), static_cast<std::size_t>(end - text.c_str()))
            << text;
        ASSERT_EQ(number, expected) << text;
    }
}

/// Eight digits are read at once: what is next to the digits must not pass for one.
TEST(Numbers, EndAtTheFirstCharacterThatIsNone) {
    for (const char other : {'/', ':', '?', 'p', '\xB5'}) {
        for (std::size_t i = 0; i < 8; ++i) {
            std::string text = "87654321";
            text[i] = other;
            EXPECT_EQ(DoubleDaString(text), DoubleDaString(text.substr(0, i))) << text;
        }
    }
}

TEST(Numbers, TooLargeIsTheMarkerAndTooSmallIsZero) {
    for (const char* large : {"1e400", "-1e400", "1.8e308", "1e99999999999999999999"})
        EXPECT_EQ(DoubleDaString(large), kNoValue) << large;
    EXPECT_EQ(DoubleDaString(std::string(310, '9')), kNoValue);
    EXPECT_EQ(DoubleDaString("0.00001e400"), kNoValue);
    EXPECT_EQ(DoubleDaString("0." + std::string(400, '0') + "1e800"), kNoValue);
    for (const char* small :
         {"1e-400", "-1e-400", "1e-99999999999999999999", "0.001e-330", "0e999"})
        EXPECT_EQ(DoubleDaString(small), 0) << small;
    EXPECT_EQ(DoubleDaString("0." + std::string(400, '0') + "1"), 0);
    EXPECT_EQ(DoubleDaString("0." + std::string(800, '0') + "1e400"), 0);
    EXPECT_EQ(DoubleDaString("18446744073709551617"), 18446744073709551616.0); // 2^64 + 1
    EXPECT_EQ(DoubleDaString("4.9e-324"), 4.9e-324);
}

TEST(Numbers, IntegersThatDoNotFitAreZero) {
    EXPECT_EQ(IntDaStringNullZero(" +12x"), 12);
    EXPECT_EQ(IntDaStringNullZero("-32768"), -32768);
    EXPECT_EQ(IntDaStringNullZero("32768"), 0);
    EXPECT_EQ(IntDaStringNullZero(""), 0);
    EXPECT_EQ(IntDaStringNullZero("+-1"), 0);
    EXPECT_EQ(LongDaStringNullZero("2147483647"), 2147483647L);
    EXPECT_EQ(LongDaStringNullZero("-2147483648x"), -2147483647L - 1);
    EXPECT_EQ(LongDaStringNullZero("2147483648"), 0) << "also where a long has 64 bits";
    EXPECT_EQ(LongDaStringNullZero("-2147483649"), 0);
    EXPECT_EQ(LongDaStringNullZero("99999999999999999999"), 0);
}

TEST(Numbers, AreWrittenAsInTheCLocale) {
    const CommaLocale locale;
    EXPECT_EQ(StringDaDouble(12.3456785, 0, 6), "12.345678");
    EXPECT_EQ(StringDaDouble(0.5, 0, 0), "0");
    EXPECT_EQ(StringDaDouble(17, 15, 0), "             17");
    EXPECT_EQ(StringDaDouble(1.7e200, 0, 6).size(), 201U + 7U);
    EXPECT_EQ(DoubleDaString("1.5"), 1.5);
    char buffer[8];
    EXPECT_EQ(tsk_sprintf(buffer, "%d/%.2f/%s", 7, 1.5, "abcdef"), 13);
    EXPECT_STREQ(buffer, "7/1.50/");
}

/// Texts of four to eight characters are read as a whole: what is next to a digit, or reaches into
/// its neighbour when numbers are added to it, must not pass for one.
TEST(Numbers, ShortTextsAreReadAsTheLongOnes) {
    for (std::size_t size = 1; size <= 10; ++size) {
        for (std::size_t at = 0; at < size; ++at) {
            for (int byte = 0; byte < 256; ++byte) {
                std::string text = std::string("9081726354").substr(0, size);
                text[at] = static_cast<char>(byte);
                double value = 0;
                const std::size_t taken = NumberAtStart(text, value);
                const bool isPlain = (byte >= '0' && byte <= '9') || (byte == '.' && size > 1) ||
                                     (at == 0 && size > 1 && (byte == '+' || byte == '-'));
                EXPECT_EQ(IsPlainNumber(text), isPlain) << text;
                if (isPlain) {
                    EXPECT_EQ(taken, size) << text;
                    EXPECT_EQ(value, std::strtod(text.c_str(), nullptr)) << text;
                } else if (byte != 'e' && byte != 'E' && byte != ' ' && byte != '\t') {
                    EXPECT_EQ(taken, at) << text;
                }
            }
        }
    }
}

TEST(Numbers, AreWrittenWithDecimalsAsTheGeneralRoutineDoes) {
    const auto written = [](double value, int decimals) {
        std::array<char, kDecimalsRoom> text{};
        return std::string(text.data(), WriteDecimals(text.data(), value, decimals));
    };
    for (int decimals = 0; decimals <= 6; ++decimals) {
        for (const double half : {0.5, 1.5, 7.5, 12345.5, 999999.5, 99999999.5}) {
            const double value = half / std::pow(10, decimals);
            for (const double near : {std::nextafter(value, 0), value, std::nextafter(value, 1e9)})
                EXPECT_EQ(written(-near, decimals), StringDaDouble(-near, 0, decimals)) << near;
        }
        for (const double value : {0.0, -0.0, 9.0, 10.0, 100.0, 999999999.9999999})
            EXPECT_EQ(written(value, decimals), StringDaDouble(value, 0, decimals)) << value;
    }
}

TEST(Numbers, RoundHalvesAwayFromZeroAndLeaveWhatCannotBeRounded) {
    EXPECT_EQ(ArrotondatoAtDec(2.5, 0), 3);
    EXPECT_EQ(ArrotondatoAtDec(-2.5, 0), -3);
    EXPECT_EQ(ArrotondatoAtDec(14.142135, 3), 14.142);
    EXPECT_EQ(ArrotondatoAtDec(1.6e-22, 22), 2e-22);
    EXPECT_EQ(ArrotondatoAtDec(kNoValue, 3), kNoValue);
    EXPECT_EQ(ArrotondatoAtDec(kInfinity, 3), kInfinity);
    EXPECT_EQ(ArrotondatoAlVal(7.4, 5), 5);
    EXPECT_EQ(ArrotondatoAlVal(7.5, 5), 10);
    EXPECT_EQ(LongRound(-0.5), -1);
    EXPECT_EQ(RoundedByLong(1.23456, 1000), 1.235);
    EXPECT_EQ(RoundedByLong(2147483.6464, 1000), 2147483.646);
    EXPECT_EQ(RoundedByLong(2147483.6486, 1000), 2147483.6486) << "beyond a 32-bit integer";
    EXPECT_EQ(RoundedByLong(kNoValue, 1000), kNoValue);
    EXPECT_EQ(RoundedByLong(-kInfinity, 1000), -kInfinity);
}

/// What the standard library writes: it looks for the fewest digits in general.
std::string SearchedShortest(double value) {
    const double size = std::fabs(value);
    const bool plain = size == 0 || (size >= 1e-4 && size < 1e16);
    std::array<char, 64> digits{};
    return {digits.data(),
            std::to_chars(digits.data(), digits.data() + digits.size(), value,
                          plain ? std::chars_format::fixed : std::chars_format::scientific)
                .ptr};
}

TEST(Numbers, HaveTheFewestDigitsThatReadBack) {
    for (const double value : {0.0, -0.0, 1.0, 12.345, -123.45678, 0.0001, 0.00009, 1e-6, 0.1 + 0.2,
                               100.0 / 3, 999999999.999999, 999999999.9999999, 1e9, 123456789012.25,
                               1e15, 9007199254740993.0, 1e16, 1.7e200, kInfinity})
        EXPECT_EQ(ShortestNumber(value), SearchedShortest(value));
    std::mt19937_64 random(1); // NOLINT: the same numbers each time
    for (int i = 0; i < 100000; ++i) {
        const auto digits = static_cast<double>(random() % 1'000'000'000'000);
        const double decimals = std::pow(10, static_cast<double>(random() % 9));
        const double value = digits / decimals;
        ASSERT_EQ(ShortestNumber(value), SearchedShortest(value));
        ASSERT_EQ(ShortestNumber(std::nextafter(-value, 0)),
                  SearchedShortest(std::nextafter(-value, 0)));
    }
}

TEST(OutputBuffer, HandsOnEverythingInOrder) {
    std::ostringstream stream;
    OutputBuffer out(stream);
    std::string expected;
    const std::string piece(1000, 'x');
    const std::string longer(100'000, 'y');
    for (int i = 0; i < 140; ++i) {
        out.Write(piece);
        out.WriteNumber(i + 0.25);
        out.Put(';');
        expected += piece + std::to_string(i) + ".25;";
        if (i % 50 == 0) {
            out.Write(longer);
            expected += longer;
        }
    }
    out.Flush();
    EXPECT_EQ(stream.str(), expected);
    EXPECT_FALSE(out.Failed());
    stream.setstate(std::ios::badbit);
    EXPECT_TRUE(out.Failed());
}

TEST(Angles, AreLimitedByWholeTurns) {
    EXPECT_EQ(LimiteAng0_400(-1), 399);
    EXPECT_EQ(LimiteAng0_400(400), 0);
    EXPECT_EQ(LimiteAng0_400(-1e-20), 0);
    EXPECT_EQ(LimiteAng0_400(1e15 + 300), std::fmod(1e15 + 300, 400));
    EXPECT_EQ(LimiteAng0_400(kNoValue), kNoValue);
    EXPECT_TRUE(std::isnan(LimiteAng0_400(std::nan(""))));
    EXPECT_EQ(LimiteAng200_200(300), -100);
    EXPECT_EQ(LimiteAng200_200(200), 200);
    EXPECT_EQ(LimiteAng200_200(-200), 200);
    EXPECT_EQ(LimiteAng200_200(-kInfinity), -kInfinity);
}

TEST(Angles, AreReadFromDegreesMinutesAndSeconds) {
    struct Case {
        std::string_view text;
        double gon;
        std::size_t taken;
    };
    const Case cases[] = {
        {"35.4510", 128710.0 / 3240, 7},              // 35 degrees 45' 10"
        {"35.451", 128710.0 / 3240, 6},               // the same
        {"35.4", 128400.0 / 3240, 4},                 // 35 degrees 40'
        {"359.59599", 12959999.0 / 32400, 9},         // 59.9", not 60"
        {"0.59599999999", 3599999999.0 / 3240e6, 13}, // no more than six decimals
        {" +90", 100, 4},
        {"-0.0330", -210.0 / 3240, 7},
        {".30", 1800.0 / 3240, 3},
        {"12.30x", 45000.0 / 3240, 5},
        {"45.6000", kNoValue, 7},
        {"-45.5960", kNoValue, 8},
        {"x", -1, 0},
        {"-.", -1, 0},
    };
    for (const Case& c : cases) {
        double gon = -1;
        EXPECT_EQ(SexagesimalAtStart(c.text, gon), c.taken) << c.text;
        EXPECT_EQ(gon, c.gon) << c.text;
    }
}

TEST(Reduction, GivesSlopeDistanceAndZenithAngle) {
    const auto reduced = [](double d, double h) { return RoundedReadingFromReduced(d, h); };
    EXPECT_EQ(reduced(10, 0).zenithAngle, 100);
    EXPECT_EQ(reduced(10, 0).slopeDistance, 10);
    EXPECT_EQ(reduced(10, -10).zenithAngle, 150);
    EXPECT_EQ(reduced(10, -10).slopeDistance, 14.142);
    EXPECT_EQ(reduced(0, 5).zenithAngle, 0);
    EXPECT_EQ(reduced(0, 5).slopeDistance, 5);
    EXPECT_EQ(ReadingFromReduced(10, 10).zenithAngle, ArcTan(1) * kGonPerRadian);
    EXPECT_NE(ReadingFromReduced(10, 10).zenithAngle, 50) << "pi has nine decimals here";
}

TEST(TskString, LeavesTheTextItWorksOnAsItIs) {
    const tsk::String text = "00a,b,c";
    EXPECT_EQ(text.IndexOf(',', 0), 3);
    EXPECT_EQ(text.IndexOf(',', 4), 5);
    EXPECT_EQ(text.IndexOf('x', 0), -1);
    EXPECT_EQ(text.LastIndexOf(',', 4), 3);
    EXPECT_EQ(text.LastIndexOf(',', -1), -1);
    EXPECT_STREQ(text.Substring(4).CStr(), "b,c");
    EXPECT_STREQ(text.Substring(2, 1).CStr(), "a");
    EXPECT_STREQ(text.Substring(99, 1).CStr(), "");
    EXPECT_STREQ(text.Erase(2, 2).CStr(), "00b,c");
    EXPECT_STREQ(text.Replace(',', ' ').CStr(), "00a b c");
    EXPECT_STREQ(text.TrimLeft('0').CStr(), "a,b,c");
    EXPECT_STREQ(tsk::String("00").TrimLeft('0').CStr(), "");
    EXPECT_STREQ(text.WriteChar(0, 'x').CStr(), "x0a,b,c");
    EXPECT_EQ(text.ReadChar(7), '\0');
    EXPECT_STREQ((text + "!").CStr(), "00a,b,c!");
    EXPECT_EQ(text.Length(), 7);
    EXPECT_STREQ(text.CStr(), "00a,b,c");
}

} // namespace
