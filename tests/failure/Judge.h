#ifndef TESTS_FAILURE_JUDGE_H
#define TESTS_FAILURE_JUDGE_H

#include <map>
#include <set>
#include <string>

/// Follows what listeners hear, and tells what no listener may hear: each hears of a driver its
/// coming, what is attached meanwhile, its going; and no attachment twice.
///
/// A line is "A+d", "A-d", "A+d.k=v" or "A-d.k=v". Its judgement is that of listeners with
/// snapshots: others hear of values gone that they were never told of, which passes.
class Judge
{
public:
    /// `failed`: who heard it refused it or threw.
    void hear(std::string const& what, bool failed);

    /// Somebody else failed while this listener may just have been coming: it may be told the
    /// going of drivers that it knows, or not.
    void doubt(std::string const& listener);

    /// The lies, one a line, with those that were never told the end; call it at the end.
    std::string verdict() const;

private:
    struct Knowledge
    {
        bool in = false;
        bool doubtful = false; // a coming that failed behind its first word has a going or none
        std::map<std::string, std::string> attachments;
    };

    void hearDriver(Knowledge& known, bool coming, bool failed, std::string const& what);
    void hearAttachment(Knowledge& known, std::string const& change, bool coming, bool failed,
                        std::string const& what);
    void object(std::string const& what, char const* why);

    std::map<std::string, Knowledge> known_; // by "A d"
    std::string lies_;
};

#endif
