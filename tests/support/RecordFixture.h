#ifndef SUPPORT_RECORDFIXTURE_H
#define SUPPORT_RECORDFIXTURE_H

#include <drvrepo/DriverWrapper.h>

#include <support/RepositoryFixture.h>

/// The record of one driver, "e1t1 1", used by itself, with listeners that no repository knows.
class RecordFixture : public ::testing::Test
{
protected:
    using Record = CDriverRepository::DriverWrapper;
    using Listener = CDriverRepository::Listener;

    RecordFixture()
        : repository_(new TestRepository(loop_)), driver_(new TestDriver("e1t1 1", DID())),
          record_(std::make_unique<Record>(repository_.get(), driver_.get()))
    {}
    ~RecordFixture() override
    {
        record_.reset();
        EXPECT_EQ(1, driver().references());
        EXPECT_EQ(1, repository_.get()->references());
    }

    /// The driver's type.
    static TOVA_UUID const& DID()
    {
        static const TOVA_UUID did = TOVA_UUID::create(1, 2, 3, 4, "span");
        return did;
    }

    Record& record() const { return *record_; }
    TestDriver& driver() const { return *driver_.get(); }
    IDriverRepository& repository() const { return *repository_.get(); }

    /// The observer of that name; made when first asked for.
    RecordingObserver& observer(std::string const& name)
    {
        auto& made = observers_[name];
        if (made == nullptr)
            made = std::make_unique<RecordingObserver>(log_, name);
        return *made;
    }
    /// A new listener on the observer of that name.
    Listener* make(std::string const& name, unsigned priority, Terms const& terms = Terms())
    {
        const TYPtr<TestDelegate> delegate(new TestDelegate(&observer(name)));
        listeners_.push_back(std::make_unique<Listener>(
            name.c_str(), terms.did(), terms.iid(), terms.prefix(), terms.attributes(), priority,
            terms.hasRightOfVeto(), terms.wantsSnapshot(), delegate.get()));
        return listeners_.back().get();
    }

    /// A new listener that has met the driver; what was told of that is forgotten.
    Listener* meet(std::string const& name, unsigned priority, Terms const& terms = Terms())
    {
        Listener* const l = make(name, priority, terms);
        record().addListener(error_, l);
        forget();
        return l;
    }

    XCode attach(char const* key, char const* value)
    {
        return record().setAttachment(error_, key, value);
    }
    /// Changes an attachment; what was heard of it, and behind that the error, with the code in
    /// front if that is a failure.
    std::string change(char const* key, char const* value)
    {
        error_ = "left over";
        const XCode rc = attach(key, value);
        return heard() + (rc.code() != 0 ? std::to_string(rc.code()) + " " : "") + error();
    }
    /// The listeners that are told of the driver, in its order.
    std::string active() const
    {
        InfoContainer info;
        record().getInfo(info, 2, 0, 3, 0, "");
        std::string names;
        bool among = false;
        for (InfoContainer::Row const& row : info.rows()) {
            if (among)
                names += (names.empty() ? "" : ", ") + std::string(row.key.cString());
            among = among || row.key == "Active Listeners";
        }
        return names;
    }

    std::string heard() { return log_.take(); }
    std::string lines() { return monitor_.take(); }
    std::string error() const { return error_.cString(); }
    /// Forgets what was heard and logged.
    void forget()
    {
        heard();
        lines();
    }

    EventLog log_;
    RecordingMonitor monitor_;
    String error_;

private:
    TYEventLoop loop_;
    TYPtr<TestRepository> repository_;
    TYPtr<TestDriver> driver_;
    std::map<std::string, std::unique_ptr<RecordingObserver>> observers_;
    std::vector<std::unique_ptr<Listener>> listeners_;
    std::unique_ptr<Record> record_;
};

#endif
