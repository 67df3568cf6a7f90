#ifndef REPOSITORY_OPERATION_H
#define REPOSITORY_OPERATION_H

#include <drvrepo/DriverWrapper.h>

/// An operation on a repository that calls out: it keeps the repository alive, and what goes
/// meanwhile linked. The outermost one frees that when it ends.
class CDriverRepository::Operation
{
public:
    explicit Operation(CDriverRepository const& repository)
        : repository_(const_cast<CDriverRepository&>(repository))
    {
        repository_.CDriverRepository::addRef(); // by name, which spares the look at its table
        ++repository_.running_;
    }
    Operation(Operation const&) = delete;
    Operation& operator=(Operation const&) = delete;
    ~Operation()
    {
        settle();
        --repository_.running_;
        repository_.CDriverRepository::release();
    }

    /// Frees what has gone, if this is the outermost operation, and returns whether there was
    /// anything. What is given back there may call in, so an answer about what is registered is
    /// given after it.
    bool settle()
    {
        if (repository_.running_ != 1 || !repository_.graves_)
            return false;
        repository_.bury();
        return true;
    }

private:
    CDriverRepository& repository_;
};

/// A driver that is just leaving: what is still owed to its listeners and to itself.
struct CDriverRepository::Departure
{
    /// `ofName` must outlive this. `told` learns that it is in no repository any more. `stop`:
    /// where an offer ended that a listener refused; the end when all had their offer.
    Departure(CDriverRepository& ofRepository, DriverWrapper& ofRecord, String const& ofName,
              IDriver* toTell, Listeners::Iterator ofStop)
        : repository(ofRepository), record(ofRecord), name(ofName),
          told(TYPtr<IDriver>::share(toTell)), stop(ofStop), outer(ofRepository.departures_)
    {
        repository.departures_ = this;
    }
    Departure(Departure const&) = delete;
    Departure& operator=(Departure const&) = delete;
    ~Departure() { repository.departures_ = outer; }

    CDriverRepository& repository;
    DriverWrapper& record;
    String const& name;
    TYPtr<IDriver> told;
    const Listeners::Iterator stop;
    Departure* const outer;
};

#endif
