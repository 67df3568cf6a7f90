#ifndef DRVSH_JSONNARRATOR_H
#define DRVSH_JSONNARRATOR_H

#include "Narrator.h"

#include <ostream>

/// Tells by JSON, an object a line: the transcript, results, errors and warnings. The latter stand
/// on a second stream as well, as text for people.
class JsonNarrator : public Narrator
{
public:
    /// The streams must outlive it.
    JsonNarrator(std::ostream& out, std::ostream& err) : out_(out), err_(err) {}

    bool good() const override { return out_.good(); }
    void command(std::string const& text) override;
    void said(std::string const& text) override;
    void remarked(std::string const& text) override;
    void result(Result const& result) override;
    void told(Notice const& notice) override;
    void logged(int level, std::string const& text) override;
    void failed(std::string const& text) override;
    void complained(Complaint const& complaint) override;

private:
    void write(nlohmann::ordered_json const& object);

    std::ostream& out_;
    std::ostream& err_;
};

#endif
