#include <cstring>
#include <map>
#include <memory>

#include "Cases.h"
#include "E1Objects.h"
#include "PeerGroup.h"

// e1: drivers and registry are GObjects, the maps GHashTables, listeners handlers of signals. A
// signal has no priorities and can't be emitted backwards: the handlers run in the order of
// connection, in both directions.

namespace
{

struct Record
{
    Port port;
    GHashTable* attachments;

    explicit Record(Port const& p)
        : port(p), attachments(g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free))
    {}
    Record(Record const&) = delete;
    Record& operator=(Record const&) = delete;
    ~Record() { g_hash_table_destroy(attachments); }

    /// Null when there is none.
    char const* find(char const* key) const
    {
        return static_cast<char const*>(g_hash_table_lookup(attachments, key));
    }
};

struct Event
{
    enum Kind { ADDED, REMOVED, SET, CLEARED };

    Kind kind;
    Record const& record;
    char const* key;
    char const* value;
};

/// A registered listener.
struct Listener
{
    peers::Type type;
    std::string prefix;
    std::string key;
    std::string value;
    load::Told& told;
    gulong handlers[2];

    bool selects(Event const& event) const
    {
        BenchPort const& port = *event.record.port.get();
        if (!type.isAny() && !(type == port.type))
            return false;
        if (!g_str_has_prefix(port.name, prefix.c_str()))
            return false;
        if (key.empty())
            return true;
        char const* const has = key == event.key ? event.value : event.record.find(key.c_str());
        return has != nullptr && g_str_has_prefix(has, value.c_str());
    }
    void tell(Event const& event) const
    {
        if (!selects(event))
            return;
        const bool decides = !key.empty() && key == event.key;
        switch (event.kind) {
        case Event::SET:
            ++(decides ? told.added : told.set);
            break;
        case Event::CLEARED:
            ++(decides ? told.removed : told.cleared);
            break;
        case Event::ADDED:
            ++told.added;
            break;
        case Event::REMOVED:
            ++told.removed;
            break;
        }
    }
};

void onEvent(BenchSubject*, gpointer event, gpointer listener)
{
    static_cast<Listener const*>(listener)->tell(*static_cast<Event const*>(event));
}

class Group
{
public:
    ~Group()
    {
        for (gulong handler : handlers_)
            g_signal_handler_disconnect(subject_.get(), handler);
    }
    void observe(unsigned, bool refuses, load::Told& told)
    {
        stubs_.push_back(std::make_unique<peers::GroupStub>(refuses, told));
        handlers_.push_back(
            g_signal_connect(subject_.get(), "forward", G_CALLBACK(onAdded), stubs_.back().get()));
        handlers_.push_back(g_signal_connect(subject_.get(), "backward", G_CALLBACK(onRemoved),
                                             stubs_.back().get()));
    }
    [[gnu::noinline]] bool announce()
    {
        ++serial_;
        Announcement added = {{peers::BEFORE, peers::AFTER, peers::CHANGED, serial_}, false};
        g_signal_emit(subject_.get(), s_signals.forward, 0, &added);
        if (!added.refused)
            return true;
        Announcement removed = {{peers::AFTER, peers::BEFORE, peers::CHANGED, serial_}, false};
        g_signal_emit(subject_.get(), s_signals.backward, 0, &removed);
        return false;
    }

private:
    struct Announcement
    {
        peers::Change change;
        bool refused;
    };

    static void onAdded(BenchSubject* subject, gpointer announcement, gpointer stub)
    {
        auto* const told = static_cast<Announcement*>(announcement);
        if (static_cast<peers::GroupStub*>(stub)->added(told->change))
            return;
        told->refused = true;
        g_signal_stop_emission(subject, s_signals.forward, 0);
    }
    static void onRemoved(BenchSubject*, gpointer announcement, gpointer stub)
    {
        static_cast<peers::GroupStub*>(stub)->removed(
            static_cast<Announcement*>(announcement)->change);
    }

    const Subject subject_ = newSubject();
    std::vector<std::unique_ptr<peers::GroupStub>> stubs_;
    std::vector<gulong> handlers_;
    std::uint32_t serial_ = 0;
};

class E1
{
public:
    using Text = std::string;
    using Driver = Port;
    using Group = ::Group;

    /// Drivers that a query found.
    class Found
    {
    public:
        Found() : drivers_(g_ptr_array_new_with_free_func(g_object_unref)) {}
        Found(Found const&) = delete;
        Found& operator=(Found const&) = delete;
        ~Found() { g_ptr_array_unref(drivers_); }
        GPtrArray* get() const { return drivers_; }

    private:
        GPtrArray* const drivers_;
    };

    E1() = default;
    E1(E1 const&) = delete;
    E1& operator=(E1 const&) = delete;
    ~E1() { g_hash_table_destroy(drivers_); }

