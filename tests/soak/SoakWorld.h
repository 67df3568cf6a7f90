#ifndef SOAK_SOAKWORLD_H
#define SOAK_SOAKWORLD_H

#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include <drvrepo/CDriver.h>
#include <drvrepo/CDriverRepository.h>
#include <drvrepo/IDriverRepositoryObserver.h>

/// One repository that lives for ever, 64 drivers and 32 listeners that come and go at random.
/// Listeners refuse now and then, and call back in.
class SoakWorld
{
public:
    static constexpr unsigned DRIVERS = 64;
    static constexpr unsigned LISTENERS = 32;

    explicit SoakWorld(std::uint32_t seed);
    ~SoakWorld();
    SoakWorld(SoakWorld const&) = delete;
    SoakWorld& operator=(SoakWorld const&) = delete;

    /// Makes one random call, and whatever listeners call from inside it.
    void call();
    /// Puts everything into the one state that all walks of this world can be compared in: every
    /// driver in, with the same attachments, and every listener registered, nobody refusing.
    void settle();
    /// Whether the list of each driver that is in has one entry for each listener that is
    /// registered, and no other.
    bool isTidy() const;

    /// Calls made, those from inside included.
    std::uint64_t calls() const { return calls_; }

private:
    class Listener;

    unsigned random(unsigned below);
    void callAtRandom();
    void attach(unsigned driver, unsigned key, unsigned value);
    void listen(unsigned listener, unsigned terms);
    String const& valueOf(unsigned index) const { return values_[index]; }
    /// A refusal or a call back, sometimes.
    XCode react(String& error);

    std::mt19937 random_;
    TYEventLoop loop_;
    CDriverRepository* const repository_;
    std::vector<TYPtr<CDriver>> drivers_;
    std::vector<std::unique_ptr<Listener>> listeners_;
    std::vector<String> names_;
    std::vector<String> keys_;
    std::vector<String> values_;
    std::uint64_t calls_ = 0;
    unsigned depth_ = 0;
    bool calm_ = false;
};

#endif
