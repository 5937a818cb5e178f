#include "ui/clean/progress_teller.h"

#include <chrono>
#include <thread>

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
    if (!isShown_)
        since_ = bench_.platform().clock().ticks();
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
    // A dialog that goes in the moment in which it comes confuses who has the keys: with some window managers the box
    // that follows it hears none.
    while (bench_.platform().clock().ticks() < since_ + lastingMs)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    bench_.toMain([](WindowLink& link) { ProgressDialog::finish(link); });
}

}  // namespace kelvane
