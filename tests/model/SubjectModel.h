#ifndef TESTS_MODEL_SUBJECT_MODEL_H
#define TESTS_MODEL_SUBJECT_MODEL_H

#include "ModelObservers.h"
#include "Reactions.h"
#include "Subject.h"

/// Runs programs on the model.
class SubjectModel : public Subject
{
public:
    SubjectModel();

    std::vector<std::string> const& run(Step const& step) override;

private:
    struct Slot
    {
        model::Driver* driver = nullptr;
        int holds = 0; ///< references that the program has on it
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
    void take(Slot& slot, std::unique_ptr<model::Driver> driver);
    void drop(Slot& slot);
    void makeDelegate(Step const& step);
    void registerListener(Step const& step);
    void setRecordListener(Step const& step);
    void makeRecord(Step const& step);

    model::Listener fields(Step const& step);
    std::string nameOf(Step const& step);
    std::string firstError(Step const& step) const;
    model::Driver* driver(int slot) { return slot < 0 ? nullptr : slots_[slot].driver; }
    model::ChannelGroup* group(int slot);
    model::GroupObserver* groupObserver(int index);
    void result(std::string const& operation, model::Code code);
    void row(model::InfoRow const& row);
    void rows(std::vector<model::InfoRow> const& rows);
    std::string counts() const;

    model::Process process_;
    model::Repository repository_{process_};
    std::vector<std::unique_ptr<model::Driver>> drivers_;
    std::array<Slot, DRIVER_SLOTS> slots_;
    std::vector<std::unique_ptr<model::ScriptedObserver>> observers_;
    std::vector<std::unique_ptr<model::ScriptedGroupObserver>> groupObservers_;
    std::vector<std::shared_ptr<model::Delegate>> delegates_;
    std::array<std::shared_ptr<model::Delegate>, DELEGATE_SLOTS> delegateSlots_;
    std::unique_ptr<model::DriverRecord> record_;
    std::array<std::shared_ptr<model::Listener>, RECORD_LISTENERS> recordListeners_;
    std::vector<model::Driver*> foundDrivers_;
    std::vector<model::Driver*> foundInterfaces_;
    std::array<Reactions, GROUP_OBSERVERS> reactions_;
    std::string error_;
};

#endif
