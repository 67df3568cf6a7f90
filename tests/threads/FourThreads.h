#ifndef TESTS_THREADS_FOURTHREADS_H
#define TESTS_THREADS_FOURTHREADS_H

#include <atomic>
#include <cstdlib>
#include <thread>
#include <vector>

constexpr int THREADS = 4;

/// Runs `work(0)` to `work(3)` on threads that begin together, and waits for all.
template <class Work> void onFourThreads(Work work)
{
    std::atomic<int> missing{THREADS};
    std::vector<std::thread> threads;
    for (int number = 0; number < THREADS; ++number)
        threads.emplace_back([&missing, &work, number] {
            --missing;
            while (missing != 0)
                std::this_thread::yield();
            work(number);
        });
    for (std::thread& thread : threads)
        thread.join();
}

/// How often each thread does its work; the variable DRVREPO_ROUNDS says it for longer runs.
inline int rounds(int usual)
{
    char const* const wanted = std::getenv("DRVREPO_ROUNDS");
    return wanted != nullptr ? std::atoi(wanted) : usual;
}

#endif
