#include "ui/clean/progress_teller.h"

#include "ui/core/window_link.h"

namespace kelvane {
namespace {

constexpr std::uint64_t intervalMs = 100;

}  // namespace

void ProgressTeller::begin(const QString& title, std::uint64_t items, std::uint64_t bytes)
{
    state_ = {0, items, 0, bytes, {}};
    bench_.toMain([title, state = state_](WindowLink& link) {
        ProgressDialog::show(link, title);
        ProgressDialog::update(link, state);
    });
}

bool ProgressTeller::isDue()
{
    const std::uint64_t now = bench_.platform().clock().ticks();
    if (now - told_ < intervalMs)
        return false;
    told_ = now;
    return true;
}

void ProgressTeller::tell()
{
    bench_.toMain([state = state_](WindowLink& link) { ProgressDialog::update(link, state); });
}

void ProgressTeller::serve()
{
    bench_.serve();
}

void ProgressTeller::end()
{
    bench_.toMain([](WindowLink& link) { ProgressDialog::finish(link); });
}

}  // namespace kelvane
