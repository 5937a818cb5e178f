#include "ui/clean/progress_teller.h"

#include "ui/core/window_link.h"

namespace kelvane {
namespace {

constexpr std::uint64_t intervalMs = 100;
constexpr std::uint64_t lastingMs = 400;  // what is over sooner would only flicker

}  // namespace

void ProgressTeller::begin(const QString& title, std::uint64_t items, std::uint64_t bytes)
{
    title_ = title;
    state_ = {0, items, 0, bytes, {}};
    shownFrom_ = 0;
    tell();
}

void ProgressTeller::expect(const QString& title, std::uint64_t items)
{
    title_ = title;
    state_ = {0, items, 0, 0, {}};
    shownFrom_ = bench_.platform().clock().ticks() + lastingMs;
}

bool ProgressTeller::isDue()
{
    const std::uint64_t now = bench_.platform().clock().ticks();
    if (now - told_ < intervalMs || now < shownFrom_)
        return false;
    told_ = now;
    return true;
}

void ProgressTeller::tell()
{
    bench_.toMain([title = title_, state = state_, first = !isShown_](WindowLink& link) {
        if (first)
            ProgressDialog::show(link, title);
        ProgressDialog::update(link, state);
    });
    isShown_ = true;
}

void ProgressTeller::serve()
{
    bench_.serve();
}

void ProgressTeller::end()
{
    if (!isShown_)
        return;
    isShown_ = false;
    bench_.toMain([](WindowLink& link) { ProgressDialog::finish(link); });
}

}  // namespace kelvane
