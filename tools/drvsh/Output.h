#ifndef DRVSH_OUTPUT_H
#define DRVSH_OUTPUT_H

#include "Narrator.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

using Rows = std::vector<std::pair<std::string, std::string>>;

/// What the shell says: commands and those who are told something say it here, and the narrators
/// tell it to the outside.
class Output
{
public:
    /// Lets `narrator`, which must outlive the shell, tell what happens from here on.
    void add(Narrator& narrator) { narrators_.push_back(&narrator); }

    /// Whether all that is told still arrives somewhere.
    bool good() const;

    /// From here on everything is caused by the command of that text.
    void beginCommand(std::string const& text);

    /// What a command has found out: as a text of complete lines, and as JSON; `asJson`: the
    /// command was asked for JSON.
    void result(std::string const& text, nlohmann::ordered_json const& value, bool asJson);
    /// A result of one line, which in JSON is a string.
    void line(std::string const& text);
    /// A text of the script's own.
    void say(std::string const& text);
    /// A remark on what was done, or why nothing was.
    void remark(std::string const& text);
    /// Somebody was told something, and answered.
    void told(Notice const& notice);
    /// A line of the log.
    void logged(int level, std::string const& text);
    /// How a command failed that was to fail.
    void failed(std::string const& text);
    /// An error or a warning.
    void complain(Complaint const& complaint);

    /// Somebody can be told something, until it leaves. `observer` is the address that the library
    /// shows for it.
    void addHearer(Hearer const& hearer, void const* observer);
    void removeHearer(Hearer const& hearer, void const* observer);
    /// `text` with the names of hearers in place of their addresses, which differ from run to run
    /// and say nothing.
    std::string named(std::string const& text) const;

private:
    template <class Telling> void each(Telling telling) const
    {
        for (Narrator* narrator : narrators_)
            telling(*narrator);
    }

    std::vector<Narrator*> narrators_;
    std::map<std::string, std::string> names_; // of hearers, by address
};

/// Names and values as lines, the values in one column. Without a value the name stands alone.
std::string tableText(Rows const& rows);

#endif
