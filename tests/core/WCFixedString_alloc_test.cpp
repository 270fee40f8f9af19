// Fixed strings never allocate except in replace(char, char const *).
#include "core/WCFixedString.h"
#include "core/WCFourCC.h"

#include <gtest/gtest.h>

#include "tests/support/WCCountingAllocator.h"

using namespace MIREL_NAMESPACE_NAME;
using mirel_test::CountAllocations;

TEST(WCFixedStringAllocations, EveryOperationButExpandingReplaceIsAllocationFree) {
    long sink = 0;
    const long allocations = CountAllocations([&] {
        WCFixedString<1023> s;
        WCFixedString<63> other("other text");
        s = 'c';
        s = "assigned";
        s = other;
        s.assign("abc", 2);
        s.assign("abcdef");
        const char range[] = "range";
        s.assign(range, range + 5);
        s << other << 'x' << static_cast<short>(-3) << -42 << 42u << static_cast<std::int64_t>(-7)
          << static_cast<std::uint64_t>(7) << 1.25f << 2.5 << true << "text" << WCFourCC("AlgX")
          << PDoubleWithPrecision(3.14159, 3);
        s.append("more").append(range, range + 2).append("xyz", 2).append('-', 10);
        s.append_uint(0xDEADBEEF, 16);
        s.append_double_with_precision(1e300, -1);
        s.append_double_with_precision(1e30, 10);
        const unsigned char bytes[] = {1, 2, 3};
        s.append_hex_binary(bytes, 3);
        s.append_random_chars(8);

        int i = 0;
        unsigned int u = 0;
        std::int64_t i64 = 0;
        std::uint64_t u64 = 0;
        float f = 0;
        double d = 0;
        bool b = false;
        WCFixedString<31> number("123.5");
        number >> i >> u >> i64 >> u64 >> f >> d;
        WCFixedString<15>("yes") >> b;
        sink += i + static_cast<long>(u) + static_cast<long>(i64) + static_cast<long>(u64) +
                static_cast<long>(f + d) + b;

        sink += s[3] + s[100000] + static_cast<bool>(s) + s.empty() + static_cast<long>(s.size());
        sink += s.compare("abc") + s.compare(other) + s.case_insensitive_compare("ABC");
        sink += s.begins_with("ran") + s.ends_with("x");
        sink += static_cast<long>(s.find("text") + s.find('x') + s.find_case_insensitive("TEXT") +
                                  s.rfind("e") + s.rfind('e') + s.find_first_of("xyz") +
                                  s.find_first_not_of("abc") + s.find_last_of("e") +
                                  s.find_last_not_of("0123456789"));
        char buffer[16];
        s.copy_to_buffer(sizeof buffer, buffer);
        sink += buffer[0];

        s.erase(2, 3);
        s.erase(-4, 2);
        s.erase_all_of("-");
        s.erase_all_not_of("abcdefghijklmnopqrstuvwxyz0123456789");
        sink += static_cast<long>(s.replace('a', 'b') + s.replace("xyz", '_'));
        s.resize(10);
        s.reposition_end();
        s.reverse();
        s.to_upper();
        s.to_lower();
        const WCFixedString<1023> sub = s.substr(2, -2);
        const WCFixedString<1023> copy(s);
        const WCFixedString<1023> joined("a", "b");
        const WCFixedString<1023> joined2(copy, "c");
        sink += static_cast<long>(sub.size() + copy.size() + joined.size() + joined2.size());
        sink += (s == other) + (s < other) + (s == "abc");
        sink += static_cast<long>(WCFourCC::FromText("'abcd'").GetValue());
        s.clear();
    });
    EXPECT_EQ(allocations, 0);
    EXPECT_NE(sink, 0);
}

TEST(WCFixedStringAllocations, ExpandingReplaceAllocatesAndTheCounterSeesIt) {
    WCFixedString<63> s("a,b");
    const long allocations = CountAllocations([&] { s.replace(',', ", "); });
    EXPECT_GT(allocations, 0);
    EXPECT_STREQ(s.data(), "a, b");
}
