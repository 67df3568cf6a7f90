#ifndef SUPPORT_SCRIPTPARTS_H
#define SUPPORT_SCRIPTPARTS_H

#include <cstdio>
#include <map>
#include <string>

#include <drvrepo/CDriver.h>
#include <drvrepo/IDriverRepositoryObserver.h>
#include <drvrepo/MON_DRV.h>

#include <support/ScriptStory.h>

// The parts in a story: a driver, an observer and the monitor.

/// A driver that says, when somebody waits for it, which of its operations is called: "d.in" and
/// "d.out" (setDriverRepository), "d.name", "d.did", "d.query", "d.ref", "d.release", and "d.gone"
/// when it is destroyed.
class ScriptDriver : public CDriver
{
public:
    ScriptDriver(Story& story, std::string label, TOVA_UUID const& did = IDriver::DID_UNKNOWN())
        : CDriver(did, label.c_str()), story_(story), label_(std::move(label))
    {}
    ~ScriptDriver() override { story_.hint(label_ + ".gone"); }

    std::string const& label() const { return label_; }
    /// References on this one, the creator's included.
    int references() const { return references_; }
    /// Sets this attachment on itself whenever a repository takes it in.
    void publish(char const* key, char const* value) { published_[key] = value; }

    XCode queryInterface(TOVA_UUID const& iid, void** out) override
    {
        story_.hint(label_ + ".query");
        return CDriver::queryInterface(iid, out);
    }
    void addRef() override
    {
        ++references_;
        CDriver::addRef();
        story_.hint(label_ + ".ref");
    }
    void release() override
    {
        story_.hint(label_ + ".release");
        --references_;
        CDriver::release();
    }
    TOVA_UUID const& getDID() const override
    {
        story_.hint(label_ + ".did");
        return CDriver::getDID();
    }
    String const& getDriverName() const override
    {
        story_.hint(label_ + ".name");
        return CDriver::getDriverName();
    }
    void setDriverRepository(IDriverRepository* repository) override
    {
        CDriver::setDriverRepository(repository);
        String error;
        for (auto const& at : published_)
            if (repository != nullptr)
                repository->setDriverAttachment(error, label_.c_str(), at.first.c_str(),
                                                at.second.c_str());
        story_.hint(label_ + (repository != nullptr ? ".in" : ".out"));
    }

private:
    Story& story_;
    std::string label_;
    int references_ = 1;
    std::map<std::string, std::string> published_;
};

/// An observer that says what it hears. Of driver d: "A+d" added, "A-d" removed; of its attachments
/// "A+k=1" set, "A-k=1" cleared; "A!d" and "A!k=1" when it refuses. Of the attachments of other
/// drivers: "A+e.k=1".
class ScriptObserver : public IDriverRepositoryObserver
{
public:
    using Event = ObserverEvent<IDriverRepository>;

    static constexpr std::int32_t REFUSAL = 7;

    ScriptObserver(Story& story, std::string name) : story_(story), name_(std::move(name)) {}

    /// Refuses "d" or "k=1" with `text`, the next time.
    void refuse(std::string const& what, std::string const& text) { refusals_[what] = text; }

    XCode onDriverAdded(String& error, Event& event) override
    {
        return answer(error, driverOf(event).label());
    }
    void onDriverRemoved(Event& event) override
    {
        story_.say(name_ + "-" + driverOf(event).label());
    }
    XCode onDriverAttachmentSet(String& error, Event& event) override
    {
        return answer(error, attachmentOf(event));
    }
    void onDriverAttachmentCleared(Event& event) override
    {
        story_.say(name_ + "-" + attachmentOf(event));
    }

private:
    XCode answer(String& error, std::string const& what)
    {
        const auto refusal = refusals_.find(what);
        if (refusal == refusals_.end()) {
            story_.say(name_ + "+" + what);
            return XCode();
        }
        error = refusal->second.c_str();
        refusals_.erase(refusal);
        story_.say(name_ + "!" + what);
        return XCode(REFUSAL);
    }
    static ScriptDriver const& driverOf(Event const& event)
    {
        auto const& about = static_cast<IDriverRepository::EvDriver const&>(event);
        return static_cast<ScriptDriver const&>(*about.driver);
    }
    static std::string attachmentOf(Event const& event)
    {
        auto const& change = static_cast<IDriverRepository::EvAttachment const&>(event);
        std::string const& driver = driverOf(event).label();
        return (driver == "d" ? "" : driver + ".") + change.key.cString() + "=" +
               change.value.cString();
    }

    Story& story_;
    std::string name_;
    std::map<std::string, std::string> refusals_;
};

/// Keeps the lines of the error level, and says "log" for a line that somebody waits for. It is
/// MON_DRV while it lives.
class ScriptMonitor : public RTD::Monitor
{
public:
    explicit ScriptMonitor(Story& story) : story_(story) { MON_DRV = this; }
    ~ScriptMonitor() override { MON_DRV = nullptr; }

    /// Lets `reaction` run the next time that a line of that text is written, from inside.
    void on(std::string const& text, Story::Reaction reaction)
    {
        awaited_[text] = std::move(reaction);
    }
    bool isWaiting() const { return !awaited_.empty(); }

    /// The lines of the error level since the last call, without the "DrvRepo:" before each.
    std::string takeFailures()
    {
        std::string taken;
        taken.swap(failures_);
        return taken;
    }

protected:
    void write(int level, char const* fmt, std::va_list arguments) const override
        UTILITY_PRINTF(3, 0)
    {
        char line[400];
        std::vsnprintf(line, sizeof line, fmt, arguments);
        if (level == RTD::LEVEL_ERROR)
            failures_ += std::string(line).substr(sizeof "DrvRepo:" - 1) + "\n";
        const auto found = awaited_.find(line);
        if (found == awaited_.end())
            return;
        story_.on("log", std::move(found->second));
        awaited_.erase(found);
        story_.say("log");
    }

private:
    Story& story_;
    mutable std::string failures_;
    mutable std::map<std::string, Story::Reaction> awaited_;
};

#endif
