// Names in archives as UTF-8, whatever the user's locale.
#pragma once

#include <locale.h>

namespace kelvane::linux_os {

// While it lives, names that an archive keeps as Unicode come out as UTF-8 on this thread.
class Utf8Names {
public:
    Utf8Names() : before_(::uselocale(utf8Locale())) {}
    ~Utf8Names() { ::uselocale(before_); }
    Utf8Names(const Utf8Names&) = delete;
    Utf8Names& operator=(const Utf8Names&) = delete;

private:
    // A system without it keeps the locale in force: uselocale(0) changes nothing.
    static locale_t utf8Locale()
    {
        static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return locale;
    }

    locale_t before_;
};

}  // namespace kelvane::linux_os
