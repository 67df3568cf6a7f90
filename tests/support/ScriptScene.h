#ifndef SUPPORT_SCRIPTSCENE_H
#define SUPPORT_SCRIPTSCENE_H

#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <utility/InfoContainer.h>

#include <support/RepositoryFixture.h>
#include <support/ScriptParts.h>

/// A repository that says "gone" when somebody waits for its end.
class ScriptRepository : public TestRepository
{
public:
    ScriptRepository(TYEventLoop& loop, Story& story) : TestRepository(loop), story_(story) {}
    ~ScriptRepository() override { story_.hint("gone"); }

private:
    Story& story_;
};

/// What an observer of a test throws.
struct Thrown : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// A repository with parts of a story by name. Its verbs are calls of the repository; each tells
/// itself in brackets, so that a reaction is made of the same verbs as a test.
class Scene
{
public:
    Scene() : repository_(new ScriptRepository(loop_, story_)), monitor_(story_) {}
    ~Scene()
    {
        EXPECT_EQ("", story_.waiting()) << "nobody said that";
        EXPECT_FALSE(monitor_.isWaiting()) << "nobody logged that";
        if (repository_ == nullptr)
            return;
        for (auto const& observer : observers_)
            repository_->removeDriverRepositoryObserver(observer.first.c_str());
        for (auto const& driver : drivers_)
            repository_->removeDriver(String(driver.first.c_str()));
        for (auto const& driver : drivers_)
            if (driver.second) {
                EXPECT_EQ(1, driver.second.get()->references()) << driver.first;
            }
        EXPECT_EQ(1, repository_->references());
        repository_->release();
    }
    Scene(Scene const&) = delete;
    Scene& operator=(Scene const&) = delete;

    Story& story() { return story_; }
    ScriptMonitor& monitor() { return monitor_; }
    ScriptRepository& repository() { return *repository_; }

    ScriptObserver& observer(std::string const& name)
    {
        auto& made = observers_[name];
        if (made == nullptr)
            made = std::make_unique<ScriptObserver>(story_, name);
        return *made;
    }
    ScriptDriver& driver(std::string const& name)
    {
        TYPtr<ScriptDriver>& made = drivers_[name];
        if (!made)
            made.reset(new ScriptDriver(story_, name));
        return *made;
    }

    void add(std::string const& name)
    {
        const Story::Call call(story_, "add " + name + ":");
        String error("left over");
        const XCode rc = repository_->addDriver(error, &driver(name));
        tell(rc, error);
    }
    void remove(std::string const& name)
    {
        const Story::Call call(story_, "remove " + name + ":");
        repository_->removeDriver(String(name.c_str()));
    }
    void listen(std::string const& name, unsigned priority, Terms const& terms = Terms())
    {
        const Story::Call call(story_, "listen " + name + ":");
        String error("left over");
        const XCode rc = Terms(terms).priority(priority).listen(error, *repository_, name.c_str(),
                                                                &observer(name));
        tell(rc, error);
    }
    void unlisten(std::string const& name)
    {
        const Story::Call call(story_, "unlisten " + name + ":");
        repository_->removeDriverRepositoryObserver(name.c_str());
    }
    /// Sets an attachment, "k=1" or "k=", of driver d or the one named.
    void attach(std::string const& change, std::string const& driverName = "d")
    {
        const Story::Call call(story_, (driverName == "d" ? "" : driverName + ".") + change + ":");
        const std::size_t equals = change.find('=');
        String error("left over");
        const XCode rc = repository_->setDriverAttachment(error, driverName.c_str(),
                                                          change.substr(0, equals).c_str(),
                                                          change.substr(equals + 1).c_str());
        tell(rc, error);
    }
    /// The names of the drivers.
    void query()
    {
        const Story::Call call(story_, "drivers:");
        TOVA_List<TYPPtr<IDriver>> found;
        repository_->getDrivers(TOVA_UUID::INVALID(), "", found);
        for (TYPPtr<IDriver> const& at : found)
            story_.say(static_cast<ScriptDriver&>(*at).label());
    }
    /// The drivers with their attachments and, in parentheses, their active listeners.
    void info()
    {
        const Story::Call call(story_, "info:");
        story_.say(described());
    }
    /// Gives back the reference that the test holds on a driver.
    void drop(std::string const& name)
    {
        const Story::Call call(story_, "drop " + name);
        drivers_[name].reset();
    }
    /// Gives back the reference that the test holds on the repository.
    void dropRepository()
    {
        const Story::Call call(story_, "drop repository");
        std::exchange(repository_, nullptr)->release();
    }

    /// What is left: drivers with attachments and active listeners, then all listeners.
    std::string left() { return described() + "; " + listeners(); }
    std::string told() { return story_.take(); }

private:
    void tell(XCode const& rc, String const& error)
    {
        if (rc.code() == 0)
            story_.say(error.isEmpty() ? "ok" : "ok<" + std::string(error.cString()) + ">");
        else
            story_.say(std::to_string(rc.code()) + "<" + error.cString() + ">");
    }
    std::string described();
    std::string listeners();

    TYEventLoop loop_;
    Story story_;
    // What a repository may still refer to goes after it.
    std::map<std::string, std::unique_ptr<ScriptObserver>> observers_;
    std::map<std::string, TYPtr<ScriptDriver>> drivers_;
    ScriptRepository* repository_;
    ScriptMonitor monitor_;
};

inline std::string Scene::described()
{
    if (repository_ == nullptr)
        return "nothing";
    InfoContainer info;
    repository_->getInfo(info, 4, 0, 3, 0, "");
    std::string text;
    bool active = false;
    for (InfoContainer::Row const& row : info.rows()) {
        if (row.depth == 1 && row.key == "Listeners")
            break;
        const std::string key = row.key.cString();
        if (row.depth == 2)
            text += (active ? ") " : text.empty() ? "" : " ") + key;
        if (row.depth == 4)
            text += active ? (text.back() == '(' ? "" : " ") + key
                           : " " + key + "=" + row.value.cString();
        active = row.depth == 3 ? row.key == "Active Listeners" : row.depth != 2 && active;
        if (row.depth == 3 && active)
            text += "(";
    }
    return text + (active ? ")" : "");
}

inline std::string Scene::listeners()
{
    if (repository_ == nullptr)
        return "";
    InfoContainer info;
    repository_->getInfo(info, 2, 0, 0, 0, "");
    std::string names;
    bool among = false;
    for (InfoContainer::Row const& row : info.rows()) {
        if (among)
            names += (names.empty() ? "" : " ") + std::string(row.key.cString());
        among = among || (row.depth == 1 && row.key == "Listeners");
    }
    return names;
}

#endif
