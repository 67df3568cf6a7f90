#ifndef DRVSH_NARRATOR_H
#define DRVSH_NARRATOR_H

#include "Notice.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

/// What a command prints, in both of its forms.
struct Result
{
    std::string const& text; ///< Complete lines.
    nlohmann::ordered_json const& value;
    bool asJson; ///< Whether the command itself was asked for JSON.
};

/// An error or a warning.
struct Complaint
{
    std::string place; ///< "FILE:LINE", or empty where that says nothing.
    std::string text;
    bool isWarning = false;
};

/// One who tells what happens in a shell: as text, as JSON, as a picture. It is told everything in
/// the order in which it happens, and leaves out what it has no use for.
class Narrator
{
public:
    Narrator() = default;
    Narrator(Narrator const&) = delete;
    Narrator& operator=(Narrator const&) = delete;
    virtual ~Narrator() = default;

    /// Whether what it tells still arrives somewhere.
    virtual bool good() const { return true; }

    /// Somebody is there who can be told something, until it leaves.
    virtual void came(Hearer const&) {}
    virtual void left(Hearer const&) {}

    /// A command begins; what follows is its doing. `text` is the line as it was written.
    virtual void command(std::string const& /*text*/) {}
    /// A text of the script's own.
    virtual void said(std::string const& /*text*/) {}
    /// A remark of the shell on what it did.
    virtual void remarked(std::string const& /*text*/) {}
    virtual void result(Result const&) {}
    /// Somebody was told something, and answered.
    virtual void told(Notice const&) {}
    virtual void logged(int /*level*/, std::string const& /*text*/) {}
    /// A command failed as it should; `text` names the command and says why.
    virtual void failed(std::string const& /*text*/) {}
    virtual void complained(Complaint const&) {}
};

#endif
