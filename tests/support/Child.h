#ifndef SUPPORT_CHILD_H
#define SUPPORT_CHILD_H

#include <cstdio>
#include <cstdlib>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

/// How a child process ended: its exit status and what it wrote, as "0: text", or "signal 11:
/// text". A child that hangs ends with signal 14 after two minutes.
///
/// `body(out)` runs in a fork of this process and returns the exit status. The child ends with
/// `leave(status)`; `_exit` leaves out the exit handlers and destructors, `std::exit` runs them.
template <class Body>
std::string inChild(
    Body body, void (*leave)(int) = [](int status) { _exit(status); })
{
    int ends[2];
    if (pipe(ends) != 0)
        return "no pipe";
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        alarm(120);
        std::FILE* const out = fdopen(ends[1], "w");
        const int status = body(out);
        std::fflush(nullptr);
        leave(status);
    }
    close(ends[1]);
    std::string text;
    char block[4096];
    for (ssize_t size = 0; (size = read(ends[0], block, sizeof block)) > 0;)
        text.append(block, static_cast<std::size_t>(size));
    close(ends[0]);
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child)
        return "no child";
    if (WIFEXITED(status))
        return std::to_string(WEXITSTATUS(status)) + ": " + text;
    return "signal " + std::to_string(WTERMSIG(status)) + ": " + text;
}

#endif
