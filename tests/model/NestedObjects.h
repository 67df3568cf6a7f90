#ifndef TESTS_MODEL_NESTED_OBJECTS_H
#define TESTS_MODEL_NESTED_OBJECTS_H

#include <cstdarg>
#include <cstdio>
#include <string>

#include "NestedRun.h"

// What a nested run puts into the registry: objects that report each call-out to it.

/// @{
/// Of a type or interface of a program, 0 for any.
inline TOVA_UUID const& typeId(std::uint32_t type)
{
    const int ids[] = {ID_INVALID, ID_A, ID_B};
    return library::identifier(ids[type]);
}

inline TOVA_UUID const& interfaceId(std::uint32_t interface)
{
    const int ids[] = {ID_INVALID, ID_A, ID_C};
    return library::identifier(ids[interface]);
}
/// @}

/// An addition that the registry may yet turn down unseen: until it calls out about the newcomer,
/// nothing can be taken out for good.
class NestedRun::Entering
{
public:
    Entering(NestedRun& run, Entering*& place) : run_(run), place_(place), outer_(place)
    {
        place_ = this;
        ++run_.notEntered_;
    }
    ~Entering()
    {
        entered();
        place_ = outer_;
    }
    Entering(Entering const&) = delete;
    Entering& operator=(Entering const&) = delete;

    void entered()
    {
        run_.notEntered_ -= entered_ ? 0 : 1;
        entered_ = true;
    }

private:
    NestedRun& run_;
    Entering*& place_;
    Entering* outer_;
    bool entered_ = false;
};

class NestedRun::Observer : public IDriverRepositoryObserver
{
public:
    Observer(NestedRun& run, int id) : run_(run), id_(id) {}

    XCode onDriverAdded(String& error, ObserverEvent<IDriverRepository>& event) override
    {
        return XCode(run_.tell(id_, Judge::Method::ADDED, &error, event).code);
    }
    void onDriverRemoved(ObserverEvent<IDriverRepository>& event) override
    {
        run_.tell(id_, Judge::Method::REMOVED, nullptr, event);
    }
    XCode onDriverAttachmentSet(String& error, ObserverEvent<IDriverRepository>& event) override
    {
        return XCode(run_.tell(id_, Judge::Method::SET, &error, event).code);
    }
    void onDriverAttachmentCleared(ObserverEvent<IDriverRepository>& event) override
    {
        run_.tell(id_, Judge::Method::CLEARED, nullptr, event);
    }

private:
    NestedRun& run_;
    int id_;
};

class NestedRun::Driver : public CDriver
{
public:
    Driver(NestedRun& run, int id, Action const& action)
        : CDriver(typeId(action.number), library::toString(action.name)), run_(run), id_(id),
          interfaces_(action.bits)
    {}
    ~Driver() override
    {
        run_.callOut(CallOut::DESTRUCTOR, "#" + std::to_string(id_));
        run_.drivers_[static_cast<std::size_t>(id_)]->object = nullptr;
    }

    int id() const { return id_; }

    XCode queryInterface(TOVA_UUID const& iid, void** out) override
    {
        run_.callOut(CallOut::QUERY_INTERFACE, "#" + std::to_string(id_));
        for (std::uint32_t i = 0; i < NESTED_INTERFACES; ++i)
            if ((interfaces_ >> i & 1u) != 0 && iid == interfaceId(i + 1)) {
                if (out != nullptr) {
                    addRef();
                    *out = static_cast<IDriver*>(this);
                }
                return XCode();
            }
        return CDriver::queryInterface(iid, out);
    }
    void addRef() override
    {
        ++count().refs;
        CDriver::addRef();
    }
    void release() override
    {
        --count().refs;
        CDriver::release();
    }
    TOVA_UUID const& getDID() const override
    {
        run_.callOut(CallOut::GET_TYPE, "#" + std::to_string(id_));
        return CDriver::getDID();
    }
    String const& getDriverName() const override
    {
        run_.callOut(CallOut::GET_NAME, "#" + std::to_string(id_));
        return CDriver::getDriverName();
    }
    void setDriverRepository(IDriverRepository* repository) override
    {
        CDriver::setDriverRepository(repository);
        Entering* const entering = run_.drivers_[static_cast<std::size_t>(id_)]->entering;
        if (repository != nullptr && entering != nullptr)
            entering->entered();
        run_.callOut(CallOut::SET_REPOSITORY,
                     "#" + std::to_string(id_) + (repository == nullptr ? " null" : ""));
    }

private:
    library::Counted& count() { return run_.drivers_[static_cast<std::size_t>(id_)]->count; }

    NestedRun& run_;
    int id_;
    std::uint32_t interfaces_;
};

class NestedRun::Repository : public library::CountedRepository
{
public:
    Repository(NestedRun& run, library::Counted& count)
        : CountedRepository(CRIT::INSTANCE(), count), run_(run)
    {}
    ~Repository() override { run_.destroyed_ = true; }

private:
    NestedRun& run_;
};

class NestedRun::Sink : public RTD::Monitor
{
public:
    explicit Sink(NestedRun& run) : run_(run) {}

protected:
    void write(int, char const* fmt, std::va_list arguments) const override UTILITY_PRINTF(3, 0)
    {
        char buffer[512];
        std::vsnprintf(buffer, sizeof buffer, fmt, arguments);
        run_.callOut(CallOut::LOG, buffer);
    }

private:
    NestedRun& run_;
};

struct NestedRun::Registration
{
    Registration(NestedRun& run, int id, std::string const& called)
        : observer(run, id), name(called)
    {}
    Observer observer;
    std::string name;
    Entering* entering = nullptr;
    library::Counted count;
    library::CountedDelegate* delegate = nullptr; ///< of a registration by delegate
};

#endif
