#ifndef SUPPORT_REPOSITORYFIXTURE_H
#define SUPPORT_REPOSITORYFIXTURE_H

#include <map>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <utility/InfoContainer.h>

#include <drvrepo/ListenerTerms.h>
#include <drvrepo/testkit/RecordingObserver.h>
#include <drvrepo/testkit/TestDriver.h>

#include <support/RecordingMonitor.h>
#include <support/TestRepository.h>

using Terms = ListenerTerms;

/// A repository, its drivers and observers by name, and what was heard and logged. At the end
/// everything is taken out, and nobody may be left holding a reference.
class RepositoryFixture : public ::testing::Test
{
protected:
    RepositoryFixture() : repository_(new TestRepository(loop_)) {}
    ~RepositoryFixture() override
    {
        for (auto const& observer : observers_)
            repository().removeDriverRepositoryObserver(observer.first.c_str());
        for (auto const& driver : drivers_)
            repository().removeDriver(driver.second.get());
        for (auto const& driver : drivers_)
            EXPECT_EQ(1, driver.second.get()->references()) << driver.first;
        EXPECT_EQ(1, repository().references());
    }

    TestRepository& repository() const { return *repository_; }

    /// The observer of that name; made when first asked for.
    RecordingObserver& observer(std::string const& name)
    {
        auto& made = observers_[name];
        if (made == nullptr)
            made = std::make_unique<RecordingObserver>(log_, name);
        return *made;
    }
    /// The driver of that name; made when first asked for.
    TestDriver& driver(std::string const& name, TOVA_UUID const& did = IDriver::DID_UNKNOWN())
    {
        TYPtr<TestDriver>& made = drivers_[name];
        if (!made)
            made.reset(new TestDriver(name.c_str(), did));
        return *made;
    }

    /// Registers the observer of that name under it.
    XCode listen(std::string const& name, unsigned priority, Terms const& terms = Terms())
    {
        return repository().addDriverRepositoryObserver(
            error_, name.c_str(), terms.did(), terms.iid(), terms.prefix(), terms.attributes(),
            priority, terms.hasRightOfVeto(), terms.wantsSnapshot(), &observer(name));
    }
    /// Registers with the right of veto an observer that refuses every driver.
    XCode refuse(std::string const& name, unsigned priority, std::string const& text)
    {
        observer(name).refuse("added", text);
        return listen(name, priority, Terms().veto());
    }
    void unlisten(std::string const& name)
    {
        repository().removeDriverRepositoryObserver(name.c_str());
    }

    XCode add(std::string const& name) { return repository().addDriver(error_, &driver(name)); }
    void remove(std::string const& name) { repository().removeDriver(String(name.c_str())); }

    XCode attach(std::string const& name, char const* key, char const* value)
    {
        return repository().setDriverAttachment(error_, String(name.c_str()), key, value);
    }
    std::string attachment(std::string const& name, char const* key) const
    {
        String value("left over");
        return repository().getDriverAttachment(String(name.c_str()), key, value).cString();
    }

    /// What the observers heard since the last call.
    std::string heard() { return log_.take(); }
    /// What was logged since the last call, "<level> text" a line.
    std::string lines() { return monitor_.take(); }
    /// The text that the last of the verbs above left.
    std::string error() const { return error_.cString(); }
    /// Forgets what was heard and logged.
    void forget()
    {
        heard();
        lines();
    }

    /// The names of the drivers, in the order of the repository: "fxs 1, fxs 2".
    std::string drivers() const
    {
        TOVA_List<TYPPtr<IDriver>> found;
        repository().getDrivers(TOVA_UUID::INVALID(), "", found);
        std::string names;
        for (TYPPtr<IDriver> const& at : found)
            names += (names.empty() ? "" : ", ") + std::string(at.get()->getDriverName().cString());
        return names;
    }
    /// The names of the listeners, in the order of the repository.
    std::string listeners() const
    {
        InfoContainer info;
        repository().getInfo(info, 2, 0, 0, 0, "");
        std::string names;
        bool among = false;
        for (InfoContainer::Row const& row : info.rows()) {
            if (among)
                names += (names.empty() ? "" : ", ") + std::string(row.key.cString());
            among = among || (row.depth == 1 && row.key == "Listeners");
        }
        return names;
    }

    TYEventLoop loop_;
    EventLog log_;
    RecordingMonitor monitor_;
    String error_;

private:
    struct Release
    {
        void operator()(TestRepository* repository) const { repository->release(); }
    };

    // What a repository may still refer to goes after it.
    std::map<std::string, std::unique_ptr<RecordingObserver>> observers_;
    std::map<std::string, TYPtr<TestDriver>> drivers_;
    std::unique_ptr<TestRepository, Release> repository_;
};

#endif
