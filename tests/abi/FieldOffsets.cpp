// Where the fields stand that other builds rely on, checked when this is compiled for the target.
#include <drvrepo/CChannelGroup.h>
#include <drvrepo/CDriver.h>
#include <drvrepo/CDriverRepository.h>
#include <drvrepo/DriverWrapper.h>
#include <drvrepo/Listener.h>

#include <cstddef>

#pragma GCC diagnostic ignored "-Winvalid-offsetof" // GCC answers for classes with tables as well

namespace
{
template <int LINE, std::size_t FIRST, std::size_t SECOND> struct InOrder
{
    static_assert(FIRST < SECOND, "fields have changed places that other builds know");
};

// On every target the order is fixed; here for the classes that have fields of ours behind.
// The arguments of an explicit instantiation may name private members.
#define ORDER(type, first, second)                                                                 \
    template struct InOrder<__LINE__, offsetof(type, first), offsetof(type, second)>

ORDER(CDriverRepository::DriverWrapper, repository_, driver_);
ORDER(CDriverRepository::DriverWrapper, driver_, attachments_);
ORDER(CDriverRepository::DriverWrapper, attachments_, listeners_);
ORDER(CDriverRepository::DriverWrapper, listeners_, newer_);

ORDER(CDriverRepository::Listener, name_, classId_);
ORDER(CDriverRepository::Listener, classId_, interfaceId_);
ORDER(CDriverRepository::Listener, interfaceId_, pattern_);
ORDER(CDriverRepository::Listener, pattern_, attributes_);
ORDER(CDriverRepository::Listener, attributes_, priority_);
ORDER(CDriverRepository::Listener, priority_, rightOfVeto_);
ORDER(CDriverRepository::Listener, rightOfVeto_, snapshotFlag_);
ORDER(CDriverRepository::Listener, snapshotFlag_, delegate_);
ORDER(CDriverRepository::Listener, delegate_, counts_);
ORDER(CDriverRepository::Listener, counts_, stamp_);

#ifdef __arm__
template <int LINE, std::size_t FOUND, std::size_t FIXED> struct FieldAt
{
    static_assert(FOUND == FIXED, "a field has left the place that other builds know");
};

#define FIELD(type, field, offset) template struct FieldAt<__LINE__, offsetof(type, field), offset>

using Vector = TOVA_Vector<String>;
using List = TOVA_List<CDriverRepository::ListenerWrapper>;
using Table = TOVA_StringHashTable<String>;
using Pointer = TYPtr<IDriver>;

// Handles are one word; what stands in it is theirs.
static_assert(sizeof(String) == 4, "");
static_assert(sizeof(XCode) == 4, "");
static_assert(sizeof(TOVA_UUID) == 4, "");

static_assert(sizeof(TOVA_UUID_Data) == 24, "");
FIELD(TOVA_UUID_Data, words, 0);
FIELD(TOVA_UUID_Data, references, 16);
FIELD(TOVA_UUID_Data, name, 20);

FIELD(XCode::Record, code, 0);
FIELD(XCode::Record, message, 4);

FIELD(Vector, elements_, 0);
FIELD(Vector, count_, 4);
FIELD(Vector, capacity_, 8);
FIELD(Vector, step_, 12);

FIELD(List::Node, prev, 0);
FIELD(List::Node, next, 4);
FIELD(List::Node, element, 8);
FIELD(List, sentinel_, 0);
FIELD(List, count_, sizeof(List::Node));

// An entry begins with its links in the list of all, then those in its chain.
FIELD(Table::AllLink, prev, 0);
FIELD(Table::AllLink, next, 4);
FIELD(Table::ChainLink, prev, 0);
FIELD(Table::ChainLink, next, 4);
FIELD(Table::Entry, key, 16);
FIELD(Table::Entry, value, 20);

FIELD(Pointer, object_, 4);
FIELD(LockRecord, object, 0);
FIELD(LockRecord, lock, 4);
FIELD(LockRecord, held, 8);

using Event = ObserverEvent<IDriverRepository>;
FIELD(Event, source, 4);
FIELD(Event, data, 12);
FIELD(IDriverRepository::EvDriver, driver, sizeof(Event));
FIELD(IDriverRepository::EvAttachment, key, sizeof(IDriverRepository::EvDriver));
FIELD(IDriverRepository::EvAttachment, value, sizeof(IDriverRepository::EvDriver) + 4);
FIELD(IChannelGroup::EvTimeslot, oldTimeslots, sizeof(Event));
FIELD(IChannelGroup::EvTimeslot, newTimeslots, sizeof(Event) + 4);
FIELD(IChannelGroup::EvTimeslot, changedTimeslots, sizeof(Event) + 8);

using Delegate = ObserverDelegate<IChannelGroup>;
FIELD(Delegate, refs_, 4);
FIELD(Delegate, observer_, 8);

// The number of entries is the last field of the list, right before `busy_`.
using Container = ObserverContainer<IChannelGroup>;
using Registrations = TOVA_List<Container::Wrapper>;
FIELD(Container, list_, 0);
FIELD(Registrations, count_, sizeof(Registrations) - 4);
FIELD(Container, busy_, sizeof(Registrations));
FIELD(Container::Wrapper, delegate_, 0);
FIELD(Container::Wrapper, priority_, 8);
FIELD(Container::Wrapper, veto_, 12);
FIELD(Container::Wrapper, count_, 16);

FIELD(CDriver, refs_, 4);
FIELD(CDriver, did_, 8);
FIELD(CDriver, name_, 12);
FIELD(CDriver, repository_, 16);

FIELD(CDriverRepository, refs_, 8);
FIELD(CDriverRepository, loop_, 12);
FIELD(CDriverRepository, lock_, 16);
FIELD(CDriverRepository, listeners_, 20);
FIELD(CDriverRepository, drivers_, 20 + sizeof(List));

FIELD(CDriverRepository::DriverWrapper, repository_, 0);
FIELD(CDriverRepository::DriverWrapper, driver_, 4);
FIELD(CDriverRepository::DriverWrapper, attachments_, 12);
FIELD(CDriverRepository::DriverWrapper, listeners_, 12 + sizeof(Table));

FIELD(CDriverRepository::ListenerWrapper, listener_, 0);
FIELD(CDriverRepository::ListenerWrapper, active_, 4);
FIELD(CDriverRepository::ListenerWrapper, refCount_, 8);

FIELD(CDriverRepository::Listener, name_, 0);
FIELD(CDriverRepository::Listener, classId_, 4);
FIELD(CDriverRepository::Listener, interfaceId_, 8);
FIELD(CDriverRepository::Listener, pattern_, 12);
FIELD(CDriverRepository::Listener, attributes_, 16);
FIELD(CDriverRepository::Listener, priority_, 16 + sizeof(Table));
FIELD(CDriverRepository::Listener, rightOfVeto_, 20 + sizeof(Table));
FIELD(CDriverRepository::Listener, snapshotFlag_, 21 + sizeof(Table));
FIELD(CDriverRepository::Listener, delegate_, 24 + sizeof(Table));
FIELD(CDriverRepository::Listener, counts_, 32 + sizeof(Table));

FIELD(CChannelGroup, refs_, 12);
FIELD(CChannelGroup, name_, 16);
FIELD(CChannelGroup, timeslots_, 20);
FIELD(CChannelGroup, observers_, 24);
#endif
} // namespace
