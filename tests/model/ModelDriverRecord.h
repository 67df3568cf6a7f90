#ifndef TESTS_MODEL_DRIVER_RECORD_H
#define TESTS_MODEL_DRIVER_RECORD_H

#include "ModelListeners.h"

namespace model
{
/// What the repository keeps of one driver: its attachments and the listeners that know it.
/// Holds one reference on the driver from its making to end().
class DriverRecord
{
public:
    DriverRecord(Process& process, Repository* repository, Driver* driver);

    /// Drops the list and the driver's reference.
    void end();

    Driver* driver() const { return driver_; }
    EntryList const& listeners() const { return listeners_; }

    // Matching.
    bool talksTo(Listener const& l) const;
    bool talksTo(Listener const& l, std::string const& key, std::string const& value) const;

    // The list of listeners.
    std::int32_t addListenerOnce(std::shared_ptr<Listener> const& l, bool active);
    std::int32_t removeListenerOnce(Listener const* l);
    std::int32_t getListenerCount(Listener const* l) const;
    bool isActive(Listener const* l) const;
    Code addListener(std::string& error, std::shared_ptr<Listener> const& l);
    void removeListener(Listener* l);
    Code snapshotInitial(std::string& error, Listener* l);
    void snapshotFinal(Listener* l, std::string const& key, std::string const& value);

    /// Takes every entry of a listener out of the list: the listener is about to end.
    void forget(Listener const* l);

    // Single notifications.
    Code notifyOnDriverAdded(std::string& error, Listener& l);
    void notifyOnDriverRemoved(Listener& l);
    Code notifyOnDriverAttachmentSet(std::string& error, Listener& l, std::string const& key,
                                     std::string const& value);
    void notifyOnDriverAttachmentCleared(Listener& l, std::string const& key,
                                         std::string const& value);

    // Attachments.
    std::string getAttachment(std::string const& key) const;
    Table const& getAttachments() const { return attachments_; }
    Code setAttachment(std::string& error, std::string const& key, std::string const& value);

    void getInfo(std::vector<InfoRow>& rows, InfoLimits const& limits,
                 std::string const& prefix) const;

private:
    struct Change
    {
        std::string key;
        std::string value;
    };

    Entry* entryOf(Listener const* l);
    Entry const* entryOf(Listener const* l) const;
    bool hasType(Listener const& l) const;
    bool offers(Listener const& l) const;
    bool isNamed(Listener const& l) const;
    bool carries(Listener const& l, std::vector<Change> const& instead) const;
    std::string says(Listener const& l) const;
    void failed(Listener const& l, std::string const& error);
    Event event(std::string const& key, std::string const& value) const;
    void undoSnapshot(Listener& l, std::size_t refusedAt);
    void leave(Entry& entry, std::string const& key, std::string const& value);
    void tellCleared(std::string const& key, std::string const& prev);
    Code tellSet(std::string& error, std::string const& key, std::string const& prev,
                 std::string const& value);
    Code tellSetTo(std::string& error, Entry& entry, std::string const& key,
                   std::string const& prev, std::string const& value);
    void rollBackSet(EntryList::iterator refuser, std::string const& key, std::string const& value);

    Process& process_;
    Repository* repository_;
    Driver* driver_;
    Table attachments_;
    EntryList listeners_;
};

} // namespace model

#endif
