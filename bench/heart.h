// How long the main thread of a desktop program does not come to its events.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <ctime>

namespace kelvane::bench {

// Beats in the loop of events and measures how late each beat comes.
class Heart {
public:
    static constexpr int beatMs = 10;
    static constexpr qint64 pauseMs = 100;  // what a person notices

    Heart()
    {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { beat(); });
        since_.start();
        timer_.start(beatMs);
    }
    [[nodiscard]] qint64 longest() const { return longest_; }
    [[nodiscard]] int pauses() const { return pauses_; }
    // The most that the thread worked between two beats: what is longer than that was spent waiting, for other threads
    // or for a processor. 0 where that cannot be told.
    [[nodiscard]] qint64 longestWork() const { return longestWork_; }

private:
    void beat()
    {
        const qint64 gap = since_.restart();
        longest_ = std::max(longest_, gap);
        pauses_ += gap > pauseMs ? 1 : 0;
        const qint64 now = workedMs();
        longestWork_ = std::max(longestWork_, now - worked_);
        worked_ = now;
    }
    static qint64 workedMs()
    {
#ifdef CLOCK_THREAD_CPUTIME_ID
        std::timespec spent{};
        if (::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &spent) == 0)
            return qint64{spent.tv_sec} * 1000 + spent.tv_nsec / 1'000'000;
#endif
        return 0;
    }
    QTimer timer_;
    QElapsedTimer since_;
    qint64 longest_ = 0;
    qint64 worked_ = workedMs();
    qint64 longestWork_ = 0;
    int pauses_ = 0;
};

}  // namespace kelvane::bench
