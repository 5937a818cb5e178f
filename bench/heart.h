// How long the main thread of a desktop program does not come to its events.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>

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

private:
    void beat()
    {
        const qint64 gap = since_.restart();
        longest_ = std::max(longest_, gap);
        pauses_ += gap > pauseMs ? 1 : 0;
    }
    QTimer timer_;
    QElapsedTimer since_;
    qint64 longest_ = 0;
    int pauses_ = 0;
};

}  // namespace kelvane::bench
