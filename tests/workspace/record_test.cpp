// The formatted-record engine: what each descriptor writes and reads.
#include "workspace/record.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <locale>
#include <random>

namespace {

constexpr float Infinite = std::numeric_limits<float>::infinity();
constexpr float NoNumber = std::numeric_limits<float>::quiet_NaN();
const float Unset = -77;

template <FormatText F>
constexpr Format operator""_format() {
  return FormatOf<F>();
}

TEST(WriteRecord, EachDescriptor) {
  struct Case {
    Format format;
    std::vector<WriteValue> values;
    const char* text;
  };
  const Case cases[] = {
      // Reals: rounding, the dropped zero, zero without a sign, overflow
      {"(f6.4,f5.4)"_format, {0.1234f, 0.1234f}, "0.1234.1234"},
      {"(f6.4,f7.4)"_format, {-0.1234f, -0.1234f}, "-.1234-0.1234"},
      {"(f6.2,f6.2,f4.0)"_format, {-0.001f, -0.0f, 0.0f}, "  0.00  0.00  0."},
      {"(f5.2,f7.2,f3.0)"_format, {999.996f, 999.996f, 99.75f}, "*****1000.00***"},
      {"(f8.0,f10.1,f8.5)"_format, {1234, 12.25, 1.54056f}, "   1234.      12.2 1.54056"},
      {"(f1.0,f2.0)"_format, {0.0f, 0.0f}, "*0."},
      {"(f8.4,',',f8.4,',',f8.4)"_format, {10.f, 0.02f, 80.f}, " 10.0000,  0.0200, 80.0000"},
      {"(f8.2,f4.1,f2.1,f10.1,f5.1)"_format,
       {Infinite, Infinite, Infinite, -Infinite, NoNumber},
       "Infinity Inf** -Infinity  NaN"},
      {"(e12.5,1x,e10.3,e9.3)"_format,
       {12.345f, -0.01234f, 0.0f},
       " 0.12345E+02 -0.123E-010.000E+00"},
      {"(e11.3,e8.3,e9.3,e7.3)"_format,
       {1e-120, 1.0, 9.9996, 1.0},
       "  0.100-119.100E+010.100E+02*******"},
      // Integers
      {"(i3,i3,i4,i2)"_format, {7, -7, 1234, 100}, "  7 -71234**"},
      {"(i5.3,i4.2,i3.0,i11)"_format,
       {7, -7, 0, std::numeric_limits<int>::min()},
       "  007 -07   -2147483648"},
      // Texts: cut on the right, or moved to the right; a value of the wrong kind
      {"(a3,a5,a,a2)"_format, {"tth", "tth", " Rw ", "long"}, "tth  tth Rw lo"},
      {"(i3,f4.1,a2)"_format, {1.5f, "x", 1}, "*********"},
      // Repetition, groups, positions, slashes
      {"9912( 2(f4.1,a2,1x) )"_format, {1.f, "ab", 2.f, "c"}, " 1.0ab  2.0 c"},
      {"(t5,i1,t2,i2,2x)"_format, {1, 23}, " 23 1"},
      {"(1X,'A=',I2,//,3(1h*)/)"_format, {4}, " A= 4\n\n***\n"},
      {"(i1,' and ',i1)"_format, {1}, "1 and "},
      {"(i1,2i2)"_format, {1, 2, 3, 4, 5}, "1 2 3\n4 5"},
      {"(i1,2(a1,i2),'end')"_format, {1, "a", 2, "b", 3, "c", 4}, "1a 2b 3end\nc 4"},
      {"(i1/(i2))"_format, {1, 2, 3}, "1\n 2\n 3"},
      {"('text')"_format, {1}, "text"},
      // Texts of the format itself
      {"('Cycle ',i3,'  Rw 'f6.4)"_format, {3, 0.0512f}, "Cycle   3  Rw 0.0512"},
      {"('It''s ',\"a \"\"b\"\"\",0('no'))"_format, {}, "It's a \"b\""},
      {"('('' ',i3,'(1x,a8))')"_format, {5}, "('   5(1x,a8))"},
      {"514(22H SELECTED BASE LINES (,I2,9H,1,2,3) (,I2,9H,1,2,4) (,I2,7H,1,3,4))"_format,
       {1, 2, 3},
       " SELECTED BASE LINES ( 1,1,2,3) ( 2,1,2,4) ( 3,1,3,4)"},
      {"9954(1h1,3a1 /// 4x, 4hthe ,i2,2h x//  5hend  )"_format,
       {"a", "b", "c", 5},
       "1abc\n\n\n    the  5 x\n\nend  "},
  };
  for (const Case& c : cases) EXPECT_EQ(WriteValues(c.format, c.values), c.text);
}

TEST(WriteRecord, RoundsTheExactValueOnce) {
  std::mt19937 random(1);
  std::uniform_real_distribution<float> mantissa(-1, 1);
  for (int i = 0; i < 20000; ++i) {
    const float value = std::ldexp(mantissa(random), static_cast<int>(random() % 40) - 20);
    char expected[64];
    std::snprintf(expected, sizeof expected, "%15.4f", value);
    if (std::string(expected) == "        -0.0000") expected[8] = ' ';
    EXPECT_EQ(WriteRecord<"(f15.4)">(value), expected);
    std::snprintf(expected, sizeof expected, "%.6e", value);
    float exponent = 0;
    EXPECT_TRUE(ReadRecord<"(e16.7)">(WriteRecord<"(e16.7)">(value), exponent));
    EXPECT_EQ(exponent, std::strtof(expected, nullptr));
  }
}

TEST(ReadRecord, OneReal) {
  struct Case {
    Format format;
    const char* text;
    float value;
  };
  const Case cases[] = {
      {"(f10.6)"_format, "2", 0.000002f},
      {"(f10.6)"_format, "1.54056", 1.54056f},
      {"(f10.2)"_format, "12e1", 1.2f},
      {"(f15.0)"_format, "2", 2},
      {"(f15.0)"_format, " 1 2 . 5 ", 12.5f},
      {"(f15.0)"_format, "- 7", -7},
      {"(f4.0)"_format, "12,34", 12},
      {"(f9.0)"_format, "    ", 0},
      {"(f9.0)"_format, "1.5d+2", 150},
      {"(f9.0)"_format, "1.5-3", 0.0015f},
      {"(f50.0)"_format, "0.0000000000000000000000000000000000001e38", 10},
      {"(f40.0)"_format, "10000000000000000000000000000e-28", 1},
      {"(f9.0)"_format, "0e999999", 0},
  };
  for (const Case& c : cases) {
    float value = Unset;
    ReadTarget target = &value;
    const int count = ReadValues(c.text, c.format, {&target, 1});
    EXPECT_EQ(value, c.value) << c.text;
    EXPECT_EQ(count, 1) << c.text;
  }
  for (const char* bad :
       {"1e300", "nan", "0x10", "1.2.3", "--5", "-", "e", "1.5e", "1/2", "1\t", "\xC3\xA4"}) {
    float value = Unset;
    EXPECT_FALSE(ReadRecord<"(f9.0)">(bad, value)) << bad;
    EXPECT_EQ(value, Unset) << bad;
  }
}

TEST(ReadRecord, IntegersAndTexts) {
  int n = 0;
  for (const char* bad : {"2147483648", "1.5", "1e3", "-", "+", "+-5", "x", "0x1"})
    EXPECT_FALSE(ReadRecord<"(i10)">(bad, n)) << bad;
  EXPECT_TRUE(ReadRecord<"(i11)">("-2147483648", n));
  EXPECT_EQ(n, std::numeric_limits<int>::min());
  EXPECT_TRUE(ReadRecord<"(i10)">(" + 1 2", n));
  EXPECT_EQ(n, 12);

  std::string first, second;
  EXPECT_TRUE(ReadRecord<"(a4,1x,a)">("ab, x  left over  ", first, second));
  EXPECT_EQ(first, "ab,");
  EXPECT_EQ(second, "  left over");
  EXPECT_TRUE(ReadRecord<"(a4,a4)">("abcdef", first, second));
  EXPECT_EQ(first + "|" + second, "abcd|ef");
  EXPECT_FALSE(ReadRecord<"(a4)">("12", n));
}

TEST(ReadRecord, FieldsOfALine) {
  float a = 0, b = 0, c = 0;
  int i = 0;
  // A comma ends a field early, and one that follows a full field is a field of its own.
  EXPECT_TRUE(ReadRecord<"(2f8.0)">("10.0000,0.0200,80.0000", a, b));
  EXPECT_EQ(a, 10.0f);
  EXPECT_EQ(b, 0.02f);
  EXPECT_TRUE(ReadRecord<"(2f8.0)">("100.0000,0.02", a, b));
  EXPECT_EQ(b, 0.0f);
  // Fixed columns without anything between; the line runs out
  EXPECT_TRUE(ReadRecord<"(2f3.0,i2,f5.0)">("123456 7", a, b, i, c));
  EXPECT_EQ(a + b + static_cast<float>(i) + c, 123 + 456 + 7 + 0);
  // Columns skipped, also to the left
  EXPECT_TRUE(ReadRecord<"(59x,f5.0,3x,f6.1)">(std::string(59, 'x') + "   20---  12.5", a, b));
  EXPECT_EQ(a, 20);
  EXPECT_EQ(b, 12.5f);
  EXPECT_TRUE(ReadRecord<"(5h12345,f2.0,t1,i3)">("1234567", a, i));
  EXPECT_EQ(a, 67);
  EXPECT_EQ(i, 123);
  // Those in front of a failure are set, the others keep their values.
  a = b = c = Unset;
  EXPECT_FALSE(ReadRecord<"(3f9.0)">("1,2/,3", a, b, c));
  EXPECT_EQ(a, 1);
  EXPECT_EQ(b, Unset);
  EXPECT_EQ(c, Unset);
  // Further records by a slash or by starting again, until there are none
  EXPECT_TRUE(ReadRecord<"(f3.0/(f2.0))">("12 9\n34\n56", a, b, c));
  EXPECT_EQ(a + b + c, 12 + 34 + 56);
  EXPECT_FALSE(ReadRecord<"(f2.0)">("12\n34", a, b, c));
}

TEST(ReadRecord, FreeReal) {
  float value = Unset;
  EXPECT_TRUE(ReadFreeReal("  -1.5E1 ", value));
  EXPECT_EQ(value, -15);
  for (const char* bad : {"", "  ", "1 2", "1,5", "abc", "nan", "1e300", "1 s"})
    EXPECT_FALSE(ReadFreeReal(bad, value)) << bad;
  EXPECT_FALSE(ReadFreeReal(std::string(100000, '1'), value));
  EXPECT_EQ(value, -15);
  EXPECT_TRUE(ReadFreeReal(std::string(255, '0') + '4', value));
  EXPECT_EQ(value, 4);
}

TEST(Record, DoesNotDependOnTheLanguage) {
  struct Comma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
  };
  const std::locale before = std::locale::global(std::locale(std::locale(), new Comma));
  std::setlocale(LC_ALL, "de_DE.UTF-8");
  float value = 0;
  EXPECT_EQ(WriteRecord<"(f6.2)">(1.5f), "  1.50");
  EXPECT_TRUE(ReadRecord<"(f6.2)">("1.5", value));
  EXPECT_EQ(value, 1.5f);
  std::setlocale(LC_ALL, "C");
  std::locale::global(before);
}

// Whether a format compiles.
template <FormatText F>
concept Sound = requires {
  typename std::integral_constant<std::size_t, FormatParser(F.view()).count()>;
};
static_assert(Sound<"(f8.0)"> && Sound<"9999 ( 3( 'it''s' ,i2) )">);
static_assert(!Sound<""> && !Sound<"f8.0"> && !Sound<"(f8.0"> && !Sound<"(f8.0))">);
static_assert(!Sound<"(f8)"> && !Sound<"(f.3)"> && !Sound<"(e8.0)"> && !Sound<"(f4.8)">);
static_assert(!Sound<"(f257.0)"> && !Sound<"(q5)"> && !Sound<"('a)"> && !Sound<"(5habc)">);
static_assert(!Sound<"(99999(99999(i2)))"> && !Sound<"(999999999i2)">);

}  // namespace
