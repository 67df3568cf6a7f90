#include "Shell.h"

#include "ChannelList.h"
#include "Script.h"
#include "ShellListener.h"
#include "ShellMonitor.h"
#include "Text.h"
#include "Words.h"

#include <drvrepo/FindDrivers.h>

#include <algorithm>
#include <climits>

Shell::Shell(Narrator& narrator) : repository_(new CDriverRepository(loop_))
{
    output_.add(narrator);
}

Shell::~Shell()
{
    monitor_.reset();
    listeners_.clear();
    for (TYPPtr<IDriver> const& driver : findDrivers(*repository_))
        repository_->removeDriver(driver.get());
}

void Shell::showLog(unsigned verbosity)
{
    unsigned const most = INT_MAX;
    monitor_.reset();
    monitor_ = std::make_unique<ShellMonitor>(
        output_, static_cast<std::int32_t>(verbosity < most ? verbosity : most));
}

void Shell::hideLog()
{
    monitor_.reset();
}

bool Shell::run(Script& script, bool keepGoing)
{
    bool good = true;
    std::string line;
    folder_ = script.folder();
    while ((good || keepGoing) && !ended_ && output_.good() && script.next(line))
        good = runLine(line, script.place()) && good;
    if (!script.problem().empty())
        complain(script.name(), "can't be read: " + script.problem());
    return good && script.problem().empty();
}

bool Shell::runLine(std::string const& line, std::string const& place)
{
    if (ended_)
        return true;
    try {
        CommandLine const command = splitWords(line);
        if (command.words.empty())
            return true;
        output_.beginCommand(command.text);
        execute(command.words);
        return true;
    } catch (QuotingError const& error) {
        output_.beginCommand(trimmed(line));
        complain(place, error.what());
    } catch (CommandError const& error) {
        complain(place, error.what());
    }
    return false;
}

void Shell::complain(std::string const& place, std::string const& reasons)
{
    std::size_t start = 0;
    for (;;) {
        std::size_t const end = reasons.find('\n', start);
        output_.complain({place, reasons.substr(start, end - start), false});
        if (end == std::string::npos)
            return;
        start = end + 1;
    }
}

void Shell::execute(std::vector<std::string> const& words)
{
    std::size_t used = 0;
    CommandEntry const& entry = findCommand(words, used);
    std::unique_ptr<Command> const command = entry.make();
    Arguments arguments(entry.name, entry.summary, entry.example);
    command->declare(arguments);
    try {
        if (arguments.parse({words.begin() + static_cast<long>(used), words.end()}))
            command->run(*this);
        else
            output_.line(arguments.help());
    } catch (UsageError const& error) {
        throw CommandError(entry.name + ": " + error.what());
    } catch (CommandError const& error) {
        std::string reasons = entry.name + ": " + error.what();
        for (std::size_t end = reasons.find('\n'); end != std::string::npos;
             end = reasons.find('\n', end + 1))
            reasons.insert(end + 1, entry.name + ": ");
        throw CommandError(reasons);
    }
}

std::string Shell::path(std::string const& path) const
{
    return !path.empty() && path.front() == '/' ? path : folder_ + path;
}

void Shell::addDriver(TYPtr<IDriver> const& driver)
{
    String error;
    check(repository_->addDriver(error, driver.get()), error);
}

TYPPtr<IDriver> Shell::driver(std::string const& name) const
{
    IDriver* found = nullptr;
    if (repository_->getDriver(toString(name), &found).code() != 0)
        throw CommandError("Driver '" + name + "' does not exist");
    return TYPPtr<IDriver>(found);
}

void Shell::attach(std::string const& driver, std::string const& key, std::string const& value)
{
    String error;
    check(repository_->setDriverAttachment(error, toString(driver), toString(key), toString(value)),
          error);
}

void Shell::listen(ListenerWish const& wish)
{
    ListenerTerms const& terms = wish.terms;
    Hearer const self = {wish.name, "", terms.priority(), terms.hasRightOfVeto()};
    Listening listening{wish, std::make_unique<ShellListener>(output_, self, wish.refusals), {}};
    String error;
    check(
        listening.scope.start(error, *repository_, toString(wish.name), terms, *listening.listener),
        error);
    // Lower priorities are told first; among equals the newest.
    auto const place =
        std::find_if(listeners_.begin(), listeners_.end(), [&](Listening const& other) {
            return other.wish.terms.priority() >= terms.priority();
        });
    listeners_.insert(place, std::move(listening));
}

bool Shell::unlisten(std::string const& name)
{
    auto const found =
        std::find_if(listeners_.begin(), listeners_.end(),
                     [&](Listening const& listening) { return listening.wish.name == name; });
    if (found == listeners_.end())
        return false;
    found->scope.leave();
    listeners_.erase(found);
    return true;
}

std::vector<ListenerWish const*> Shell::listeners() const
{
    std::vector<ListenerWish const*> wishes;
    for (Listening const& listening : listeners_)
        wishes.push_back(&listening.wish);
    return wishes;
}
