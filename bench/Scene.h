#ifndef BENCH_SCENE_H
#define BENCH_SCENE_H

#include <cstdint>
#include <memory>
#include <vector>

#include "Load.h"

// What the works act on, written once for all systems. A system S has
//   Text                       the type in which its users hold names, keys and values
//   Driver                     its counted pointer to a driver; make(name, type) makes one
//   Found                      what a query fills
//   add, remove, set, lookUp, query, listen, unlisten
//   Group                      a subject with observers of its own: observe, accept, refuse

/// One work on one system at one size, ready to be run.
class Work
{
public:
    Work() = default;
    Work(Work const&) = delete;
    Work& operator=(Work const&) = delete;
    virtual ~Work() = default;

    virtual void run(unsigned operations) = 0;
    /// Whether everything asked for was done, and every listener told exactly as often as it
    /// should have been.
    virtual bool isRight() const = 0;
};

/// A registry with N drivers.
template <class S> class Scene
{
public:
    using Text = typename S::Text;

    explicit Scene(unsigned n)
    {
        for (unsigned zone = 0; zone < load::ZONES; ++zone)
            zones.emplace_back(load::zone(zone).c_str());
        drivers.reserve(n);
        fill(n);
    }
    ~Scene()
    {
        for (auto const& driver : drivers)
            system.remove(driver);
    }
    Scene(Scene const&) = delete;
    Scene& operator=(Scene const&) = delete;

    unsigned size() const { return static_cast<unsigned>(drivers.size()); }

    /// Adds the next `n` drivers. Their attachments are set from texts that the setting component
    /// holds, or from new ones for each driver.
    void fill(unsigned n, bool newTexts = false)
    {
        const unsigned end = size() + n;
        for (unsigned i = size(); i < end; ++i) {
            const Text name(load::name(i).c_str());
            drivers.push_back(S::make(name, load::E1T1));
            system.add(drivers.back());
            Text const& zone = zones[load::zoneOf(i)];
            system.set(name, newTexts ? Text(load::ZONE) : ZONE,
                       newTexts ? Text(load::zone(load::zoneOf(i)).c_str()) : zone);
            system.set(name, newTexts ? Text(load::STATE) : STATE,
                       newTexts ? Text(load::IDLE) : IDLE);
        }
    }

    /// The names of at most `most` drivers in random order, in texts of their own.
    std::vector<Text> someNames(unsigned most) const
    {
        std::vector<Text> names;
        for (unsigned i : load::shuffled(size())) {
            if (names.size() == most)
                break;
            names.emplace_back(load::name(i).c_str());
        }
        return names;
    }

    const Text ZONE{load::ZONE};
    const Text STATE{load::STATE};
    const Text IDLE{load::IDLE};
    const Text BUSY{load::BUSY};
    std::vector<Text> zones;
    S system;
    std::vector<typename S::Driver> drivers;
};

/// The scene of that size; kept for the next work, which leaves it as it found it, to the end of
/// the process.
template <class S> std::shared_ptr<Scene<S>> sceneOf(unsigned n)
{
    static auto& kept = *new std::shared_ptr<Scene<S>>;
    if (kept == nullptr || kept->size() != n) {
        kept.reset();
        kept = std::make_shared<Scene<S>>(n);
    }
    return kept;
}

/// L listeners and what they were told.
template <class S> class Audience
{
public:
    Audience(S& system, unsigned l) : system_(system), told_(l) {}
    ~Audience()
    {
        for (std::string const& name : names_)
            system_.unlisten(name);
    }
    Audience(Audience const&) = delete;
    Audience& operator=(Audience const&) = delete;

    /// Registers the next listener, and forgets what it was told meanwhile.
    void join(load::Criteria criteria)
    {
        const std::size_t number = names_.size();
        criteria.name = "listener " + std::to_string(number);
        criteria.priority = static_cast<unsigned>(number % 4);
        system_.listen(criteria, told_[number]);
        names_.push_back(criteria.name);
        told_[number] = load::Told();
    }

    bool allHeard(load::Told const& expected) const
    {
        for (load::Told const& told : told_)
            if (!(told == expected))
                return false;
        return true;
    }

private:
    S& system_;
    std::vector<load::Told> told_;
    std::vector<std::string> names_;
};

#endif
