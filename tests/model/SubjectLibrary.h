#ifndef TESTS_MODEL_SUBJECT_LIBRARY_H
#define TESTS_MODEL_SUBJECT_LIBRARY_H

#include "LibraryObjects.h"
#include "Reactions.h"
#include "Subject.h"

#include <drvrepo/DriverWrapper.h>

/// Runs programs on the library.
class SubjectLibrary : public Subject
{
public:
    SubjectLibrary();
    ~SubjectLibrary() override;
    SubjectLibrary(SubjectLibrary const&) = delete;
    SubjectLibrary& operator=(SubjectLibrary const&) = delete;

    std::vector<std::string> const& run(Step const& step) override;

private:
    using Attributes = IDriverRepository::Attributes;
    using Listener = CDriverRepository::Listener;
    using DriverWrapper = CDriverRepository::DriverWrapper;

    struct Slot
    {
        IDriver* driver = nullptr;
        int holds = 0; ///< references that the program has on it
    };

    /// The arguments of a step as the library takes them; `error` may be one of the others.
    struct Arguments
    {
        explicit Arguments(Step const& step);
        String name;
        String key;
        String value;
        String text;
        Attributes attributes;
        String& error;
    };

    void perform(Step const& step);
    void driverStep(Step const& step);
    void listenerStep(Step const& step);
    void attachmentStep(Step const& step);
    void queryStep(Step const& step);
    void groupStep(Step const& step);
    bool react(std::size_t observer);
    void recordStep(Step const& step);
    void recordCall(Step const& step);

    void makeDriver(Step const& step);
    void drop(Slot& slot);
    void getDriver(Step const& step);
    void makeDelegate(Step const& step);
    void registerListener(Step const& step);
    void getInterface(Step const& step);
    void getDrivers(Step const& step);
    void getInterfaces(Step const& step);
    void getInfo(Step const& step);
    void makeRecord(Step const& step);
    void setRecordListener(Step const& step);

    String const& nameOf(Step const& step, Arguments const& arguments) const;
    IDriver* driver(int slot) const { return slot < 0 ? nullptr : slots_[slot].driver; }
    library::CountedDelegate* delegate(Step const& step) const;
    void result(std::string const& operation, XCode const& code, String const& error);
    std::string counts() const;

    library::World world_;
    library::TraceMonitor monitor_{world_};
    library::Counted repositoryCount_;
    CDriverRepository* repository_;
    std::vector<std::unique_ptr<library::Counted>> driverCounts_;
    std::array<Slot, DRIVER_SLOTS> slots_;
    std::vector<std::unique_ptr<library::TestObserver>> observers_;
    std::vector<std::unique_ptr<library::TestGroupObserver>> groupObservers_;
    std::vector<std::unique_ptr<library::Counted>> delegateCounts_;
    std::array<library::CountedDelegate*, DELEGATE_SLOTS> delegateSlots_ = {};
    std::array<Reactions, GROUP_OBSERVERS> reactions_;
    std::unique_ptr<DriverWrapper> record_;
    std::array<std::unique_ptr<Listener>, RECORD_LISTENERS> recordListeners_;
    TOVA_List<TYPPtr<IDriver>> foundDrivers_;
    TOVA_List<TYPPtr<IUnknown>> foundInterfaces_;
};

#endif
