#include "Platform/LargePages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

using namespace Talvo;

namespace {

constexpr std::size_t mebibyte = std::size_t{1} << 20;

TEST(LargePages, keepTheContentOfABlock)
{
    for (const std::size_t offset : {std::size_t{0}, std::size_t{1}, mebibyte, 3 * mebibyte + 7}) {
        std::vector<char> block(16 * mebibyte, 'a');
        preferLargePages(block.data() + offset, block.size() - offset);
        EXPECT_TRUE(std::ranges::all_of(block, [](char c) { return c == 'a'; })) << offset;
    }
}

TEST(LargePages, leaveABlockAloneThatIsSmallerThanOne)
{
    std::vector<char> block(1000, 'a');
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, block.size()}) {
        preferLargePages(block.data(), size);
    }
    preferLargePages(nullptr, 0);
    EXPECT_TRUE(std::ranges::all_of(block, [](char c) { return c == 'a'; }));
}

} // namespace
