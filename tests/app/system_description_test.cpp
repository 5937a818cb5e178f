#include "app/system_description.h"

#include <gtest/gtest.h>

#include "base/utf.h"

namespace kelvane {
namespace {

TEST(SystemDescription, NamesTheSystem)
{
    const struct {
        SystemVersion version;
        const char* text;
    } rows[] = {
        {{10, 0, 19045, 3803, u"Windows 10 Pro", true}, "10.0-19045.3803 (Windows 10 Pro) x64"},
        {{10, 0, 22631, 3007, u"Windows 10 Pro", true}, "10.0-22631.3007:W11 (Windows 10 Pro) x64"},
        {{10, 0, 21999, 0, u"", true}, "10.0-21999 (win10) x64"},
        {{10, 0, 22000, 0, u"", true}, "10.0-22000:W11 (win11) x64"},
        {{6, 1, 7601, 0, u"Debian GNU/Linux 12 (bookworm)", true}, "6.1-7601 (Debian GNU/Linux 12 (bookworm)) x64"},
        {{6, 1, 7601, 0, u"", true}, "6.1-7601 (win7) x64"},
        {{5, 2, 3790, 0, u"", true}, "5.2-3790 (win2003) x64"},
        {{6, 3, 9600, 5, u"", true}, "6.3-9600.5 x64"},
        {{4, 0, 1381, 0, u"", true}, "4.0-1381 (NT4) x64"},
        {{4, 0, 950, 7, u"no name of this line", false}, "4.0-950 (win95) x64"},
        {{4, 10, 2222, 0, u"", false}, "4.10-2222 (win98) x64"},
        {{4, 90, 3000, 0, u"", false}, "4.90-3000 (winME) x64"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(toUtf8(systemDescription(row.version)), row.text);
}

}  // namespace
}  // namespace kelvane
