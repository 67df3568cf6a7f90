#ifndef DRVSH_LINEREADER_H
#define DRVSH_LINEREADER_H

#include "Completion.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// Reads what is typed on a terminal, line by line.
class LineReader
{
public:
    enum class Got {
        Line,      ///< A line, without its end.
        Cancelled, ///< The line was given up (Ctrl-C).
        End        ///< There is nothing more (Ctrl-D).
    };

    /// What a reader shows and knows.
    struct Setup
    {
        std::string prompt;
        bool colours = false;                                   ///< Whether the prompt stands out.
        std::function<Completion(std::string const&)> complete; ///< For the line up to the cursor.
        std::vector<std::string> history;                       ///< The oldest first.
    };

    LineReader() = default;
    LineReader(LineReader const&) = delete;
    LineReader& operator=(LineReader const&) = delete;
    virtual ~LineReader() = default;

    virtual Got read(std::string& line) = 0;
    /// Whether Tab completes.
    virtual bool completes() const { return false; }
    /// A line that can be fetched back from here on.
    virtual void remember(std::string const& /*line*/) {}
};

/// One that edits lines if drvsh was built with a library for that and the terminal can do it; else
/// one that reads them as the terminal gives them. Ctrl-C must not end the program:
/// `InterruptGuard`.
std::unique_ptr<LineReader> makeLineReader(LineReader::Setup const& setup);

/// One that reads lines as the terminal gives them.
std::unique_ptr<LineReader> makePlainReader(LineReader::Setup const& setup);

/// While it lives, Ctrl-C (SIGINT) ends the plain reader's wait for a line, and not the program.
class InterruptGuard
{
public:
    InterruptGuard();
    InterruptGuard(InterruptGuard const&) = delete;
    InterruptGuard& operator=(InterruptGuard const&) = delete;
    ~InterruptGuard();
};

#endif