    static char const* name() { return "e1"; }
    static Driver make(Text const& name, load::Type type)
    {
        auto* const port = static_cast<BenchPort*>(g_object_new(bench_port_get_type(), nullptr));
        port->name = g_strdup(name.c_str());
        port->type = peers::typeOf(type);
        return Driver(port);
    }

    [[gnu::noinline]] bool add(Driver const& driver)
    {
        char* const name = driver.get()->name;
        if (g_hash_table_contains(drivers_, name))
            return false;
        auto* const record = new Record(driver);
        g_hash_table_insert(drivers_, name, record);
        driver.get()->registry = this;
        emit(s_signals.forward, {Event::ADDED, *record, "", ""});
        return true;
    }
    [[gnu::noinline]] void remove(Driver const& driver)
    {
        gpointer found = nullptr;
        if (!g_hash_table_steal_extended(drivers_, driver.get()->name, nullptr, &found))
            return;
        const std::unique_ptr<Record> record(static_cast<Record*>(found));
        emit(s_signals.backward, {Event::REMOVED, *record, "", ""});
        driver.get()->registry = nullptr;
    }
    [[gnu::noinline]] Driver find(Text const& name) const
    {
        Record const* const record = recordOf(name);
        return record != nullptr ? record->port : Driver();
    }
    bool lookUp(Text const& name) const { return find(name).get() != nullptr; }

    [[gnu::noinline]] bool set(Text const& name, Text const& key, Text const& value)
    {
        Record* const record = recordOf(name);
        if (record == nullptr)
            return false;
        gpointer oldKey = nullptr;
        gpointer oldValue = nullptr;
        if (record->find(key.c_str()) != nullptr && record->find(key.c_str()) == value)
            return true;
        if (g_hash_table_steal_extended(record->attachments, key.c_str(), &oldKey, &oldValue)) {
            emit(s_signals.backward,
                 {Event::CLEARED, *record, key.c_str(), static_cast<char const*>(oldValue)});
            g_free(oldKey);
            g_free(oldValue);
        }
        if (!value.empty()) {
            g_hash_table_insert(record->attachments, g_strdup(key.c_str()),
                                g_strdup(value.c_str()));
            emit(s_signals.forward, {Event::SET, *record, key.c_str(), value.c_str()});
        }
        return true;
    }
    [[gnu::noinline]] std::uint64_t query(Text const& prefix, Text const& key, Text const& value,
                                          Found& found) const
    {
        g_ptr_array_set_size(found.get(), 0);
        GHashTableIter at;
        gpointer name = nullptr;
        gpointer place = nullptr;
        g_hash_table_iter_init(&at, drivers_);
        while (g_hash_table_iter_next(&at, &name, &place)) {
            auto const* const record = static_cast<Record const*>(place);
            if (!g_str_has_prefix(static_cast<char const*>(name), prefix.c_str()))
                continue;
            char const* const has = record->find(key.c_str());
            if (has != nullptr && g_str_has_prefix(has, value.c_str()))
                g_ptr_array_add(found.get(), g_object_ref(record->port.get()));
        }
        return found.get()->len;
    }

    [[gnu::noinline]] void listen(load::Criteria const& wanted, load::Told& told)
    {
        Listener& listener = listeners_
                                 .try_emplace(wanted.name, Listener{peers::typeOf(wanted.type),
                                                                    wanted.prefix,
                                                                    wanted.key,
                                                                    wanted.value,
                                                                    told,
                                                                    {}})
                                 .first->second;
        tellOfAll(listener, Event::ADDED);
        listener.handlers[0] =
            g_signal_connect(subject_.get(), "forward", G_CALLBACK(onEvent), &listener);
        listener.handlers[1] =
            g_signal_connect(subject_.get(), "backward", G_CALLBACK(onEvent), &listener);
    }
    [[gnu::noinline]] void unlisten(std::string const& name)
    {
        const auto place = listeners_.find(name);
        for (gulong handler : place->second.handlers)
            g_signal_handler_disconnect(subject_.get(), handler);
        tellOfAll(place->second, Event::REMOVED);
        listeners_.erase(place);
    }

private:
    Record* recordOf(Text const& name) const
    {
        return static_cast<Record*>(g_hash_table_lookup(drivers_, name.c_str()));
    }
    void emit(guint signal, Event const& event) const
    {
        g_signal_emit(subject_.get(), signal, 0, &event);
    }
    void tellOfAll(Listener const& listener, Event::Kind kind) const
    {
        GHashTableIter at;
        gpointer record = nullptr;
        g_hash_table_iter_init(&at, drivers_);
        while (g_hash_table_iter_next(&at, nullptr, &record))
            listener.tell({kind, *static_cast<Record const*>(record), "", ""});
    }

    // Names belong to the drivers.
    GHashTable* const drivers_ =
        g_hash_table_new_full(g_str_hash, g_str_equal, nullptr,
                              [](gpointer record) { delete static_cast<Record*>(record); });
    const Subject subject_ = newSubject();
    std::map<std::string, Listener> listeners_;
};

} // namespace

void addE1(Cases& cases)
{
    addSystem<E1>(cases);
}
