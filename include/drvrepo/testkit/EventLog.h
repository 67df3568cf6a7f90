#ifndef DRVREPO_TESTKIT_EVENTLOG_H
#define DRVREPO_TESTKIT_EVENTLOG_H

#include <string>

/// Who heard what, one line an event, in the order in which it was heard. All observers of a test
/// write into one.
class EventLog
{
public:
    /// One more line: who heard what.
    void add(std::string const& who, std::string const& what)
    {
        lines_ += who;
        lines_ += ": ";
        lines_ += what;
        lines_ += '\n';
    }

    /// All lines since the last call.
    std::string take()
    {
        std::string taken;
        taken.swap(lines_);
        return taken;
    }

private:
    std::string lines_;
};

#endif
