#include "Candidates.h"

#include "Identifiers.h"
#include "InfoTree.h"
#include "Shell.h"
#include "ShellGroup.h"
#include "Text.h"

#include <drvrepo/FindDrivers.h>

#include <algorithm>
#include <filesystem>

namespace
{
using Found = std::vector<Completion::Candidate>;

Found wholes(std::vector<std::string> const& texts)
{
    Found found;
    for (std::string const& text : texts)
        found.push_back({text, true});
    return found;
}

/// The names of all drivers, or of the channel groups alone.
std::vector<std::string> driverNames(Shell& shell, bool groupsOnly)
{
    std::vector<std::string> names;
    for (TYPPtr<IDriver> const& driver : findDrivers(*shell.repository()))
        if (!groupsOnly || shellGroup(*driver) != nullptr)
            names.push_back(toStd(driver->getDriverName()));
    return names;
}

std::vector<std::string> listenerNames(Shell& shell)
{
    std::vector<std::string> names;
    for (ListenerWish const* wish : shell.listeners())
        names.push_back(wish->name);
    return names;
}

std::vector<std::string> observerNames(Shell& shell, std::string const& group)
{
    try {
        TYPPtr<IDriver> const driver = shell.driver(group);
        ShellGroup const* const found = shellGroup(*driver);
        return found != nullptr ? found->observers() : std::vector<std::string>();
    } catch (CommandError const&) {
        return {}; // no such group, so no observers
    }
}

std::vector<std::string> keys(Shell& shell, std::string const& driver)
{
    std::vector<std::string> found;
    for (auto const& attachment : attachmentsOf(shell, driver))
        found.push_back(attachment.first);
    return found;
}

/// All attachments that there are, and their keys alone for another value.
Found pairs(Shell& shell)
{
    Found found;
    for (std::string const& driver : driverNames(shell, false))
        for (auto const& attachment : attachmentsOf(shell, driver)) {
            if (!attachment.second.empty())
                found.push_back({attachment.first + "=" + attachment.second, true});
            else
                found.push_back({attachment.first + "=", false});
        }
    return found;
}

/// Files and folders in the folder that the typed path lies in.
Found files(Shell& shell, std::string const& typed)
{
    std::size_t const slash = typed.rfind('/');
    std::string const folder = slash == std::string::npos ? "" : typed.substr(0, slash + 1);
    std::string const where = shell.path(folder);
    Found found;
    std::error_code error;
    std::filesystem::directory_iterator at(where.empty() ? "." : where, error);
    for (; !error && at != std::filesystem::directory_iterator(); at.increment(error)) {
        std::error_code unknown;
        bool const isFolder = at->is_directory(unknown);
        found.push_back(
            {folder + at->path().filename().string() + (isFolder ? "/" : ""), !isFolder});
    }
    return found;
}
} // namespace

void Candidates::add(std::string const& text, bool isWhole)
{
    if (text.compare(0, typed_.size(), typed_) == 0)
        found_.push_back({text, isWhole});
}

void Candidates::addKind(Shell& shell, std::string const& kind,
                         std::vector<std::string> const& given, std::string const& option,
                         std::string const& typed)
{
    std::string const owner = given.empty() ? "" : given.front();
    Found found;
    if (kind == "DRIVER" || kind == "PREFIX")
        found = wholes(driverNames(shell, false));
    else if (kind == "GROUP")
        found = wholes(driverNames(shell, true));
    else if (kind == "LISTENER")
        found = wholes(listenerNames(shell));
    else if (kind == "OBSERVER")
        found = wholes(observerNames(shell, owner));
    else if (kind == "KEY")
        found = wholes(keys(shell, owner));
    else if (kind == "KEY=VALUE")
        found = pairs(shell);
    else if (kind == "UUID|NAME")
        found = wholes(identifierNames());
    else if (kind == "RULE")
        found = {{"added", true}, {"added ", false}, {"set ", false}};
    else if (kind == "FILE")
        found = files(shell, typed);
    for (Completion::Candidate const& candidate : found)
        add(option + candidate.text, candidate.isWhole);
}

std::vector<Completion::Candidate> Candidates::sorted() const
{
    Found sorted = found_;
    std::stable_sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    return sorted;
}
