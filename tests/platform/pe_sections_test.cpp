#include "platform/pe_sections.h"

#include <gtest/gtest.h>

#include <string>

namespace kelvane {
namespace {

// Two sections, the last of which ends at 0x700; the headers end at 0x128.
std::string headers()
{
    std::string bytes(0x128, '\0');
    const auto put = [&](std::size_t at, std::size_t value) {
        bytes[at] = static_cast<char>(value & 0xFF);
        bytes[at + 1] = static_cast<char>(value >> 8);
    };
    put(0, 0x5A4D);
    put(0x3C, 0x80);
    put(0x80, 0x4550);
    put(0x86, 2);     // sections
    put(0x94, 0x40);  // optional header
    put(0xD8 + 16, 0x200);
    put(0xD8 + 20, 0x200);
    put(0x100 + 16, 0x300);
    put(0x100 + 20, 0x400);
    return bytes;
}

bool holds(const std::string& beginning, std::uint64_t fileSize)
{
    return holdsItsSections(std::as_bytes(std::span(beginning)), fileSize);
}

TEST(PeSections, AFileThatWasCutShortIsNoticed)
{
    EXPECT_TRUE(holds(headers(), 0x700));
    EXPECT_FALSE(holds(headers(), 0x6FF));
    EXPECT_FALSE(holds(headers(), 0x300));
    const std::string beginning = headers();
    for (std::size_t size = 0; size < 0x118; ++size)
        EXPECT_FALSE(holds(beginning.substr(0, size), 0x700)) << size;
}

TEST(PeSections, WhatIsNoModuleIsRefused)
{
    for (const std::size_t at : {std::size_t{0}, std::size_t{0x3F}, std::size_t{0x80}, std::size_t{0x97}}) {
        std::string bytes = headers();
        bytes[at] = '\x7F';
        EXPECT_EQ(holds(bytes, 0x700), at == 0x97) << at;  // the last one is of no account
    }
    std::string none = headers();
    none[0x86] = 0;
    EXPECT_FALSE(holds(none, 0x700));
}

}  // namespace
}  // namespace kelvane
