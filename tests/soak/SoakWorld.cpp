#include "SoakWorld.h"

#include <algorithm>
#include <set>
#include <string>

#include <utility/InfoContainer.h>

#include <drvrepo/Explain.h>

class SoakWorld::Listener final : public IDriverRepositoryObserver
{
public:
    explicit Listener(SoakWorld& world) : world_(world) {}

    XCode onDriverAdded(String& error, ObserverEvent<IDriverRepository>&) override
    {
        return world_.react(error);
    }
    void onDriverRemoved(ObserverEvent<IDriverRepository>&) override
    {
        String unused;
        static_cast<void>(world_.react(unused));
    }
    XCode onDriverAttachmentSet(String& error, ObserverEvent<IDriverRepository>&) override
    {
        return world_.react(error);
    }
    void onDriverAttachmentCleared(ObserverEvent<IDriverRepository>&) override
    {
        String unused;
        static_cast<void>(world_.react(unused));
    }

private:
    SoakWorld& world_;
};

SoakWorld::SoakWorld(std::uint32_t seed) : random_(seed), repository_(new CDriverRepository(loop_))
{
    static char const* const TYPES[] = {"e1t1", "bri", "fxs", "fxo"};
    for (unsigned i = 0; i < DRIVERS; ++i)
        drivers_.emplace_back(new CDriver(IDriver::DID_UNKNOWN(),
                                          String().format("%s %u/PORT", TYPES[i % 4], i / 4)));
    for (unsigned i = 0; i < LISTENERS; ++i) {
        listeners_.emplace_back(new Listener(*this));
        names_.push_back(String().format("listener %u", i));
    }
    for (char const* key : {"framing", "coding", "line"})
        keys_.emplace_back(key);
    for (char const* value : {"", "ccs", "cas", "ccs,crc4"})
        values_.emplace_back(value);
}

SoakWorld::~SoakWorld()
{
    calm_ = true;
    for (String const& name : names_)
        repository_->removeDriverRepositoryObserver(name);
    for (TYPtr<CDriver> const& driver : drivers_)
        repository_->removeDriver(driver.get());
    repository_->release();
}

unsigned SoakWorld::random(unsigned below)
{
    return static_cast<unsigned>(random_() % below);
}

void SoakWorld::call()
{
    callAtRandom();
}

XCode SoakWorld::react(String& error)
{
    if (calm_ || depth_ >= 3)
        return XCode();
    const unsigned what = random(64);
    if (what == 0) {
        error = "busy";
        return XCode(-1);
    }
    if (what < 3) {
        ++depth_;
        callAtRandom();
        --depth_;
    }
    return XCode();
}

void SoakWorld::callAtRandom()
{
    ++calls_;
    String text;
    const unsigned driver = random(DRIVERS);
    switch (random(16)) {
    case 0:
    case 1:
    case 2:
        static_cast<void>(repository_->addDriver(text, drivers_[driver].get()));
        break;
    case 3:
        repository_->removeDriver(drivers_[driver].get());
        break;
    case 4:
        repository_->removeDriver(drivers_[driver].get()->getDriverName());
        break;
    case 5:
    case 6:
        listen(random(LISTENERS), random_());
        break;
    case 7:
        repository_->removeDriverRepositoryObserver(names_[random(LISTENERS)]);
        break;
    case 8: {
        IDriver* found = nullptr;
        static_cast<void>(repository_->getDriver(drivers_[driver].get()->getDriverName(), &found));
        const TYPtr<IDriver> held(found);
        break;
    }
    case 9: {
        TOVA_List<TYPPtr<IDriver>> found;
        repository_->getDrivers(TOVA_UUID::INVALID(), "e1t1", found);
        break;
    }
    default:
        attach(driver, random_() % static_cast<unsigned>(keys_.size()),
               random_() % static_cast<unsigned>(values_.size()));
        break;
    }
}

void SoakWorld::attach(unsigned driver, unsigned key, unsigned value)
{
    String text;
    static_cast<void>(repository_->setDriverAttachment(
        text, drivers_[driver].get()->getDriverName(), keys_[key], values_[value]));
}

/// Registers a listener on criteria and rights that the bits of `terms` choose.
void SoakWorld::listen(unsigned listener, unsigned terms)
{
    static char const* const PREFIXES[] = {"", "e1t1", "bri", "e1t1 1"};
    IDriverRepository::Attributes attributes;
    if ((terms & 1) != 0)
        attributes.put(keys_[(terms >> 1) % keys_.size()], values_[1]);
    const bool veto = (terms & 8) != 0;
    const bool snapshot = (terms & 16) != 0;
    String text;
    static_cast<void>(repository_->addDriverRepositoryObserver(
        text, names_[listener], TOVA_UUID::INVALID(), TOVA_UUID::INVALID(),
        PREFIXES[(terms >> 5) % 4], attributes, (terms >> 7) % 4, veto, snapshot,
        listeners_[listener].get()));
}

void SoakWorld::settle()
{
    calm_ = true;
    for (String const& name : names_)
        repository_->removeDriverRepositoryObserver(name);
    // A record has the room for entries that it was made with.
    for (TYPtr<CDriver> const& driver : drivers_)
        repository_->removeDriver(driver.get());
    for (unsigned i = 0; i < LISTENERS; ++i)
        listen(i, 8 + 16 + 37 * i);
    for (unsigned i = 0; i < DRIVERS; ++i) {
        String text;
        static_cast<void>(repository_->addDriver(text, drivers_[i].get()));
        for (unsigned key = 0; key < keys_.size(); ++key)
            attach(i, key, 1 + (i + key) % 3);
    }
    calm_ = false;
}

bool SoakWorld::isTidy() const
{
    String error;
    TOVA_List<Explanation> found;
    std::set<std::string> registered;
    for (String const& name : names_)
        if (explainListener(error, *repository_, name, found).code() == 0)
            registered.insert(name.cString());
    for (TYPtr<CDriver> const& driver : drivers_) {
        if (explainDriver(error, *repository_, driver.get()->getDriverName(), found).code() != 0)
            continue;
        std::multiset<std::string> listed;
        for (Explanation const& at : found)
            if (at.state != Explanation::NEVER_OFFERED)
                listed.insert(at.listener.cString());
        if (!std::equal(listed.begin(), listed.end(), registered.begin(), registered.end()))
            return false;
    }
    return true;
}
