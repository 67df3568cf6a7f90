#ifndef SUPPORT_TWOTHREADS_H
#define SUPPORT_TWOTHREADS_H

#include <atomic>
#include <thread>

/// Runs `work(0)` and `work(1)` on two threads that begin together, and waits for both.
template <class Work> void onTwoThreads(Work work)
{
    std::atomic<int> missing{2};
    const auto run = [&missing, &work](int number) {
        --missing;
        while (missing != 0)
            std::this_thread::yield();
        work(number);
    };
    std::thread first(run, 0);
    std::thread second(run, 1);
    first.join();
    second.join();
}

#endif
